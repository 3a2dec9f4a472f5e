#include "AllCommands.h"

#include "FileCommands.h"
#include "HelpCommands.h"
#include "frmMain.h"

void registerAllCommands(frmMain &frame)
{
    registerFileCommands(frame);
    registerHelpCommands(frame);
    frame.closeCommandTable();
}
