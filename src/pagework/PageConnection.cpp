#include "PageConnection.h"

#include "CertificateDetails.h"
#include "CertificateExceptions.h"
#include "ConnectionCheck.h"
#include "ShownAddress.h"
#include "Texts.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"Certificate"> texts;

QString standing(const QUrl &url, const CertificateExceptions &exceptions)
{
    if (exceptions.hasHost(url))
        return texts.at<"strUnproven",
                        "This site could not prove who it is. You went on all the same.">()
            + u'\n';
    return {};
}

void show(CertificateDetails &details, const QString &site, const ConnectionCheck &check,
          const QString &protocol, const QString &answer)
{
    if (check.chain().isEmpty()) {
        details.setNote(site + answer);
        return;
    }
    QStringList lines{
        texts.at<"strShownNow",
                 "This is what the server shows now, to a connection of this dialog's own:">()
        + u' ' + protocol};
    lines.append(check.problems());
    details.setNote(site + lines.join(u'\n'));
    details.setChain(check.chain());
}
}

namespace PageConnection {

void open(const QUrl &url, const CertificateExceptions &exceptions, QWidget *owner)
{
    if (url.scheme() != "https"_L1)
        return;
    auto *details = new CertificateDetails(shownSite(url), owner);
    const QString before = standing(url, exceptions);
    details->setNote(before + Texts<"PageProperties">::at<"strAsking", "Asking the server...">());
    auto *check = new ConnectionCheck(details);
    QObject::connect(check, &ConnectionCheck::answered, details,
                     [details, check, before](const QString &protocol, const QString &answer) {
                         show(*details, before, *check, protocol, answer);
                     });
    check->ask(url);
    details->open();
}

}
