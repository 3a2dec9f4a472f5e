#pragma once

#include <QFile>
#include <QString>

#include <system_error>

/// A file on its way into its place: without a name, or where a disk has no such files under a
/// hidden one beside its target, until it is whole. What is not put in its place goes with the
/// object. The name, if there is one, is locked: one that a killed program left is nobody's.
class FileStage {
public:
    explicit FileStage(const QString &target);
    ~FileStage();
    FileStage(const FileStage &) = delete;
    FileStage &operator=(const FileStage &) = delete;

    /// Why there is none; no error where it is ready to be written.
    std::error_code error() const { return m_error; }
    QFile &device() { return m_file; }

    /// Everything written so far is on the disk when this has no error.
    std::error_code sync();
    /// In the target's place, over what is there, in one step.
    std::error_code replace();
    /// In the target's place if there is nothing of that name, not even a link that leads nowhere.
    std::error_code create();

private:
    void open();
    std::error_code giveName();

    QByteArray m_folder;
    QByteArray m_target;
    /// Of the file as it is now; empty while it has none, and when it is in its place.
    QByteArray m_name;
    QFile m_file;
    std::error_code m_error;
};
