#include "AllCommands.h"

#include "EditCommands.h"
#include "FileCommands.h"
#include "HelpCommands.h"
#include "ViewCommands.h"
#include "frmMain.h"

void registerAllCommands(frmMain &frame)
{
    registerFileCommands(frame);
    registerEditCommands(frame);
    registerViewCommands(frame);
    registerHelpCommands(frame);
    frame.closeCommandTable();
}
