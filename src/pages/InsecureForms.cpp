#include "InsecureForms.h"

#include "PageQuestions.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "WebPage.h"
#include "Yield.h"

#include <QHostAddress>
#include <QPointer>
#include <QTimer>
#include <QWebEngineScript>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds between the script's word and the navigation that it is about.
constexpr int longestWay = 5000;
/// Milliseconds in which a frame of another site has sent what it was told to.
constexpr int longestInFrame = 2000;

constexpr Texts<"InsecureForm"> texts;

QList<InsecureForms *> living;

/// What stays on this machine nobody reads on the way.
bool isLoopback(const QUrl &url)
{
    const QString host = url.host();
    return host == "localhost"_L1 || host.endsWith(".localhost"_L1)
        || QHostAddress(host).isLoopback();
}

bool isInsecure(const QUrl &url)
{
    return url.scheme() == "http"_L1 && !isLoopback(url);
}

QUrl siteOf(const QUrl &url)
{
    QUrl site;
    site.setScheme(url.scheme());
    site.setHost(url.host());
    site.setPort(url.port());
    return site;
}

bool isSameSite(const QUrl &one, const QUrl &other)
{
    constexpr int usualPort = 80;
    return one.scheme() == other.scheme() && one.host() == other.host()
        && one.port(usualPort) == other.port(usualPort);
}
}

InsecureForms::InsecureForms(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
    living.append(this);
}

InsecureForms::~InsecureForms()
{
    living.removeOne(this);
}

void InsecureForms::noteForm(const QString &told)
{
    const QStringList parts = told.split(u' ');
    m_id = parts.value(0);
    m_target = QUrl(parts.value(1));
    m_sender = QUrl(parts.value(2));
    m_isFresh.setRemainingTime(longestWay);
}

void InsecureForms::forget()
{
    m_id.clear();
    m_granted.clear();
}

bool InsecureForms::isFromEncryptedPage() const
{
    const QUrl shown = m_page.committedUrl();
    if (shown.isEmpty() || shown.scheme() == "about"_L1)
        return m_page.openerUrl() && m_page.openerUrl()->scheme() == "https"_L1;
    return shown.scheme() == "https"_L1;
}

bool InsecureForms::keeps(const QUrl &url) const
{
    return !m_id.isEmpty() && !m_isFresh.hasExpired() && isSameSite(m_target, url);
}

/// A form may go to another window than its own.
InsecureForms *InsecureForms::keeperOf(const QUrl &url)
{
    if (keeps(url))
        return this;
    const auto found = std::find_if(living.begin(), living.end(),
                                    [&url](const InsecureForms *each) { return each->keeps(url); });
    return found == living.end() ? nullptr : *found;
}

bool InsecureForms::takeGrant(const QUrl &url)
{
    const auto found = std::find_if(living.begin(), living.end(), [&url](InsecureForms *each) {
        return isSameSite(each->m_granted, url);
    });
    if (found == living.end())
        return false;
    (*found)->m_granted.clear();
    return true;
}

bool InsecureForms::holds(const QUrl &url)
{
    return holdsForm(url, isFromEncryptedPage());
}

bool InsecureForms::holdsOpening(const QUrl &url)
{
    return holdsForm(url, false);
}

/// `alsoUnkept`: it is a form though the script knows of none.
bool InsecureForms::holdsForm(const QUrl &url, bool alsoUnkept)
{
    if (!isInsecure(url))
        return false;
    if (takeGrant(url)) {
        m_isLetGo = true;
        return false;
    }
    InsecureForms *keeper = keeperOf(url);
    if (!keeper && !alsoUnkept)
        return false;
    hold(url, keeper);
    return true;
}

void InsecureForms::hold(const QUrl &url, InsecureForms *keeper)
{
    InsecureForms *asked = keeper ? keeper : this;
    const QString id = keeper ? std::exchange(keeper->m_id, {}) : QString();
    const QUrl sender = keeper ? keeper->m_sender : QUrl();
    QTimer::singleShot(0, asked, [asked, url, id, sender] { asked->ask(url, id, sender); });
}

bool InsecureForms::blocks(const QUrl &url, const QUrl &sender) const
{
    return !m_isLetGo && sender.scheme() == "https"_L1 && isInsecure(url);
}

/// A frame of another site asks in its own name.
void InsecureForms::ask(const QUrl &url, const QString &id, const QUrl &sender)
{
    if (!m_page.questions())
        return;
    PageQuestion question;
    question.kind = u"insecureForm"_s;
    question.around = m_page.committedUrl();
    question.asker = sender.host().isEmpty() ? question.around : sender;
    question.text = texts.at<"strText", "What you entered would be sent unencrypted to %1.">().arg(
        shownSite(url));
    // It lies where no script of ours gets at it, as in a closed shadow tree.
    if (id.isEmpty())
        question.text += u' '
            + texts.at<"strOnceMore",
                       "If you agree, you have to press the button of the form once more.">();
    question.yes = texts.at<"cmdSend", "Send">();
    question.no = Texts<"PageQuestions">::at<"cmdCancel", "Cancel">();
    question.noHolds = true;
    question.done = [self = QPointer(this), url, id, sender](PageQuestion::Reply reply) {
        if (self && reply.answer == PageQuestion::Answer::Yes)
            self->send(url, id, sender);
    };
    m_page.questions()->ask(question);
}

void InsecureForms::send(const QUrl &url, const QString &id, const QUrl &sender)
{
    m_granted = url;
    if (id.isEmpty())
        return;
    const QString site =
        sender.host().isEmpty() ? QString() : siteOf(sender).toString(QUrl::FullyEncoded);
    m_page.runJavaScript(
        "orvaneSendForm('"_L1 + id + "', '"_L1 + site + "')"_L1, QWebEngineScript::ApplicationWorld,
        [self = QPointer(this)](const QVariant &isSent) {
            const EngineCallbackScope scope;
            if (self && !isSent.toBool())
                QTimer::singleShot(longestInFrame, self, &InsecureForms::tellAgain);
        });
}

/// The frame that it lies in has not sent it.
void InsecureForms::tellAgain()
{
    if (!m_page.questions() || m_granted.isEmpty())
        return;
    PageQuestion question;
    question.kind = u"insecureFormAgain"_s;
    question.asker = m_page.committedUrl();
    question.text = texts.at<"strAgain", "Press the button of the form once more to send it.">();
    question.yes = Texts<"PageQuestions">::at<"cmdOK", "OK">();
    m_page.questions()->ask(question);
}
