#pragma once

#include <QTemporaryDir>

/// A file system of 256 kB in memory, which only the superuser can have.
class SmallDisk {
public:
    SmallDisk();
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isMounted() const { return m_mounted; }
    QString path() const { return m_folder.path(); }
    /// Lets nothing be written from now on.
    bool makeReadOnly() const;

private:
    QTemporaryDir m_folder;
    bool m_mounted = false;
};
