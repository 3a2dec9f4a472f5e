#include "Downloads.h"

#include "DownloadList.h"
#include "DownloadName.h"
#include "DownloadOrder.h"
#include "DownloadPages.h"
#include "DownloadProblem.h"
#include "DownloadRetry.h"
#include "DownloadStage.h"
#include "EngineDownload.h"
#include "Log.h"
#include "NewDownload.h"
#include "PageActivity.h"
#include "PageDownloads.h"
#include "PrivateProfiles.h"
#include "Profiles.h"
#include "SaveJob.h"
#include "WebPage.h"

#include <QApplication>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
bool isPlaceAskedFor(const QWebEngineDownloadRequest &request, WebPage *page)
{
    return page ? page->placeWish().take(request.url()) : PlaceWish::takeOfGone(request.url());
}

QWidget *windowOf(const WebPage *page)
{
    const QWidget *view = page ? QWebEngineView::forPage(page) : nullptr;
    return view ? view->window() : QApplication::activeWindow();
}

/// That the engine is asked for at a time; each has a page of its own until it is told of.
constexpr int mostOrders = 50;
/// Milliseconds after which servers that do not answer hold up the others no longer.
constexpr int patience = 3000;

/// The engine's downloads, by the numbers that it gives them.
class EngineDownloads : public QObject {
public:
    explicit EngineDownloads(QWebEngineProfile *profile)
        : QObject(profile)
        , m_profile(profile)
        , m_privateSession(PrivateProfiles::numberOf(profile))
    {
        if (m_privateSession != 0)
            followList();
        m_patience.setSingleShot(true);
        m_patience.setInterval(patience);
        connect(&m_patience, &QTimer::timeout, this, [this] {
            m_most += mostOrders;
            startOrders();
        });
    }

    void answer(QWebEngineDownloadRequest &request);
    bool goOn(const QString &id);
    /// In its turn.
    void order(const QString &id);
    /// At once, for the user who waits for it.
    void orderFor(const QString &id, const WebPage &page);
    void leaveAll();
    /// The list forgets them. Files that are whole stay.
    void forgetAll();
    int privateSession() const { return m_privateSession; }
    /// An entry for one of these.
    Download own(Download entry) const;

private:
    QStringList ids(bool (Download::*which)() const) const;
    void followList();
    void beginFor(QWebEngineDownloadRequest &request, const DownloadSource &source);
    void startOrders();
    bool takeOrdered(QWebEngineDownloadRequest &request);
    void begin(QWebEngineDownloadRequest &request, const DownloadOrder &order);
    EngineDownload *accept(QWebEngineDownloadRequest &request, const QString &id,
                           const QString &folder);

    QWebEngineProfile *m_profile;
    int m_privateSession;
    /// While a file of private windows is on its way.
    std::shared_ptr<void> m_profileHold;
    QHash<quint32, QPointer<EngineDownload>> m_all;
    QSet<quint32> m_told;
    QList<QPointer<DownloadOrder>> m_orders;
    /// Not asked for yet.
    QList<QPointer<DownloadOrder>> m_waiting;
    int m_most = mostOrders;
    QTimer m_patience;
};

QList<EngineDownloads *> theDownloads;

/// Null where there is none of that number.
EngineDownloads *downloadsOf(int privateSession)
{
    const auto found =
        std::find_if(theDownloads.cbegin(), theDownloads.cend(), [privateSession](auto *each) {
            return each->privateSession() == privateSession;
        });
    return found == theDownloads.cend() ? nullptr : *found;
}

EngineDownloads *downloadsOf(const QString &id)
{
    const Download *entry = downloadList().find(id);
    return entry ? downloadsOf(entry->privateSession) : nullptr;
}

Download EngineDownloads::own(Download entry) const
{
    entry.privateSession = m_privateSession;
    if (entry.isPrivate()) {
        entry.leavesTrace = false;
        entry.page.clear();
    }
    return entry;
}

/// Of the list's, those that are these.
QStringList EngineDownloads::ids(bool (Download::*which)() const) const
{
    QStringList result;
    for (const Download &each : downloadList().all()) {
        if (each.privateSession == m_privateSession && (each.*which)())
            result.append(each.id);
    }
    return result;
}

