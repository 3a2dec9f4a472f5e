#include "AllCommands.h"

#include "EditCommands.h"
#include "FileCommands.h"
#include "HelpCommands.h"
#include "ProfileCommands.h"
#include "ToolsCommands.h"
#include "ViewCommands.h"
#include "frmMain.h"

void registerAllCommands(frmMain &frame)
{
    registerFileCommands(frame);
    registerEditCommands(frame);
    registerViewCommands(frame);
    registerProfileCommands(frame);
    registerToolsCommands(frame, frame);
    registerHelpCommands(frame);
    frame.closeCommandTable();
}
