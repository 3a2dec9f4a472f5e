#include "PageLogin.h"

#include "CertificateExceptions.h"
#include "KeptLogins.h"
#include "Keyring.h"
#include "KnownLogins.h"
#include "LoginFields.h"
#include "PageCertificates.h"
#include "PageQuestions.h"
#include "ShownText.h"
#include "Texts.h"
#include "WebPage.h"

#include <QAuthenticator>
#include <QHash>
#include <QMultiHash>
#include <QNetworkProxy>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QWebEngineProfile>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
constexpr int longestRealm = 200;

/// Who asks, and what for.
struct Asker {
    /// Of a proxy alone; sites go by their address.
    QString name;
    QString realm;
    QUrl address;
    bool isProxy = false;
    bool isEncrypted = false;
    /// The user went on there although its certificate proved nothing.
    bool isUnproven = false;

    /// What is known for a site goes to nobody who may only have taken its place, nor back.
    QString key() const
    {
        constexpr auto known = QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery
            | QUrl::RemoveFragment | QUrl::FullyEncoded;
        const QString server = isProxy ? name : address.toString(known);
        const auto kind = isProxy ? "proxy "_L1 : isUnproven ? "unproven "_L1 : "login "_L1;
        return kind + server + u' ' + realm.left(longestRealm);
    }
};

/// Of the pages of a profile, and gone with it.
struct Logins {
    KnownLogins known;
    /// The pages whose user is being asked, by what for.
    QMultiHash<QString, QPointer<WebPage>> asking;
};

const std::shared_ptr<Logins> &loginsOf(const WebPage &page)
{
    static QHash<const QObject *, std::shared_ptr<Logins>> all;
    std::shared_ptr<Logins> &mine = all[page.profile()];
    if (!mine) {
        mine = std::make_shared<Logins>();
        QObject::connect(page.profile(), &QObject::destroyed, page.profile(),
                         [](const QObject *profile) { all.remove(profile); });
    }
    return mine;
}

constexpr Texts<"LoginDialog"> texts;

/// With the port, which the engine does not tell.
QString proxyName(const QUrl &url, const QString &host)
{
    const QList<QNetworkProxy> proxies =
        QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
    for (const QNetworkProxy &each : proxies) {
        if (each.hostName().compare(host, Qt::CaseInsensitive) == 0 && each.port() > 0)
            return host + u':' + QString::number(each.port());
    }
    return host;
}

QString wordsOf(const Asker &asker, bool wasWrong)
{
    QStringList lines;
    if (asker.isProxy)
        lines.append(asker.name);
    if (!asker.realm.isEmpty())
        lines.append(shownText(asker.realm.left(longestRealm)));
    if (wasWrong)
        lines.append(texts.at<"strWrong", "The user name or the password was not accepted.">());
    if (!asker.isEncrypted)
        lines.append(texts.at<"strUnencrypted",
                              "The connection is not encrypted: others on the way may read the "
                              "password.">());
    if (asker.isUnproven)
        lines.append(texts.at<"strUnproven",
                              "The site could not prove who it is: somebody else may get the "
                              "password.">());
    return lines.join(u'\n');
}

PageQuestion questionOf(const Asker &asker, bool wasWrong)
{
    PageQuestion question;
    question.kind = asker.key();
    if (!asker.isProxy)
        question.asker = asker.address;
    question.title = asker.isProxy
        ? texts.at<"strProxyQuestion", "The proxy asks you to sign in:">()
        : texts.at<"strQuestion", "This site asks you to sign in:">();
    question.text = wordsOf(asker, wasWrong);
    question.yes = Texts<"PageQuestions">::at<"cmdOK", "OK">();
    question.no = Texts<"PageQuestions">::at<"cmdCancel", "Cancel">();
    question.noHolds = true;
    question.staysAt = asker.address;
    return question;
}

