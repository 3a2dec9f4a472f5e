#include "AllCommands.h"

#include "FileCommands.h"
#include "HelpCommands.h"
#include "ProfileCommands.h"
#include "frmMain.h"

void registerAllCommands(frmMain &frame)
{
    registerFileCommands(frame);
    registerProfileCommands(frame);
    registerHelpCommands(frame);
    frame.closeCommandTable();
}
