#include "DownloadStrip.h"

#include "DownloadList.h"
#include "Texts.h"
#include "ThemedIcon.h"

#include <QLocale>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmDownloads"> texts;

/// Milliseconds between two names that differ in numbers alone.
constexpr int namePace = 5000;
/// Names that the strip's own name holds.
constexpr qsizetype mostNamed = 5;

QString joined(const QStringList &parts)
{
    QStringList filled = parts;
    filled.removeAll(QString());
    return filled.join(u", "_s);
}

QStringList namesOf(const QList<Download> &downloads)
{
    QStringList names;
    for (const Download &download : downloads.first(std::min(mostNamed, downloads.size())))
        names.append(DownloadTexts::name(download));
    return names;
}

}

DownloadStrip::DownloadStrip(DownloadList &list, QWidget *parent)
    : QPushButton(parent)
    , m_list(list)
    , m_seen(QDateTime::currentDateTimeUtc().addMSecs(-1))
{
    setObjectName("downloadStrip"_L1);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setIcon(themedIcon(u"downloads"_s));
    m_names.setSingleShot(true);
    connect(&m_names, &QTimer::timeout, this, &DownloadStrip::nameAnew);
    connect(&list, &DownloadList::added, this, &DownloadStrip::look);
    connect(&list, &DownloadList::changed, this, &DownloadStrip::look);
    m_looks.setSingleShot(true);
    connect(&m_looks, &QTimer::timeout, this, &DownloadStrip::look);
    connect(&list, &DownloadList::removed, &m_looks, qOverload<>(&QTimer::start));
    hide();
    look();
}

void DownloadStrip::setListSeen(bool seen)
{
    if (seen || m_isSeen)
        m_seen = QDateTime::currentDateTimeUtc();
    m_isSeen = seen;
    look();
}

void DownloadStrip::translate()
{
    m_texts = DownloadTexts();
    look();
    nameAnew();
}

bool DownloadStrip::isNews(const Download &download) const
{
    return download.state == Download::State::Failed && !m_isSeen
        && std::max(download.began, download.ended) > m_seen;
}

void DownloadStrip::look()
{
    const Told before = std::exchange(m_told, tell());
    if (m_told.constant != before.constant)
        nameAnew();
    else if (!m_names.isActive())
        m_names.start(namePace);
    setVisible(!m_told.subject.isEmpty());
    update();
}

DownloadStrip::Told DownloadStrip::tell() const
{
    QList<Download> underWay;
    QList<Download> failed;
    for (const Download &download : m_list.all()) {
        if (download.isUnderWay())
            underWay.append(download);
        else if (isNews(download))
            failed.append(download);
    }
    Told told;
    if (underWay.size() == 1)
        told = tellOne(underWay.first());
    else if (!underWay.isEmpty())
        told = tellMany(underWay);
    if (!failed.isEmpty())
        tellFailed(told, failed);
    return told;
}

DownloadStrip::Told DownloadStrip::tellOne(const Download &download) const
{
    const QString pace = download.state == Download::State::Running
        ? m_texts.pace(m_list.rate(download.id), m_list.secondsLeft(download.id))
        : QString();
    Told told;
    told.subject = DownloadTexts::name(download);
    told.share = DownloadTexts::share(download.received, download.size);
    told.rest = joined({download.received > 0 || told.share >= 0
                            ? m_texts.progress(download.received, download.size)
                            : QString(),
                        m_texts.state(download, pace)});
    told.constant = told.subject + QString::number(int(download.state));
    return told;
}

DownloadStrip::Told DownloadStrip::tellMany(const QList<Download> &downloads) const
{
    const DownloadList::Sum sum = m_list.sum();
    const auto held = std::count_if(downloads.cbegin(), downloads.cend(), [](const Download &each) {
        return each.state == Download::State::Held;
    });
    const QLocale locale;
    Told told;
    told.subject = texts.at<"strCount", "Downloads: %1">().arg(locale.toString(sum.count));
    told.share = sum.hasUnknown ? -1 : DownloadTexts::share(sum.received, sum.size);
    told.rest = joined({told.share < 0 ? QString() : m_texts.progress(sum.received, sum.size),
                        m_texts.pace(sum.rate, sum.secondsLeft),
                        held == 0 ? QString()
                                  : texts.at<"strHeldCount", "Waiting for your answer: %1">().arg(
                                      locale.toString(held))});
    told.constant =
        joined(namesOf(downloads)) + QString::number(sum.count) + u' ' + QString::number(held);
    return told;
}

void DownloadStrip::tellFailed(Told &told, const QList<Download> &failed) const
{
    const QString count =
        texts.at<"strFailedCount", "Failed: %1">().arg(QLocale().toString(failed.size()));
    if (!told.subject.isEmpty()) {
        told.rest = joined({told.rest, count});
    } else if (failed.size() == 1) {
        told.subject = DownloadTexts::name(failed.first());
        told.rest = m_texts.state(failed.first(), {});
    } else {
        told.subject = texts.at<"Caption", "Downloads">();
        told.rest = count;
    }
    told.constant += joined(namesOf(failed)) + count;
}

void DownloadStrip::nameAnew()
{
    m_names.stop();
    QList<Download> named;
    for (const Download &download : m_list.all()) {
        if (download.isUnderWay() || isNews(download))
            named.append(download);
    }
    QStringList names = namesOf(named);
    names.removeAll(m_told.subject);
    setAccessibleName(joined({m_told.subject, joined(names), m_told.rest}));
}
