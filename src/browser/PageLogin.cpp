#include "PageLogin.h"

#include "LoginDialog.h"

#include <QAuthenticator>
#include <QHash>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {
struct Login {
    QString user;
    QString password;
    /// Handed to the engine already: asked again, it was wrong.
    bool used = false;
};

QHash<QString, Login> &known()
{
    static QHash<QString, Login> logins;
    return logins;
}

QString keyOf(const QUrl &url, const QString &realm)
{
    return url.scheme() + "://"_L1 + url.authority(QUrl::FullyEncoded) + u' ' + realm;
}

void askUser(QWebEnginePage *page, const QString &key, const QString &site, const QString &realm)
{
    QWidget *view = QWebEngineView::forPage(page);
    auto *dialog = new LoginDialog(site, realm, view ? view->window() : nullptr);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, page, [page, dialog, key] {
        known().insert(key, Login{dialog->user(), dialog->password(), false});
        page->triggerAction(QWebEnginePage::Reload);
    });
    QObject::connect(page, &QObject::destroyed, dialog, &QWidget::close);
    dialog->open();
}
}

namespace PageLogin {

void answer(QWebEnginePage *page, const QUrl &url, QAuthenticator *login)
{
    const QString realm = login->realm();
    const QString key = keyOf(url, realm);
    const auto found = known().find(key);
    if (found != known().end() && !found->used) {
        found->used = true;
        login->setUser(found->user);
        login->setPassword(found->password);
        return;
    }
    known().remove(key);
    *login = QAuthenticator();
    if (page->property("loginAsked").toBool())
        return;
    page->setProperty("loginAsked", true);
    QTimer::singleShot(0, page, [page, key, site = url.host(), realm] {
        page->setProperty("loginAsked", false);
        askUser(page, key, site, realm);
    });
}

}
