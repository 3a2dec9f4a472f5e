#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>
#include <vector>

/// The program as it is built, in an application folder and a home of its own, started as often as
/// wanted; each process ends with this.
class BuiltProgram {
public:
    /// `program`: its file. `homeUrl`: what it opens by itself.
    BuiltProgram(const QString &program, const QString &homeUrl)
    {
        for (const char *name : {"AppData/Languages", "Profiles", "home", "session", "work"})
            QDir(m_folder.path()).mkpath(QLatin1String(name));
        QFile::setPermissions(file(QStringLiteral("session")),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile::copy(program, file(QStringLiteral("orvane")));
        write(QStringLiteral("AppData/Settings.ini"),
              "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\nHome-URL="
                  + homeUrl.toUtf8() + "\r\n");
    }

    QString file(const QString &name) const { return m_folder.filePath(name); }
    bool write(const QString &name, const QByteArray &bytes) const
    {
        QFile out(file(name));
        return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size();
    }
    QByteArray read(const QString &name) const
    {
        QFile in(file(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    /// For the starts from now on.
    void setVariable(const QString &name, const QString &value) { m_more.insert(name, value); }

    /// In the folder "work".
    QProcess &start(const QStringList &arguments = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), file(QStringLiteral("home")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), file(QStringLiteral("session")));
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            environment.remove(QLatin1String(name));
        environment.insert(m_more);
        m_started.push_back(std::make_unique<QProcess>());
        QProcess &process = *m_started.back();
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setWorkingDirectory(file(QStringLiteral("work")));
        process.start(file(QStringLiteral("orvane")), arguments);
        return process;
    }

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_more;
    /// They go before their folder.
    std::vector<std::unique_ptr<QProcess>> m_started;
};
