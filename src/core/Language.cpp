#include "Language.h"

#include "AppFolder.h"
#include "IniStore.h"

using namespace Qt::StringLiterals;

namespace {
QString currentName = u"English"_s;
}

QString languageName()
{
    return currentName;
}

void setLanguageName(const QString &name)
{
    currentName = name;
}

QString languageCode(const QString &name)
{
    for (int index = QLocale::C + 1; index <= QLocale::LastLanguage; ++index) {
        const auto candidate = QLocale::Language(index);
        if (QLocale::languageToString(candidate) == name)
            return QLocale::languageToCode(candidate);
    }
    return {};
}

QLocale languageLocale()
{
    const QLocale desktop;
    const QLocale own(languageCode(currentName));
    // The C locale is English, and what no table knows has no manners of its own.
    const bool isDesktops = own.language() == desktop.language()
        || (own.language() == QLocale::English && desktop.language() == QLocale::C);
    if (isDesktops || own.language() == QLocale::C)
        return desktop;
    return desktop.language() == QLocale::C ? own : QLocale(own.language(), desktop.territory());
}

QString languageText(const QString &section, const QString &key, const QString &text)
{
    const QString file = AppFolder::appData("Languages/"_L1 + currentName + ".ini"_L1);
    return readIni(section, key, text, file);
}
