#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A desktop's tool for its default browser (xdg-settings) and its folder of programs, in place of
/// the machine's own while it lives.
class FakeBrowserTool {
public:
    FakeBrowserTool()
        : m_path(qgetenv("PATH"))
    {
        QDir().mkpath(m_home.filePath(QStringLiteral("bin")));
        QDir().mkpath(m_home.filePath(QStringLiteral("share/applications")));
        qputenv("PATH",
                QFile::encodeName(m_home.filePath(QStringLiteral("bin"))) + ":/usr/bin:/bin");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("share"))));
        qputenv("XDG_DATA_DIRS", "/nowhere");
    }
    ~FakeBrowserTool()
    {
        qputenv("PATH", m_path);
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_DATA_DIRS");
    }
    FakeBrowserTool(const FakeBrowserTool &) = delete;
    FakeBrowserTool &operator=(const FakeBrowserTool &) = delete;

    /// The tool is a script of these lines, which notes its arguments before.
    bool does(const QByteArray &commands) const
    {
        QFile file(m_home.filePath(QStringLiteral("bin/xdg-settings")));
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
            && file.write("#!/bin/sh\necho \"$@\" >>'" + QFile::encodeName(log()) + "'\n" + commands
                          + '\n')
            > 0
            && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// The desktop knows a program by that name.
    bool install(const QString &id) const
    {
        QFile file(m_home.filePath(QStringLiteral("share/applications/") + id
                                   + QStringLiteral(".desktop")));
        return file.open(QIODevice::WriteOnly)
            && file.write("[Desktop Entry]\nType=Application\nName=Orvane\nExec=orvane\n") > 0;
    }
    QString log() const { return m_home.filePath(QStringLiteral("log")); }
    /// A line for each call.
    QByteArray called() const
    {
        QFile file(log());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_home;
    QByteArray m_path;
};
