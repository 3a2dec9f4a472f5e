#include "AllCommands.h"

#include "DownloadCommands.h"
#include "EditCommands.h"
#include "FileCommands.h"
#include "HelpCommands.h"
#include "MainWindow.h"
#include "ProfileCommands.h"
#include "SleepCommands.h"
#include "ToolsCommands.h"
#include "ViewCommands.h"

void registerAllCommands(MainWindow &frame)
{
    registerFileCommands(frame);
    registerEditCommands(frame);
    registerViewCommands(frame);
    registerProfileCommands(frame);
    registerToolsCommands(frame, frame);
    registerDownloadCommands(frame);
    registerSleepCommands(frame);
    registerHelpCommands(frame);
    frame.closeCommandTable();
}
