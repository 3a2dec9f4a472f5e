#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// A home folder of a test's own, in which the Favorites folder is made as files are put there.
class FavoritesHome {
public:
    FavoritesHome()
        : m_oldHome(qgetenv("HOME"))
    {
        qputenv("HOME", m_home.path().toUtf8());
    }
    ~FavoritesHome() { qputenv("HOME", m_oldHome); }
    FavoritesHome(const FavoritesHome &) = delete;
    FavoritesHome &operator=(const FavoritesHome &) = delete;

    QString home() const { return m_home.path(); }
    /// Without a trailing slash.
    QString favorites() const { return m_home.path() + "/Favorites"_L1; }
    QString path(const QString &name) const { return favorites() + u'/' + name; }

    bool makeFolder(const QString &name = {}) const { return QDir().mkpath(path(name)); }
    bool write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        return QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly)
            && file.write(bytes) == bytes.size();
    }
    bool writeLink(const QString &name, const QByteArray &url) const
    {
        return write(name, "[InternetShortcut]\r\nURL=" + url + "\r\n");
    }
    /// Null when there is no such file.
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_home;
    QByteArray m_oldHome;
};
