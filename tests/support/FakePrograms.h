#pragma once

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

/// Programs that the desktop has for addresses of some schemes; each writes down what it is given.
/// The desktop's registers are read once, so all are put in before the first is asked for.
class FakePrograms {
public:
    FakePrograms()
        : m_folder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                   + QStringLiteral("/applications"))
    {
        QDir().mkpath(m_folder.path());
    }

    void add(const QString &scheme, const QString &name)
    {
        const QString program = m_folder.filePath(scheme + QStringLiteral(".sh"));
        write(program,
              "#!/bin/sh\nprintf '%s arguments: %s\\n' $# \"$1\" >> '" + list().toUtf8() + "'\n");
        QFile(program).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QString entry = scheme + QStringLiteral(".desktop");
        write(m_folder.filePath(entry),
              "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec="
                  + program.toUtf8() + " %u\nMimeType=x-scheme-handler/" + scheme.toUtf8() + ";\n");
        m_defaults += "x-scheme-handler/" + scheme.toUtf8() + '=' + entry.toUtf8() + '\n';
        write(m_folder.filePath(QStringLiteral("mimeapps.list")),
              "[Default Applications]\n" + m_defaults);
    }
    /// "1 arguments: tel:1" for each that was started.
    QStringList opened() const
    {
        QFile file(list());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    void forget() { QFile::remove(list()); }

private:
    QString list() const { return m_folder.filePath(QStringLiteral("opened")); }
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
    }

    QDir m_folder;
    QByteArray m_defaults;
};
