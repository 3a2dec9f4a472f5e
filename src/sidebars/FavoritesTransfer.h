#pragma once

#include "BookmarkImport.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <atomic>
#include <memory>

class Frame;
class QThread;
class TransferStrip;

/// Import and Export of the Favorites menu: asks for the file, works beside the interface, and
/// tells in a strip at the bottom of the frame how far it is and what came of it.
class FavoritesTransfer : public QObject {
    Q_OBJECT

public:
    explicit FavoritesTransfer(Frame &frame);
    ~FavoritesTransfer() override;

    /// Asks for a file and writes all favorites to it; an export that is stopped before it writes
    /// leaves the file alone.
    void exportFile();
    /// Asks for a file and brings its links into the Favorites folder.
    void importFile();

    bool isRunning() const { return m_thread != nullptr; }
    /// Ends what is under way; what was brought in stays.
    void stop() { m_stop = true; }

signals:
    void finished();

private:
    struct Exported {
        enum class End { Stopped, Failed, Written };

        int links = 0;
        int folders = 0;
        int skipped = 0;
        End end = End::Stopped;
    };

    QString askForFile(bool save);
    void start(const QString &doing, const std::function<void()> &work,
               const std::function<void()> &tell);
    void runImport(const QString &file, const QString &root);
    void runExport(const QString &file, const QString &root);
    void tellImport();
    void tellExport();
    void showList();
    TransferStrip &strip();

    Frame &m_frame;
    TransferStrip *m_strip = nullptr;
    std::unique_ptr<QThread> m_thread;
    QTimer m_progress;
    // Shared with the thread.
    std::atomic<bool> m_stop = false;
    std::atomic<int> m_percent = 0;
    // The thread's while it runs.
    ImportOutcome m_imported;
    bool m_importStopped = false;
    Exported m_exported;
};