/// All that wait for it go on.
void signIn(Logins &logins, const QString &key, const KnownLogins::Login &login)
{
    logins.known.put(key, login);
    const QList<QPointer<WebPage>> pages = logins.asking.values(key);
    logins.asking.remove(key);
    for (const QPointer<WebPage> &page : pages) {
        if (!page)
            continue;
        QTimer::singleShot(0, page, &WebPage::signedIn);
        if (page->questions())
            page->questions()->end(key);
    }
}

/// What a page was asked for before it was loaded anew is of no use any more.
void takeOthersBack(WebPage *page, const QString &key)
{
    const auto &asking = loginsOf(*page)->asking;
    const QStringList keys = asking.uniqueKeys();
    for (const QString &other : keys) {
        if (other != key && asking.contains(other, page) && page->questions())
            page->questions()->takeBack(other);
    }
}

void ask(WebPage *page, const Asker &asker, const QString &wrongUser, bool offersKeeping)
{
    if (!page->questions())
        return;
    PageQuestion question = questionOf(asker, !wrongUser.isEmpty());
    const QString key = question.kind;
    takeOthersBack(page, key);
    auto fields = std::make_shared<QPointer<LoginFields>>();
    question.fields = [fields, wrongUser, offersKeeping, key](QWidget *parent) {
        *fields = new LoginFields(wrongUser, offersKeeping, parent);
        if (offersKeeping)
            KeptLogins::fill(**fields, key, !wrongUser.isEmpty());
        return fields->data();
    };
    question.done = [fields, key, page, logins = loginsOf(*page)](PageQuestion::Reply reply) {
        if (reply.answer == PageQuestion::Answer::Yes && *fields) {
            KeptLogins::settle(*page, **fields, key);
            signIn(*logins, key, {(*fields)->user(), (*fields)->password()});
        } else {
            logins->asking.remove(key, page);
        }
    };
    if (page->questions()->ask(question))
        loginsOf(*page)->asking.insert(key, page);
}

/// By the time that is known whether there is a keyring, the page may be on its way elsewhere.
void askUser(WebPage *page, const Asker &asker, const QString &wrongUser)
{
    if (!page->leavesTrace()) {
        ask(page, asker, wrongUser, false);
        return;
    }
    const auto told = [page, asker, wrongUser, navigation = page->navigation()](bool isThere) {
        if (page->navigation() == navigation)
            ask(page, asker, wrongUser, isThere);
    };
    Keyring::look(page, told);
}

void reply(WebPage &page, const Asker &asker, QAuthenticator *login)
{
    const QString key = asker.key();
    const bool isPage = page.isOnItsWay(asker.address);
    KnownLogins &known = loginsOf(page)->known;
    const std::optional<KnownLogins::Login> found =
        known.take(key, asker.address.toString(QUrl::FullyEncoded), isPage ? page.navigation() : 0);
    if (found) {
        login->setUser(found->user);
        login->setPassword(found->password);
        return;
    }
    *login = QAuthenticator();
    if (!isPage)
        return;
    const QString wrongUser = known.user(key);
    known.remove(key);
    QTimer::singleShot(0, &page, [&page, asker, wrongUser] { askUser(&page, asker, wrongUser); });
}
}

namespace PageLogin {

bool isKnown(const WebPage &page, const QString &key, const QString &user, const QString &password)
{
    return loginsOf(page)->known.has(key, {user, password});
}

bool hasGoneOut(const WebPage &page, const QString &key)
{
    return loginsOf(page)->known.wasTold(key);
}

void answer(WebPage &page, const QUrl &url, QAuthenticator *login)
{
    const bool isEncrypted = url.scheme() == "https"_L1;
    const bool isUnproven = isEncrypted && page.certificates().exceptions().hasHost(url);
    reply(page, {{}, login->realm(), url, false, isEncrypted, isUnproven}, login);
}

void answerProxy(WebPage &page, const QUrl &url, const QString &proxy, QAuthenticator *login)
{
    reply(page, {proxyName(url, proxy), login->realm(), url, true, false}, login);
}

}
