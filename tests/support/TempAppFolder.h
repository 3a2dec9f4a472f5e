#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// An application folder of a test's own: AppData, AppData/Languages and Profiles, empty, and the
/// settings path set as the start-up routine sets it. The language name is "English". When it
/// goes, the files go with it and the paths and the language are what they were before.
class TempAppFolder {
public:
    TempAppFolder();
    ~TempAppFolder();
    TempAppFolder(const TempAppFolder &) = delete;
    TempAppFolder &operator=(const TempAppFolder &) = delete;

    /// False when the folder could not be made; a test's init() should QVERIFY it.
    bool isValid() const;

    /// The folder itself, without a trailing slash.
    QString path() const;
    /// `name` is a path below the application folder, such as "AppData/PopupURLs.txt".
    QString file(const QString &name) const;
    QString settingsFile() const;

    /// Replaces the file's bytes, making missing folders on the way; false when that failed.
    bool write(const QString &name, const QByteArray &bytes) const;
    /// The file's bytes; null (not just empty) when there is no such file.
    QByteArray read(const QString &name) const;
    bool exists(const QString &name) const;

    /// Settings.ini as a whole.
    bool writeSettings(const QByteArray &bytes) const;
    QByteArray readSettings() const;
    /// AppData/Languages/NAME.ini as a whole.
    bool writeLanguage(const QString &name, const QByteArray &bytes) const;

    /// One value through the INI store, in Settings.ini.
    bool setSetting(const QString &section, const QString &key, const QString &value) const;
    /// The stored value; `text` where there is none.
    QString setting(const QString &section, const QString &key, const QString &text = {}) const;

private:
    QTemporaryDir m_folder;
    QString m_oldPath;
    QString m_oldSettings;
    QString m_oldLanguage;
    bool m_valid = false;
};
