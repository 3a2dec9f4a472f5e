#include "DownloadTexts.h"

#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"

#include <QLocale>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmDownloads"> texts;

/// Letters of an address that is its own contents.
constexpr qsizetype longestContents = 200;
/// Seconds; what is said to take longer is not known well enough to be said.
constexpr qint64 longestTime = 100 * 3600;

QString twoDigits(qint64 number)
{
    return QString::number(number).rightJustified(2, u'0');
}

QMap<Download::State, QString> stateTexts()
{
    using enum Download::State;
    return {{Running, texts.at<"strRunning", "Running">()},
            {Paused, texts.at<"strPaused", "Paused">()},
            {Held, texts.at<"strHeld", "Waits for your answer">()},
            {Unplaced, texts.at<"strUnplaced", "Waits for its place">()},
            {Finishing, texts.at<"strFinishing", "Finishing">()},
            {Done, texts.at<"strDone", "Done">()},
            {Cancelled, texts.at<"strCancelled", "Cancelled">()},
            {Unfinished, texts.at<"strUnfinished", "Not finished">()}};
}

QMap<Download::Problem, QString> problemTexts()
{
    using enum Download::Problem;
    return {
        {None, texts.at<"strFailed", "It failed">()},
        {NoRoom, texts.at<"strNoRoom", "There is no room left in the folder">()},
        {FolderGone, texts.at<"strFolderGone", "The folder is gone">()},
        {NotAllowed, texts.at<"strNotAllowed", "Writing in the folder is not allowed">()},
        {WriteError, texts.at<"strWriteError", "The file could not be written">()},
        {ConnectionLost, texts.at<"strConnectionLost", "The connection was lost">()},
        {ServerRefused, texts.at<"strServerRefused", "The server does not give the file">()},
        {WrongLength, texts.at<"strWrongLength", "The file has another length than announced">()},
        {FileChanged, texts.at<"strFileChanged", "The file on the server has changed">()},
        {NoRanges, texts.at<"strNoRanges", "The server only sends whole files">()},
        {InUse, texts.at<"strInUse", "Another program is busy with this download">()}};
}

QMap<Download::Problem, QString> anewTexts()
{
    using enum Download::Problem;
    return {
        {FileChanged,
         texts.at<"strAnewFileChanged", "Begun anew because the file on the server has changed">()},
        {NoRanges,
         texts.at<"strAnewNoRanges", "Begun anew because the server only sends whole files">()}};
}

}

DownloadTexts::DownloadTexts()
    : m_states(stateTexts())
    , m_problems(problemTexts())
    , m_anew(anewTexts())
    , m_rate(texts.at<"strRate", "%1/s">())
    , m_timeLeft(texts.at<"strTimeLeft", "%1 left">())
    , m_share(texts.at<"strShare", "%1%">())
{
}

QString DownloadTexts::name(const Download &download)
{
    return shownText(download.name);
}

QString DownloadTexts::address(const QUrl &url)
{
    if (url.scheme() != "data"_L1)
        return shownAddress(url);
    const QString contents = url.path(QUrl::FullyEncoded);
    const QString start = shownText("data:"_L1 + contents.left(longestContents));
    return contents.size() > longestContents ? start + u'…' : start;
}

QString DownloadTexts::size(qint64 bytes)
{
    return bytes < 0 ? QString() : QLocale().formattedDataSize(bytes, 1);
}

QString DownloadTexts::when(const QDateTime &time)
{
    return time.isValid() ? QLocale().toString(time.toLocalTime(), QLocale::ShortFormat)
                          : QString();
}

int DownloadTexts::share(qint64 received, qint64 size)
{
    if (size <= 0)
        return size < 0 ? -1 : 100;
    // Rounded down: whole only when it is.
    return int(std::clamp(double(received) * 100 / double(size), 0.0, 100.0));
}

QString DownloadTexts::progress(qint64 received, qint64 total) const
{
    const int hundredths = share(received, total);
    return hundredths < 0 ? size(received) : m_share.arg(QLocale().toString(hundredths));
}

QString DownloadTexts::pace(qint64 rate, qint64 secondsLeft) const
{
    QStringList parts;
    if (rate > 0)
        parts.append(m_rate.arg(size(rate)));
    if (secondsLeft >= 0 && secondsLeft < longestTime)
        parts.append(timeLeft(secondsLeft));
    return parts.join(u", "_s);
}

QString DownloadTexts::timeLeft(qint64 seconds) const
{
    const qint64 minutes = seconds / 60;
    const QString upToMinutes = minutes < 60
        ? QString::number(minutes)
        : QString::number(minutes / 60) + u':' + twoDigits(minutes % 60);
    return m_timeLeft.arg(upToMinutes + u':' + twoDigits(seconds % 60));
}

QString DownloadTexts::state(const Download &download, const QString &pace) const
{
    using enum Download::State;
    if (download.state == Failed)
        return m_problems.value(download.problem, m_problems.value(Download::Problem::None));
    const QString state =
        download.state == Running && !pace.isEmpty() ? pace : m_states.value(download.state);
    const QString why = m_anew.value(download.problem);
    return why.isEmpty() ? state : state + u". "_s + why;
}
