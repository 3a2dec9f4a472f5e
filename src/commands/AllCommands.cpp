#include "AllCommands.h"

#include "CostCommands.h"
#include "DownloadCommands.h"
#include "EditCommands.h"
#include "FileCommands.h"
#include "HelpCommands.h"
#include "KeyCommands.h"
#include "LinkCommands.h"
#include "MainWindow.h"
#include "MediaCommands.h"
#include "ProfileCommands.h"
#include "SearchBar.h"
#include "SleepCommands.h"
#include "SoundCommands.h"
#include "SourceCommands.h"
#include "StartContents.h"
#include "TextCommands.h"
#include "ToolsCommands.h"
#include "ViewCommands.h"
#include "VisitCommands.h"

void registerAllCommands(MainWindow &frame)
{
    registerFileCommands(frame);
    registerEditCommands(frame);
    registerViewCommands(frame);
    registerSourceCommands(frame);
    registerProfileCommands(frame);
    registerToolsCommands(frame, frame);
    registerDownloadCommands(frame);
    registerVisitCommands(frame);
    registerCostCommands(frame);
    registerSleepCommands(frame);
    registerLinkCommands(frame);
    registerMediaCommands(frame);
    registerTextCommands(frame);
    registerSoundCommands(frame);
    registerHelpCommands(frame);
    registerKeyCommands(frame);
    new StartContents(frame, *frame.findChild<SearchBar *>());
    frame.closeCommandTable();
}
