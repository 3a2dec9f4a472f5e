#include "Settings.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "ProgramInfo.h"
#include "TextRules.h"

using namespace Qt::StringLiterals;

namespace Settings {

QString read(const Key &key)
{
    return readIni(QString::fromLatin1(key.section), QString::fromLatin1(key.name),
                   QString::fromLatin1(key.missing), AppFolder::settingsPath());
}

std::optional<bool> readBoolean(const Key &key)
{
    return textToBoolean(read(key));
}

std::optional<double> readNumber(const Key &key)
{
    return textToNumber(read(key));
}

bool isOne(const Key &key)
{
    return readNumber(key) == 1.0;
}

WriteResult write(const Key &key, const QString &value)
{
    return writeIni(QString::fromLatin1(key.section), QString::fromLatin1(key.name), value,
                    AppFolder::settingsPath());
}

WriteResult writeBoolean(const Key &key, bool value)
{
    return write(key, booleanText(value));
}

QString homeUrl()
{
    return readIni(u"Settings"_s, u"Home-URL"_s, ProgramInfo::homeUrl(), AppFolder::settingsPath());
}

}
