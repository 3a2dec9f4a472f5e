#include "ExitQuestion.h"

#include "DownloadList.h"
#include "MsgBox.h"
#include "ProgramInfo.h"
#include "Settings.h"
#include "Texts.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmMain"> texts;

QString leftOf(const DownloadList::Sum &sum)
{
    if (sum.hasUnknown && sum.size == 0)
        return texts
            .at<"strExitDownloadsUnknown",
                "Unfinished downloads: %1. How much is still to come is not known.">()
            .arg(sum.count);
    const QString text = sum.hasUnknown
        ? texts.at<"strExitDownloadsAtLeast",
                   "Unfinished downloads: %1, with at least %2 still to come.">()
        : texts.at<"strExitDownloads", "Unfinished downloads: %1, with %2 still to come.">();
    const QString left =
        QLocale().formattedDataSize(sum.size - sum.received, 1, QLocale::DataSizeTraditionalFormat);
    return text.arg(QString::number(sum.count), left);
}

/// What becomes of the downloads under way; empty where there are none.
QString wordOfDownloads()
{
    const DownloadList::Sum sum = downloadList().sum();
    if (sum.count == 0)
        return {};
    const QString kept = texts.at<"strExitKept", "What can be continued later is kept.">();
    return leftOf(sum) + u'\n' + kept + "\n\n"_L1;
}
}

bool mayExit(QWidget *frame)
{
    const QString downloads = wordOfDownloads();
    if (downloads.isEmpty() && !Settings::askOnExit.isOne())
        return true;
    const QString text = texts.at<"alertExit", "Are you sure you wish to exit">();
    return MsgBox::askAndWait(frame, downloads + text + u' ' + ProgramInfo::title() + u'?')
        == MsgBox::Answer::Yes;
}
