#include "ViewCommands.h"

#include <QAction>
#include <QApplication>
#include <functional>

#include "BrowserWindow.h"
#include "FavoritesBar.h"
#include "Frame.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int fontSizes = 5;

QString fontSizeItem(int level)
{
    return u"mnuViewFontSize2"_s + QString::number(level);
}

void markFontSize(Frame &frame)
{
    for (int level = 0; level < fontSizes; ++level)
        frame.menuItem(fontSizeItem(level))->setChecked(false);
    const BrowserWindow *active = activeBrowser(frame);
    if (!active)
        return;
    QVariant out;
    if (!active->browser()->execCommand(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, nullptr, &out))
        return;
    bool isNumber = false;
    const int level = out.toInt(&isNumber);
    if (isNumber && level >= 0 && level < fontSizes)
        frame.menuItem(fontSizeItem(level))->setChecked(true);
}

void setFontSize(Frame &frame, qint32 level)
{
    const BrowserWindow *active = activeBrowser(frame);
    if (!active)
        return;
    const QVariant in = level;
    if (!active->browser()->execCommand(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, &in))
        QApplication::beep();
}

/// Percent.
constexpr int usualZoom = 100;

void onPage(Frame &frame, const std::function<void(WebBrowser &)> &act)
{
    if (const BrowserWindow *active = activeBrowser(frame))
        act(*active->browser());
}

void registerZoom(Frame &frame)
{
    frame.handle(u"mnuViewZoomIn"_s,
                 [&frame] { onPage(frame, [](WebBrowser &page) { page.zoomBy(1); }); });
    frame.handle(u"mnuViewZoomOut"_s,
                 [&frame] { onPage(frame, [](WebBrowser &page) { page.zoomBy(-1); }); });
    frame.handle(u"mnuViewZoomUsual"_s,
                 [&frame] { onPage(frame, [](WebBrowser &page) { page.setZoom(usualZoom); }); });
}

/// The favorites bar while the frame's active control is in it and it has filled its tree.
FavoritesBar *focusedFavorites(Frame &frame)
{
    QWidget *control = frame.window()->focusWidget();
    while (control && control->objectName() != "FavoritesBar1"_L1)
        control = control->parentWidget();
    auto *bar = qobject_cast<FavoritesBar *>(control);
    return bar && bar->isInitialised() ? bar : nullptr;
}

void refresh(Frame &frame)
{
    if (FavoritesBar *favorites = focusedFavorites(frame)) {
        QAction *item = frame.menuItem(u"mnuViewRefresh"_s);
        item->setEnabled(false);
        favorites->refresh();
        item->setEnabled(true);
    } else if (const BrowserWindow *active = activeBrowser(frame)) {
        active->browser()->refresh();
    }
}

}

void registerViewCommands(Frame &frame)
{
    for (int level = 0; level < fontSizes; ++level)
        frame.handle(fontSizeItem(level), [&frame, level] { setFontSize(frame, level); });
    registerZoom(frame);
    frame.handle(u"mnuViewRefresh"_s, [&frame] { refresh(frame); });
    frame.beforeOpening(u"mnuViewFontSize"_s, [&frame] { markFontSize(frame); });
}
