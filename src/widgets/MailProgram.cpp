#include "MailProgram.h"

#include "AddressCompletion.h"

#include <QDesktopServices>
#include <QUrl>

using namespace Qt::StringLiterals;

bool openInMailProgram(const QString &text)
{
    const QUrl address = completeAddress(text);
    return address.scheme() == "mailto"_L1 && QDesktopServices::openUrl(address);
}
