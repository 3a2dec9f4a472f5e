#include "FavoritesTransfer.h"
#include "AppFolder.h"
#include "BookmarkWriter.h"
#include "CommonDialog.h"
#include "FileUpdate.h"
#include "FileWriter.h"
#include "Frame.h"
#include "SkippedDialog.h"
#include "SpecialFolders.h"
#include "Texts.h"
#include "TransferStrip.h"

#include <QApplication>
#include <QMainWindow>
#include <QThread>

#include <optional>

using namespace Qt::StringLiterals;

namespace {
constexpr int secondFilter = 2;
constexpr int confirmed = 1;
constexpr int progressMs = 50;

constexpr Texts<"frmFavoritesTransfer"> texts;
}

FavoritesTransfer::FavoritesTransfer(Frame &frame)
    : QObject(frame.window())
    , m_frame(frame)
{
    m_progress.setInterval(progressMs);
    connect(&m_progress, &QTimer::timeout, this, [this] { strip().setProgress(m_percent); });
}

FavoritesTransfer::~FavoritesTransfer()
{
    m_stop = true;
    if (m_thread)
        m_thread->wait();
}

TransferStrip &FavoritesTransfer::strip()
{
    if (!m_strip) {
        m_strip = new TransferStrip(m_frame.window());
        if (auto *window = qobject_cast<QMainWindow *>(m_frame.window()))
            window->addToolBar(Qt::BottomToolBarArea, m_strip);
        connect(m_strip, &TransferStrip::stopped, this, &FavoritesTransfer::stop);
        connect(m_strip, &TransferStrip::listWanted, this, &FavoritesTransfer::showList);
    }
    return *m_strip;
}

// Empty when the user cancelled.
QString FavoritesTransfer::askForFile(bool save)
{
    CommonDialog dialog;
    dialog.setDialogTitle(save ? Texts<"frmMain">::at<"mnuFavoritesExport", "Export Favorites">()
                               : Texts<"frmMain">::at<"mnuFavoritesImport", "Import Favorites">());
    dialog.setDefaultExt(u".html"_s);
    dialog.setFilter(u"HTM File (*.htm)|*.htm|HTML File (*.html)|*.html"_s);
    dialog.setInitDir(AppFolder::path());
    QWidget *owner = m_frame.window();
    const int result =
        save ? dialog.showSave(owner, secondFilter) : dialog.showOpen(owner, secondFilter);
    return result == confirmed ? dialog.fileName() : QString();
}

void FavoritesTransfer::exportFile()
{
    const QString file = askForFile(true);
    const QString root = specialFolder(favoritesFolderNumber);
    if (file.isEmpty())
        return;
    if (isRunning() || root.isEmpty())
        return QApplication::beep();
    start(
        texts.at<"strExporting", "Exporting favorites...">(),
        [this, file, root] { runExport(file, root); }, [this] { tellExport(); });
}

void FavoritesTransfer::importFile()
{
    const QString file = askForFile(false);
    const QString root = specialFolder(favoritesFolderNumber);
    if (file.isEmpty())
        return;
    if (isRunning() || root.isEmpty())
        return QApplication::beep();
    start(
        texts.at<"strImporting", "Importing favorites...">(),
        [this, file, root] { runImport(file, root); }, [this] { tellImport(); });
}

void FavoritesTransfer::start(const QString &doing, const std::function<void()> &work,
                              const std::function<void()> &tell)
{
    m_stop = false;
    m_percent = 0;
    m_imported = {};
    m_importStopped = false;
    m_exported = {};
    strip().begin(doing);
    m_thread.reset(QThread::create(work));
    connect(m_thread.get(), &QThread::finished, this, [this, tell] {
        m_progress.stop();
        m_thread->wait();
        m_thread.release()->deleteLater();
        tell();
        emit finished();
    });
    m_progress.start();
    m_thread->start(QThread::LowPriority);
}

void FavoritesTransfer::runImport(const QString &file, const QString &root)
{
    BookmarkImport import(file, root);
    bool goesOn = true;
    while (goesOn && !m_stop) {
        goesOn = import.advance();
        m_percent = import.percent();
    }
    import.finish();
    m_imported = import.outcome();
    if (m_imported.links > 0 && !m_stop)
        FileWriter::settle(root);
    m_importStopped = goesOn;
}

void FavoritesTransfer::runExport(const QString &file, const QString &root)
{
    using End = Exported::End;
    BookmarkWriter writer(root);
    while (!m_stop && writer.advance())
        m_percent = writer.percent();
    // Waiting for the folder can be stopped; what is being written is written.
    End end = End::Failed;
    const auto whole = [&](const QByteArray &) -> std::optional<QByteArray> {
        end = m_stop ? End::Stopped : End::Failed;
        return m_stop ? std::nullopt : std::optional(writer.bytes());
    };
    if (m_stop)
        end = End::Stopped;
    else if (FileUpdate::change(file, whole))
        end = End::Written;
    m_exported = {writer.links(), writer.folders(), writer.skipped(), end};
}

void FavoritesTransfer::tellImport()
{
    QString told = texts
                       .at<"strImported",
                           "%1 favorites and %2 folders imported, %3 already there, %4 skipped.">()
                       .arg(m_imported.links)
                       .arg(m_imported.folders)
                       .arg(m_imported.known)
                       .arg(m_imported.skipped);
    if (m_imported.failed)
        told.prepend(texts.at<"strImportFailed", "The import could not be completed.">() + u' ');
    else if (m_importStopped)
        told.prepend(texts.at<"strStopped", "Stopped.">() + u' ');
    strip().end(told, !m_imported.problems.isEmpty());
}

void FavoritesTransfer::tellExport()
{
    QString told = texts
                       .at<"strExported",
                           "%1 favorites in %2 folders exported, %3 without an address left out.">()
                       .arg(m_exported.links)
                       .arg(m_exported.folders)
                       .arg(m_exported.skipped);
    if (m_exported.end == Exported::End::Stopped)
        told = texts.at<"strExportStopped", "Stopped. Nothing was exported.">();
    else if (m_exported.end == Exported::End::Failed)
        told = texts.at<"strExportFailed", "The favorites could not be exported.">();
    strip().end(told, false);
}

void FavoritesTransfer::showList()
{
    (new SkippedDialog(m_imported, m_frame.window()))->show();
}
