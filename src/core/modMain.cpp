#include "modMain.h"

#include "AppFolder.h"
#include "Language.h"
#include "QtTexts.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

void startUp(StartUpFrame &frame)
{
    AppFolder::setSettingsPath(AppFolder::appData(u"Settings.ini"_s));
    setLanguageName(Settings::read(Settings::Language));
    QtTexts::follow(languageName());
    frame.load();
    frame.translate();
}
