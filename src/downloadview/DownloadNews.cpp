#include "DownloadNews.h"

#include "DesktopNotice.h"
#include "DownloadList.h"
#include "DownloadTexts.h"
#include "TaskBarProgress.h"
#include "Texts.h"

#include <QGuiApplication>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmDownloads"> texts;
}

DownloadNews::DownloadNews(DownloadList &list, QObject *parent)
    : QObject(parent)
    , m_list(list)
    , m_notice(new DesktopNotice(this))
    , m_progress(new TaskBarProgress(this))
{
    connect(m_notice, &DesktopNotice::chosen, this, &DownloadNews::listWanted);
    connect(&list, &DownloadList::added, this, &DownloadNews::look);
    connect(&list, &DownloadList::changed, this, &DownloadNews::look);
    m_looks.setSingleShot(true);
    connect(&m_looks, &QTimer::timeout, this, &DownloadNews::look);
    connect(&list, &DownloadList::removed, &m_looks, qOverload<>(&QTimer::start));
    look();
}

void DownloadNews::look()
{
    bool isUnderWay = false;
    for (const Download &download : m_list.all()) {
        if (!download.isUnderWay())
            continue;
        isUnderWay = true;
        // A desktop may keep what it was given.
        if (!download.isPrivate())
            m_begun.insert(download.id);
    }
    showProgress();
    if (isUnderWay || m_begun.isEmpty())
        return;
    if (QGuiApplication::applicationState() != Qt::ApplicationActive)
        showEnd();
    m_begun.clear();
}

void DownloadNews::showProgress()
{
    const DownloadList::Sum sum = m_list.sum();
    if (sum.count == 0 || sum.size <= 0)
        m_progress->hide();
    else
        m_progress->show(double(sum.received) / double(sum.size));
}

/// What the user stopped himself is no news.
void DownloadNews::showEnd()
{
    int done = 0;
    int failed = 0;
    QString name;
    for (const Download &download : m_list.all()) {
        if (!m_begun.contains(download.id))
            continue;
        done += download.state == Download::State::Done;
        failed += download.state == Download::State::Failed;
        if (download.state == Download::State::Done || download.state == Download::State::Failed)
            name = DownloadTexts::name(download);
    }
    if (done + failed == 0)
        return;
    const QLocale locale;
    QStringList lines;
    if (done + failed == 1)
        lines.append(name);
    else if (done > 0)
        lines.append(texts.at<"strDoneCount", "Done: %1">().arg(locale.toString(done)));
    if (failed > 0)
        lines.append(texts.at<"strFailedCount", "Failed: %1">().arg(locale.toString(failed)));
    m_notice->show(failed == 0 ? texts.at<"strAllDone", "Downloads are done">()
                               : texts.at<"strAllOver", "Downloads have ended">(),
                   lines.join(u'\n'), texts.at<"strShowList", "Show">());
}
