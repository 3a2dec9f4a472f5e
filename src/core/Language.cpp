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

QString languageText(const QString &section, const QString &key, const QString &text)
{
    const QString file = AppFolder::appData("Languages/"_L1 + currentName + ".ini"_L1);
    return readIni(section, key, text, file);
}
