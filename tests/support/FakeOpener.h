#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// While it lives, the desktop's opener of files is one that writes down what it was given and ends
/// with the status that the test says.
class FakeOpener {
public:
    FakeOpener()
        : m_path(qgetenv("PATH"))
    {
        qputenv("PATH", m_folder.path().toUtf8() + ":/usr/bin:/bin");
        setStatus(0);
    }
    ~FakeOpener() { qputenv("PATH", m_path); }
    FakeOpener(const FakeOpener &) = delete;
    FakeOpener &operator=(const FakeOpener &) = delete;

    void setStatus(int status) const
    {
        QFile script(m_folder.filePath(QStringLiteral("xdg-open")));
        if (!script.open(QIODevice::WriteOnly))
            return;
        script.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >> '"
                     + m_folder.filePath(QStringLiteral("opened")).toUtf8() + "'\nexit "
                     + QByteArray::number(status) + "\n");
        script.setPermissions(script.permissions() | QFile::ExeOwner);
    }
    /// Paths, in the order in which they came.
    QStringList opened() const
    {
        QFile file(m_folder.filePath(QStringLiteral("opened")));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_path;
};
