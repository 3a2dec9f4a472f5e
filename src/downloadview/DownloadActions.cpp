#include "DownloadActions.h"

#include "DesktopPrograms.h"
#include "DownloadList.h"
#include "LeftDownload.h"
#include "MsgBox.h"
#include "RunnableFile.h"
#include "ShownText.h"
#include "Texts.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QWidget>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmDownloads"> texts;

using State = Download::State;

bool isRunning(const Download &each)
{
    return each.state == State::Running;
}

bool isPaused(const Download &each)
{
    return each.state == State::Paused;
}

bool canBeCancelled(const Download &each)
{
    return each.isUnderWay() && each.state != State::Finishing;
}

bool isDone(const Download &each)
{
    return each.state == State::Done;
}

bool canBeRetried(const Download &each)
{
    const bool isOfUse = each.isRepeatable || LeftDownload::isWhole(each);
    return each.isOver() && !isDone(each) && isOfUse;
}

bool hasAddress(const Download &each)
{
    return !each.address.isEmpty();
}

bool hasFolder(const Download &each)
{
    return !each.folder.isEmpty();
}

bool isOver(const Download &each)
{
    return each.isOver();
}

/// What is under the name is a file of its own in its own folder; the list may have been written
/// by somebody else.
bool isThere(const Download &download)
{
    const QFileInfo file(download.path());
    return QDir::isAbsolutePath(download.folder) && file.fileName() == download.name
        && !file.isSymLink() && file.isFile();
}

}

DownloadActions::DownloadActions(DownloadList &list, const Chosen &chosen, QWidget &owner)
    : QObject(&owner)
    , m_list(list)
    , m_chosen(chosen)
    , m_owner(owner)
    , m_pause(add("cmdPause", isRunning, &DownloadActions::pause))
    , m_resume(add("cmdResume", isPaused, &DownloadActions::resume))
    , m_cancel(add("cmdCancel", canBeCancelled, &DownloadActions::cancel))
    , m_retry(add("cmdRetry", canBeRetried, &DownloadActions::retry))
    , m_open(add("cmdOpen", isDone, &DownloadActions::open))
    , m_openFolder(add("cmdOpenFolder", hasFolder, &DownloadActions::openFolder))
    , m_copyAddress(add("cmdCopyAddress", hasAddress, &DownloadActions::copyAddress))
    , m_remove(add("cmdRemove", isOver, &DownloadActions::remove))
{
}

QAction *DownloadActions::add(const char *name, Does isFor, Act act)
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1StringView(name));
    connect(action, &QAction::triggered, this, act);
    m_entries.append({action, isFor});
    return action;
}

QList<QAction *> DownloadActions::all() const
{
    QList<QAction *> actions;
    for (const Entry &entry : m_entries)
        actions.append(entry.action);
    return actions;
}

void DownloadActions::translate()
{
    m_pause->setText(texts.at<"cmdPause", "Pause">());
    m_resume->setText(texts.at<"cmdResume", "Resume">());
    m_cancel->setText(texts.at<"cmdCancel", "Cancel">());
    m_retry->setText(texts.at<"cmdRetry", "Retry">());
    m_open->setText(texts.at<"cmdOpen", "Open">());
    m_openFolder->setText(texts.at<"cmdOpenFolder", "Open Folder">());
    m_copyAddress->setText(texts.at<"cmdCopyAddress", "Copy Address">());
    m_remove->setText(texts.at<"cmdRemove", "Remove From List">());
}

void DownloadActions::refresh()
{
    const QList<Download> chosen = m_chosen();
    for (const Entry &entry : std::as_const(m_entries))
        entry.action->setEnabled(std::any_of(chosen.cbegin(), chosen.cend(), entry.isFor));
    // A program for each of many files is hardly what was meant.
    if (chosen.size() > 1)
        m_open->setEnabled(false);
}

QList<Download> DownloadActions::chosenFor(const QAction *action) const
{
    QList<Download> chosen = m_chosen();
    for (const Entry &entry : m_entries) {
        if (entry.action == action)
            chosen.removeIf([&entry](const Download &each) { return !entry.isFor(each); });
    }
    return chosen;
}

void DownloadActions::forEach(const QAction *action, void (DownloadList::*act)(const QString &))
{
    const QList<Download> chosen = chosenFor(action);
    for (const Download &download : chosen)
        (m_list.*act)(download.id);
}

void DownloadActions::pause()
{
    forEach(m_pause, &DownloadList::pause);
}

void DownloadActions::resume()
{
    forEach(m_resume, &DownloadList::resume);
}

void DownloadActions::cancel()
{
    forEach(m_cancel, &DownloadList::cancel);
}

void DownloadActions::retry()
{
    forEach(m_retry, &DownloadList::retry);
}

void DownloadActions::pauseOrResume()
{
    if (chosenFor(m_pause).isEmpty())
        resume();
    else
        pause();
}

void DownloadActions::remove()
{
    QStringList ids;
    const QList<Download> chosen = chosenFor(m_remove);
    for (const Download &download : chosen)
        ids.append(download.id);
    m_list.remove(ids);
}

void DownloadActions::copyAddress()
{
    QStringList addresses;
    const QList<Download> chosen = chosenFor(m_copyAddress);
    for (const Download &download : chosen)
        addresses.append(download.address.toString(QUrl::FullyEncoded));
    if (!addresses.isEmpty())
        QApplication::clipboard()->setText(addresses.join(u'\n'));
}

void DownloadActions::open()
{
    const QList<Download> chosen = m_chosen();
    if (chosen.size() != 1 || !isDone(chosen.first()))
        return;
    const Download &file = chosen.first();
    if (isThere(file) && !isRunnable(file.path()))
        DesktopPrograms::open(file.path(), [owner = QPointer(this), name = file.name] {
            if (owner)
                owner->tell(
                    texts.at<"strNoProgram", "The desktop has no program that opens %1.">().arg(
                        shownText(name)));
        });
    else
        show(chosen);
}

void DownloadActions::openFolder()
{
    show(chosenFor(m_openFolder));
}

/// Those that are there, in their folders; of the others at least the folder.
void DownloadActions::show(const QList<Download> &files)
{
    QStringList paths;
    for (const Download &file : files) {
        if (isThere(file))
            paths.append(file.path());
    }
    const QString folder = files.value(0).folder;
    const auto failed = [owner = QPointer(this), folder] {
        if (owner)
            owner->tell(texts.at<"strNoFolder", "The desktop cannot show the folder %1.">().arg(
                shownText(folder)));
    };
    if (!paths.isEmpty()) {
        DesktopPrograms::showInFolder(paths, failed);
        return;
    }
    const Download first = files.value(0);
    if (isDone(first))
        tell(texts.at<"strFileGone", "The file %1 is no longer there.">().arg(
            shownText(first.name)));
    else if (QDir::isAbsolutePath(folder) && QFileInfo(folder).isDir())
        DesktopPrograms::open(folder, failed);
    else
        tell(texts.at<"strFolderIsGone", "The folder %1 is no longer there.">().arg(
            shownText(folder)));
}

void DownloadActions::tell(const QString &text)
{
    MsgBox::inform(m_owner.window(), text);
}
