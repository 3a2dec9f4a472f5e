#include "KeptLogins.h"

#include "Keyring.h"
#include "LoginFields.h"
#include "PageLogin.h"
#include "Texts.h"
#include "WebPage.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {
constexpr auto userKey = "user"_L1;
constexpr auto passwordKey = "password"_L1;

QString textOf(const QString &user, const QString &password)
{
    const QJsonObject kept{{userKey, user}, {passwordKey, password}};
    return QString::fromUtf8(QJsonDocument(kept).toJson(QJsonDocument::Compact));
}

/// The end of a load has a status text of its own.
void tellNotKept(WebPage &page)
{
    const auto tell = [&page] {
        emit page.told(
            Texts<"LoginDialog">::at<"strNotKept", "The keyring did not take the password.">());
    };
    constexpr auto once = Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection);
    if (page.isLoading())
        QObject::connect(&page, &QWebEnginePage::loadFinished, &page, tell, once);
    else
        tell();
}

void keep(WebPage &page, const QString &key, const QString &text)
{
    Keyring::write(key, text, &page, [&page] { tellNotKept(page); });
}
}

namespace KeptLogins {

void fill(LoginFields &fields, const QString &key, bool wasWrong)
{
    Keyring::read(key, &fields, [&fields, wasWrong](const QString &text) {
        const QJsonObject kept = QJsonDocument::fromJson(text.toUtf8()).object();
        if (wasWrong)
            fields.noteKept();
        else
            fields.fillIn(kept.value(userKey).toString(), kept.value(passwordKey).toString());
    });
}

void settle(WebPage &page, const LoginFields &fields, const QString &key)
{
    if (!fields.isToBeKept()) {
        if (fields.wasKept())
            Keyring::remove(key);
        return;
    }
    auto *bond = new QObject(&page);
    const auto judge = [&page, bond, key, user = fields.user(), password = fields.password()] {
        const bool isKnown = PageLogin::isKnown(page, key, user, password);
        // The end of a load before it, as that of the page that asked.
        if (isKnown && !PageLogin::hasGoneOut(page, key))
            return;
        page.disconnect(bond);
        bond->deleteLater();
        // Else it was wrong.
        if (isKnown)
            keep(page, key, textOf(user, password));
    };
    // Asked again, the engine tells so before that.
    QObject::connect(&page, &QWebEnginePage::loadFinished, bond, judge);
}

}
