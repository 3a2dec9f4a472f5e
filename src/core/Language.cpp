#include "Language.h"

#include "AppFolder.h"
#include "LanguageListener.h"
#include "modINI.h"

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

QString GetLanguageText(const QString &section, const QString &key, const QString &text)
{
    if (theListener)
        theListener(section, key);
    const QString file = AppFolder::appData("Languages/"_L1 + currentName + ".ini"_L1);
    return ReadINI(section, key, text, file);
}
