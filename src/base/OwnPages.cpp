#include "OwnPages.h"

#include <QUrl>

using namespace Qt::StringLiterals;

bool isOwnPage(const QUrl &address)
{
    return address.scheme() == ownScheme
        && address.toString(QUrl::RemoveScheme | QUrl::RemoveFragment) == "start"_L1;
}
