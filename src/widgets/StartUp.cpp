#include "StartUp.h"

#include "AppFolder.h"
#include "Language.h"
#include "QtTexts.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

void useStoredLanguage()
{
    AppFolder::setSettingsPath(AppFolder::appData(u"Settings.ini"_s));
    setLanguageName(Settings::language.read());
}

void startUp(StartUpFrame &frame)
{
    useStoredLanguage();
    QtTexts::follow(languageName());
    frame.load();
    frame.translate();
}
