#include "Language.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "LanguageListener.h"

using namespace Qt::StringLiterals;

namespace {
QString currentName = u"English"_s;
LanguageListener theListener = nullptr;
}

QString languageName()
{
    return currentName;
}

void setLanguageName(const QString &name)
{
    currentName = name;
}

void setLanguageListener(LanguageListener listener)
{
    theListener = listener;
}

QString languageText(const QString &section, const QString &key, const QString &text)
{
    if (theListener)
        theListener(section, key);
    const QString file = AppFolder::appData("Languages/"_L1 + currentName + ".ini"_L1);
    return readIni(section, key, text, file);
}