void EngineDownloads::followList()
{
    const auto look = [this] {
        m_profileHold =
            ids(&Download::isUnderWay).isEmpty() ? nullptr : PrivateProfiles::hold(m_profile);
    };
    connect(&downloadList(), &DownloadList::added, this, look);
    connect(&downloadList(), &DownloadList::changed, this, look);
    connect(&downloadList(), &DownloadList::removed, this, look);
}

void EngineDownloads::forgetAll()
{
    downloadList().remove(ids(&Download::isPrivate));
}

void EngineDownloads::answer(QWebEngineDownloadRequest &request)
{
    // The engine takes up a download whose connection broke, and tells of it once more. Its page
    // must not be asked for then: that may be gone, and the program with it.
    if (m_told.contains(request.id())) {
        if (EngineDownload *known = m_all.value(request.id()))
            known->accept(request);
        return;
    }
    m_told.insert(request.id());
    // What is known for certain comes first. A page being saved has its place already.
    if (takeOrdered(request) || SaveJob::take(request, m_privateSession)
        || request.state() != QWebEngineDownloadRequest::DownloadRequested)
        return;
    beginFor(request, DownloadPages::sourceOf(request, m_privateSession));
}

/// Not accepted before the signal returns means cancelled.
void EngineDownloads::beginFor(QWebEngineDownloadRequest &request, const DownloadSource &source)
{
    using Verdict = PageDownloads::Verdict;
    WebPage *page = source.page;
    const Verdict verdict = page
        ? page->downloads().judge(source.asker)
        : PageDownloads::judgeOfGone(source.asker, source.origin.page, request.url());
    if (verdict == Verdict::Refused)
        return;
    const Download entry = own(NewDownload::of(request, source));
    downloadList().add(entry, nullptr);
    EngineDownload *download = accept(request, entry.id, entry.folder);
    if (!download)
        return;
    if (page)
        page->activity().noteWork(download);
    if (verdict == Verdict::Go) {
        if (isPlaceAskedFor(request, page))
            download->askForPlace(windowOf(page));
        return;
    }
    download->hold();
    QObject::connect(&page->downloads(), &PageDownloads::answered, download,
                     [download, mine = page->downloads().nameOf(source.asker)](const QString &asker,
                                                                               bool isWanted) {
                         if (asker == mine)
                             download->endHold(isWanted);
                     });
}

bool EngineDownloads::takeOrdered(QWebEngineDownloadRequest &request)
{
    m_orders.removeAll(nullptr);
    const auto order = std::find_if(m_orders.begin(), m_orders.end(),
                                    [&](DownloadOrder *each) { return each->isFor(request); });
    if (order == m_orders.end())
        return false;
    const QPointer<DownloadOrder> mine = m_orders.takeAt(order - m_orders.begin());
    mine->deleteLater();
    QMetaObject::invokeMethod(this, &EngineDownloads::startOrders, Qt::QueuedConnection);
    if (downloadList().find(mine->id()) && !mine->isCancelled())
        begin(request, *mine);
    return true;
}

void EngineDownloads::begin(QWebEngineDownloadRequest &request, const DownloadOrder &order)
{
    const bool comes = request.interruptReason() == QWebEngineDownloadRequest::NoReason;
    const bool asksForPlace = order.asksForPlace() && comes;
    if (asksForPlace) {
        downloadList().change(order.id(), [&](Download &download) {
            download.address = order.address(request);
            const QString name = DownloadName::of(request);
            if (name != download.name)
                download.name = DownloadName::freeIn(download.folder, name);
        });
    }
    const QString folder = downloadList().find(order.id())->folder;
    EngineDownload *download = accept(request, order.id(), folder);
    if (download && asksForPlace)
        download->askForPlace(order.owner());
}

/// Null where nothing can be written; the entry says why.
EngineDownload *EngineDownloads::accept(QWebEngineDownloadRequest &request, const QString &id,
                                        const QString &folder)
{
    auto stage = std::make_unique<DownloadStage>(folder);
    if (!stage->isValid()) {
        downloadList().change(id, [&stage](Download &download) {
            download.state = Download::State::Failed;
            download.problem = DownloadProblem::of(stage->error());
            download.detail = QString::fromLocal8Bit(stage->error().message().c_str());
            download.ended = QDateTime::currentDateTimeUtc();
        });
        return nullptr;
    }
    auto *download = new EngineDownload(id, std::move(stage));
    m_all.insert(request.id(), download);
    downloadList().setTransfer(id, download);
    download->accept(request);
    qCInfo(lcEngine) << "download to" << folder;
    return download;
}

