#include "SoundCommands.h"

#include "BrowserWindow.h"
#include "Frame.h"

#include <QAction>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
QList<BrowserWindow *> othersToMute(const Frame &frame)
{
    QList<BrowserWindow *> windows = browserForms();
    windows.removeIf([active = frame.activeChild()](const BrowserWindow *each) {
        return each == active || each->browser()->isMuted();
    });
    return windows;
}

void followWindows(const Frame &frame)
{
    const BrowserWindow *active = activeBrowser(frame);
    QAction *mute = frame.menuItem(u"mnuWindowMute"_s);
    mute->setEnabled(active);
    mute->setChecked(active && active->browser()->isMuted());
    frame.menuItem(u"mnuWindowMuteOthers"_s)->setEnabled(!othersToMute(frame).isEmpty());
}
}

void registerSoundCommands(Frame &frame)
{
    frame.handle(u"mnuWindowMute"_s, [&frame] {
        if (BrowserWindow *active = activeBrowser(frame))
            active->turnSound();
    });
    frame.handle(u"mnuWindowMuteOthers"_s, [&frame] {
        for (const BrowserWindow *each : othersToMute(frame))
            each->browser()->setMuted(true);
    });
    frame.beforeOpening(u"mnuWindow"_s, [&frame] { followWindows(frame); });
}
