#include "DownloadCommands.h"

#include "DownloadList.h"
#include "DownloadsWindow.h"
#include "Frame.h"
#include "WindowMenu.h"

using namespace Qt::StringLiterals;

void registerDownloadCommands(Frame &frame)
{
    frame.handle(u"mnuToolsDownloads"_s, [&frame] {
        activateTab(frame, DownloadsWindow::openIn(frame, downloadList())->tabKey());
    });
}
