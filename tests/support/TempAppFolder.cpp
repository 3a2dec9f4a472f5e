#include "TempAppFolder.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "Language.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {
const auto settingsName = "AppData/Settings.ini"_L1;
}

TempAppFolder::TempAppFolder()
    : m_oldPath(AppFolder::path())
    , m_oldSettings(AppFolder::settingsPath())
    , m_oldLanguage(languageName())
{
    const QDir root(m_folder.path());
    m_valid =
        m_folder.isValid() && root.mkpath(u"AppData/Languages"_s) && root.mkpath(u"Profiles"_s);
    AppFolder::setPath(path());
    AppFolder::setSettingsPath(settingsFile());
    setLanguageName(u"English"_s);
}

TempAppFolder::~TempAppFolder()
{
    AppFolder::setPath(m_oldPath);
    AppFolder::setSettingsPath(m_oldSettings);
    setLanguageName(m_oldLanguage);
}

bool TempAppFolder::isValid() const
{
    return m_valid;
}

QString TempAppFolder::path() const
{
    return m_folder.path();
}

QString TempAppFolder::file(const QString &name) const
{
    return m_folder.filePath(name);
}

QString TempAppFolder::settingsFile() const
{
    return file(settingsName);
}

bool TempAppFolder::write(const QString &name, const QByteArray &bytes) const
{
    const QString target = file(name);
    if (!QDir().mkpath(QFileInfo(target).path()))
        return false;
    QFile out(target);
    return out.open(QIODevice::WriteOnly | QIODevice::Truncate) && out.write(bytes) == bytes.size()
        && out.flush();
}

QByteArray TempAppFolder::read(const QString &name) const
{
    QFile in(file(name));
    if (!in.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = in.readAll();
    return bytes.isNull() ? QByteArray("") : bytes;
}

bool TempAppFolder::exists(const QString &name) const
{
    return QFileInfo::exists(file(name));
}

bool TempAppFolder::writeSettings(const QByteArray &bytes) const
{
    return write(settingsName, bytes);
}

QByteArray TempAppFolder::readSettings() const
{
    return read(settingsName);
}

bool TempAppFolder::writeLanguage(const QString &name, const QByteArray &bytes) const
{
    return write("AppData/Languages/"_L1 + name + ".ini"_L1, bytes);
}

bool TempAppFolder::setSetting(const QString &section, const QString &key,
                               const QString &value) const
{
    return bool(writeIni(section, key, value, settingsFile()));
}

QString TempAppFolder::setting(const QString &section, const QString &key,
                               const QString &text) const
{
    return readIni(section, key, text, settingsFile());
}
