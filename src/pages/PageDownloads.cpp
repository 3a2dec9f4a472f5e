#include "PageDownloads.h"

#include "AskingSite.h"
#include "Log.h"
#include "PagePermissions.h"
#include "PageQuestions.h"
#include "PrivateProfiles.h"
#include "ShownAddress.h"
#include "SitePermissions.h"
#include "Texts.h"
#include "WebPage.h"
#include "WebView.h"

#include <QDeadlineTimer>
#include <chrono>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// What a page may begin after each act of its user.
constexpr int unasked = 3;
/// What the engine holds of those that wait is not on the disk.
constexpr int mostWaiting = 200;
/// In a minute.
constexpr int mostOfGone = 50;
/// Milliseconds in which refused ones are told as one.
constexpr int pace = 1000;

/// Sites of frames that may ask at a time.
constexpr int mostAskers = 3;

constexpr Texts<"PageQuestions"> texts;

QString originOf(const QUrl &url)
{
    return url.isEmpty() ? QString()
                         : url.scheme() + "://"_L1
            + url.adjusted(QUrl::RemoveUserInfo).authority(QUrl::FullyEncoded);
}

/// By the user's word that is kept.
bool mayNever(const DownloadAsker &asker, const QUrl &page, const QUrl &file)
{
    if (asker.isFrameWithoutSite)
        return false;
    const QUrl around = page.isEmpty() ? file : page;
    const QUrl asking = asker.site.isEmpty() ? around : asker.site;
    const AskingSite site = AskingSite::of(asking, page.isEmpty() ? asking : page);
    return SitePermissions::answer(site, Permission::Downloads) == SitePermissions::Word::Refuse;
}
}

PageDownloads::PageDownloads(WebPage &page)
    : QObject(&page)
    , m_page(page)
    , m_left(unasked)
{
    m_tells.setSingleShot(true);
    m_tells.setInterval(pace);
    connect(&m_tells, &QTimer::timeout, this, &PageDownloads::tellRefused);
    connect(&page, &WebPage::arrived, this, [this] { m_allowed.clear(); });
    connect(&page, &WebPage::userActed, this, &PageDownloads::renew);
    if (auto *view = qobject_cast<WebView *>(QWebEngineView::forPage(&page)))
        connect(view, &WebView::eventCame, this, [this](const QEvent &event) {
            m_act.note(event);
            if (m_act.take())
                renew();
        });
}

/// The page may go while its question is open.
PageDownloads::~PageDownloads()
{
    const QStringList askers = m_waiting.keys();
    for (const QString &asker : askers)
        finish(asker, PageQuestion::Answer::Ended);
}

void PageDownloads::renew()
{
    m_left = unasked;
}

QString PageDownloads::nameOf(const DownloadAsker &asker) const
{
    if (asker.isFrameWithoutSite)
        return u"frame"_s;
    const QString site = originOf(asker.site);
    return site.isEmpty() ? originOf(m_page.committedUrl()) : site;
}

PageDownloads::Verdict PageDownloads::judge(const DownloadAsker &asker)
{
    const QString name = nameOf(asker);
    if (m_allowed.contains(name))
        return Verdict::Go;
    if (m_left > 0) {
        --m_left;
        return Verdict::Go;
    }
    if (const auto word = SitePermissions::answer(siteOf(asker), Permission::Downloads))
        return *word == SitePermissions::Word::Allow ? Verdict::Go : refuse();
    const QList<int> waiting = m_waiting.values();
    const bool isFirst = !m_waiting.contains(name);
    if (std::accumulate(waiting.cbegin(), waiting.cend(), 0) >= mostWaiting
        || (isFirst && m_waiting.size() >= mostAskers))
        return refuse();
    ++m_waiting[name];
    // The engine stands still inside the signal that this is called from.
    if (isFirst)
        QMetaObject::invokeMethod(
            this, [this, asker] { ask(asker); }, Qt::QueuedConnection);
    return Verdict::Wait;
}

PageDownloads::Verdict PageDownloads::judgeOfGone(const DownloadAsker &asker, const QUrl &page,
                                                  const QUrl &file)
{
    static QDeadlineTimer minute(0);
    static int left = 0;
    static bool isTold = false;
    if (minute.hasExpired()) {
        minute.setRemainingTime(std::chrono::minutes(1));
        left = mostOfGone;
        isTold = false;
    }
    if (!mayNever(asker, page, file) && left-- > 0)
        return Verdict::Go;
    if (!std::exchange(isTold, true))
        qCWarning(lcEngine) << "refuses downloads of pages that have gone";
    return Verdict::Refused;
}

AskingSite PageDownloads::siteOf(const DownloadAsker &asker) const
{
    if (asker.isFrameWithoutSite)
        return {};
    const QUrl page = m_page.committedUrl();
    return AskingSite::of(asker.site.isEmpty() ? page : asker.site, page);
}

void PageDownloads::ask(const DownloadAsker &asker)
{
    const QString name = nameOf(asker);
    PageQuestion question;
    question.kind = "downloads "_L1 + name;
    question.asker = m_page.committedUrl();
    question.text =
        texts.at<"strDownloads",
                 "This page wants to download more files. Do you want to download them?">();
    if (name != originOf(question.asker)) {
        question.text = texts.at<"strFrameDownloads",
                                 "A frame in this page wants to download more "
                                 "files. Do you want to download them?">();
        if (!asker.isFrameWithoutSite) {
            question.around = question.asker;
            question.asker = asker.site;
        }
    }
    question.yes = texts.at<"cmdYes", "Yes">();
    question.no = texts.at<"cmdNo", "No">();
    question.noHolds = true;
    const AskingSite site = siteOf(asker);
    question.remember = m_page.permissions().mayKeep(site);
    question.done = [self = QPointer(this), name, site](PageQuestion::Reply reply) {
        if (!self)
            return;
        const bool isWanted = reply.answer == PageQuestion::Answer::Yes;
        if (reply.isRemembered)
            self->m_page.permissions().keep(site, {Permission::Downloads}, isWanted);
        self->finish(name, reply.answer);
    };
    if (!m_page.questions() || !m_page.questions()->ask(question)) {
        m_refused += m_waiting.value(name);
        m_tells.start();
        finish(name, PageQuestion::Answer::No);
    }
}

void PageDownloads::finish(const QString &asker, PageQuestion::Answer answer)
{
    if (m_waiting.take(asker) == 0)
        return;
    const bool isWanted = answer == PageQuestion::Answer::Yes;
    if (isWanted)
        m_allowed.insert(asker);
    emit answered(asker, isWanted);
}

PageDownloads::Verdict PageDownloads::refuse()
{
    ++m_refused;
    if (!m_tells.isActive())
        m_tells.start();
    return Verdict::Refused;
}

void PageDownloads::tellRefused()
{
    qCWarning(lcEngine) << "refused" << std::exchange(m_refused, 0) << "downloads of"
                        << PrivateProfiles::siteForLog(m_page);
}