bool EngineDownloads::goOn(const QString &id)
{
    for (const QPointer<EngineDownload> &each : std::as_const(m_all)) {
        if (each && each->id() == id)
            return each->goOn();
    }
    return false;
}

void EngineDownloads::order(const QString &id)
{
    const Download *entry = downloadList().find(id);
    // Of others the engine does not tell who asked for them: they would be taken for a page's own.
    if (!entry || !entry->isOfWeb()) {
        downloadList().change(id, [](Download &download) {
            download.state = Download::State::Failed;
            download.problem = Download::Problem::Other;
            download.ended = QDateTime::currentDateTimeUtc();
        });
        return;
    }
    m_waiting.append(new DownloadOrder(id, m_profile));
    startOrders();
}

void EngineDownloads::startOrders()
{
    m_orders.removeAll(nullptr);
    while (!m_waiting.isEmpty() && m_orders.size() < m_most) {
        const QPointer<DownloadOrder> order = m_waiting.takeFirst();
        if (order->isCancelled()) {
            order->deleteLater();
            continue;
        }
        m_orders.append(order);
        order->start();
    }
    if (m_waiting.isEmpty()) {
        m_most = mostOrders;
        m_patience.stop();
    } else {
        m_patience.start();
    }
}

void EngineDownloads::orderFor(const QString &id, const WebPage &page)
{
    auto *order = new DownloadOrder(id, m_profile);
    m_orders.append(order);
    order->startFor(page.committedUrl(), windowOf(&page));
}

/// What has failed is not among those that the list knows to be under way.
void EngineDownloads::leaveAll()
{
    const auto all = std::exchange(m_all, {});
    for (const QPointer<EngineDownload> &each : all) {
        if (each)
            each->leave();
    }
    for (const QPointer<DownloadOrder> &order :
         std::exchange(m_orders, {}) + std::exchange(m_waiting, {}))
        delete order;
    m_patience.stop();
}
}

namespace Downloads {

static void begin(QWebEngineProfile *profile)
{
    auto *downloads = new EngineDownloads(profile);
    theDownloads.append(downloads);
    QObject::connect(
        profile, &QWebEngineProfile::downloadRequested, downloads,
        [downloads](QWebEngineDownloadRequest *request) { downloads->answer(*request); });
    if (downloads->privateSession() == 0)
        DownloadRetry::install(profile);
}

static void end(QWebEngineProfile *profile)
{
    EngineDownloads *downloads = downloadsOf(PrivateProfiles::numberOf(profile));
    if (!downloads)
        return;
    if (downloads->privateSession() == 0)
        downloadList().leaveAll();
    else
        downloads->forgetAll();
    downloads->leaveAll();
    theDownloads.removeOne(downloads);
}

void install()
{
    followProfile({begin, end});
}

bool goOn(const QString &id)
{
    EngineDownloads *downloads = downloadsOf(id);
    return downloads && downloads->goOn(id);
}

bool beginAnew(const QString &id)
{
    const Download *entry = downloadList().find(id);
    EngineDownloads *downloads = downloadsOf(id);
    if (!downloads || !entry->isOver() || !entry->isRepeatable)
        return false;
    downloadList().change(id, [](Download &download) {
        download.state = Download::State::Running;
        download.received = 0;
        download.size = -1;
        download.ended = {};
        download.stage.clear();
    });
    downloads->order(id);
    return true;
}

void saveAs(const WebPage &page, const QUrl &url)
{
    EngineDownloads *downloads = downloadsOf(PrivateProfiles::numberOf(page.profile()));
    if (!downloads)
        return;
    const Download entry = downloads->own(NewDownload::at(url, page));
    downloadList().add(entry, nullptr);
    downloads->orderFor(entry.id, page);
}

void leaveAll()
{
    downloadList().leaveAll();
    for (EngineDownloads *downloads : std::as_const(theDownloads))
        downloads->leaveAll();
}

}
