#include "MediaCommands.h"

#include "BrowserWindow.h"
#include "ContextTarget.h"
#include "MainWindow.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {
using Place = ContextCommand::Place;

QString addressOf(const Place &at)
{
    return QString::fromLatin1(at.target.mediaUrl.toEncoded());
}

struct Act {
    const char *line;
    PageAct act;
};
constexpr Act acts[] = {
    {"mnuImageSave", PageAct::SaveImage},    {"mnuImageCopy", PageAct::CopyImage},
    {"mnuMediaPlay", PageAct::PlayOrPause},  {"mnuMediaPause", PageAct::PlayOrPause},
    {"mnuMediaMute", PageAct::Mute},         {"mnuMediaRepeat", PageAct::Repeat},
    {"mnuMediaControls", PageAct::Controls}, {"mnuMediaSave", PageAct::SaveMedia},
};
}

void registerMediaCommands(MainWindow &frame)
{
    for (const auto &[line, act] : acts) {
        frame.handleAt(QString::fromLatin1(line), {.run = [act = act](const Place &at, int) {
                           at.window.browser()->act(act);
                       }});
    }
    frame.handleAt(u"mnuImageOpen"_s, {.run = [&frame](const Place &at, int) {
                       frame.openWindowLike(at.window.privacy(), addressOf(at),
                                            frame.newWindowState());
                   }});
    for (const char *line : {"mnuImageCopyAddress", "mnuMediaCopyAddress"}) {
        frame.handleAt(QString::fromLatin1(line), {.run = [](const Place &at, int) {
                           QGuiApplication::clipboard()->setText(addressOf(at));
                       }});
    }
}
