#include "AllCommands.h"

#include "FileCommands.h"
#include "HelpCommands.h"
#include "ToolsCommands.h"
#include "frmMain.h"

void registerAllCommands(frmMain &frame)
{
    registerFileCommands(frame);
    registerToolsCommands(frame, frame);
    registerHelpCommands(frame);
    frame.closeCommandTable();
}
