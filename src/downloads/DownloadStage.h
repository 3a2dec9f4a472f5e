#pragma once

#include <QString>

#include <memory>
#include <system_error>

class StageFolder;

/// The hidden folder beside its place in which a download is until it is whole. It is locked while
/// it has an owner, so that no other program takes up what one still brings, and goes with the
/// object unless it was told to stay.
class DownloadStage {
public:
    /// Makes one in `folder`.
    explicit DownloadStage(const QString &folder);
    ~DownloadStage();
    DownloadStage(const DownloadStage &) = delete;
    DownloadStage &operator=(const DownloadStage &) = delete;

    /// One that an earlier program left; null where it is gone or another program has it.
    static std::unique_ptr<DownloadStage> take(const QString &path);
    /// Lets go of one without waiting for the disk, which may have gigabytes to forget, and removes
    /// it once more a little later, as the engine may not be through with it.
    static void drop(std::unique_ptr<DownloadStage> stage);

    /// False where nothing can be written.
    bool isValid() const;
    /// Why nothing can.
    std::error_code error() const;
    /// It is still in its place: nobody has removed, moved or renamed a folder on the way to it.
    bool isThere() const;
    /// Of the folder.
    QString path() const;
    /// Where the bytes are to be written.
    QString file() const;
    /// The bytes that came so far, under whatever name the engine had them when it ended; empty
    /// where there are none.
    QString arrived() const;
    /// What the engine has not brought to its end it removes as it ends: gives the bytes that came
    /// so far the name of `file`, by which it does not know them.
    void setAside();
    /// It stays after the object, for `take`.
    void keep();

private:
    explicit DownloadStage(std::unique_ptr<StageFolder> folder);

    std::unique_ptr<StageFolder> m_folder;
};
