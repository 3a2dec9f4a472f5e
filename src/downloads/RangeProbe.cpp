#include "RangeProbe.h"

#include "DownloadList.h"
#include "WebThread.h"

#include <QLocale>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace {
using State = Download::State;

/// Milliseconds after which a download is one that takes a while.
constexpr int someWhile = 1000;
/// Bytes; less is as well asked for anew.
constexpr qint64 leastSize = 16 * 1024;

bool isOfUse(const Download &download)
{
    const bool isOnItsWay = download.state == State::Running || download.state == State::Paused;
    return isOnItsWay && !download.isPrivate() && download.isOfWeb() && download.isRepeatable
        && download.size >= leastSize && download.received < download.size
        && download.etag.isEmpty() && download.lastModified.isEmpty();
}

QDateTime timeOf(const QByteArray &header)
{
    QDateTime time =
        QLocale::c().toDateTime(QString::fromLatin1(header), u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_s);
    time.setTimeZone(QTimeZone::utc());
    return time;
}

/// Of a file that was changed since the download began, the first bytes may be the old one's.
bool isOlder(const Download &download, const RangeAnswer &answer)
{
    const QDateTime changed = timeOf(answer.lastModified);
    const QDateTime said = timeOf(answer.date);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (!changed.isValid() || !download.began.isValid())
        return true;
    // Whole seconds, by the server's clock.
    const qint64 passed = download.began.secsTo(now);
    return changed <= (said.isValid() ? said : now).addSecs(1 - passed);
}

/// A page may have any other site asked by what it begins, without its user: with his cookies only
/// its own. What comes from no page that is known may come from any.
WebManners mannersFor(const Download &download, const MannersNow &manners)
{
    WebManners result = manners();
    if (download.page.host() != download.address.host())
        result.cookies.clear();
    return result;
}

/// The same as the engine brings.
bool isBelieved(const Download &download, const RangeAnswer &answer)
{
    constexpr int partial = 206;
    const bool isPlain = answer.contentEncoding.isEmpty() || answer.contentEncoding == "identity";
    return answer.status == partial && answer.first() == 0 && isPlain
        && answer.total() == download.size && isOlder(download, answer);
}
}

RangeProbe::RangeProbe(DownloadList &list, const MannersNow &manners, QObject *parent)
    : QObject(parent)
    , m_list(list)
    , m_manners(manners)
{
    m_looks.setSingleShot(true);
    connect(&m_looks, &QTimer::timeout, this, &RangeProbe::look);
    connect(&list, &DownloadList::added, this, &RangeProbe::wake);
    connect(&list, &DownloadList::changed, this, &RangeProbe::wake);
    connect(&list, &DownloadList::left, this, [this] { m_looks.stop(); });
}

RangeProbe::~RangeProbe()
{
    for (RangeFetch *fetch : std::as_const(m_fetches))
        QMetaObject::invokeMethod(
            fetch, [fetch] { delete fetch; }, Qt::BlockingQueuedConnection);
}

void RangeProbe::wake()
{
    if (!m_looks.isActive())
        m_looks.start(someWhile);
}

void RangeProbe::look()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    bool hasYoung = false;
    QSet<QString> asked;
    for (const Download &download : m_list.all()) {
        // Begun anew it is asked for once more.
        const bool wasAsked = download.isUnderWay() && m_asked.contains(download.id);
        const bool isYoung = download.began.msecsTo(now) < someWhile;
        const bool isWanted = !wasAsked && isOfUse(download);
        hasYoung = hasYoung || (isWanted && isYoung);
        if (isWanted && !isYoung)
            ask(download);
        if (wasAsked || (isWanted && !isYoung))
            asked.insert(download.id);
    }
    m_asked = asked;
    if (hasYoung)
        wake();
}

void RangeProbe::ask(const Download &download)
{
    if (!m_web)
        m_web = WebThread::shared();
    auto *fetch =
        new RangeFetch(*m_web, {download.address, mannersFor(download, m_manners), {}, {}});
    m_fetches.insert(fetch);
    connect(fetch, &RangeFetch::ended, this, [this, fetch, id = download.id](const RangeEnd &end) {
        m_fetches.remove(fetch);
        fetch->deleteLater();
        take(id, end.answer);
    });
    QMetaObject::invokeMethod(
        fetch, [fetch] { fetch->start(); }, Qt::QueuedConnection);
}

void RangeProbe::take(const QString &id, const RangeAnswer &answer)
{
    m_list.change(id, [&answer](Download &download) {
        if (!isOfUse(download) || !isBelieved(download, answer))
            return;
        const RangeAsked named{0, download.size, answer.etag, answer.lastModified};
        if (named.condition().isEmpty())
            return;
        download.etag = answer.etag;
        download.lastModified = answer.lastModified;
    });
}
