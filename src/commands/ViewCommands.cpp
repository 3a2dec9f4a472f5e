#include "ViewCommands.h"

#include <QAction>
#include <QApplication>
#include <QPointer>

#include "FavoritesBar.h"
#include "Frame.h"
#include "WebBrowser.h"
#include "Yield.h"
#include "frmBrowser.h"
#include "frmSource.h"

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
    const frmBrowser *active = activeBrowser(frame);
    if (!active)
        return;
    QVariant out;
    if (!active->brwWebBrowser()->ExecWB(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, nullptr, &out))
        return;
    bool isNumber = false;
    const int level = out.toInt(&isNumber);
    if (isNumber && level >= 0 && level < fontSizes)
        frame.menuItem(fontSizeItem(level))->setChecked(true);
}

void setFontSize(Frame &frame, qint32 level)
{
    const frmBrowser *active = activeBrowser(frame);
    if (!active)
        return;
    const QVariant in = level;
    active->brwWebBrowser()->ExecWB(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, &in);
    letPendingEventsRun();
}

/// The favorites bar while the frame's active control is in it and it has filled its tree.
FavoritesBar *focusedFavorites(Frame &frame)
{
    QWidget *control = frame.window()->focusWidget();
    while (control && control->objectName() != "FavoritesBar1"_L1)
        control = control->parentWidget();
    auto *bar = qobject_cast<FavoritesBar *>(control);
    return bar && bar->Initialised() ? bar : nullptr;
}

void refresh(Frame &frame)
{
    if (FavoritesBar *favorites = focusedFavorites(frame)) {
        frame.menuItem(u"mnuViewRefresh"_s)->setEnabled(false);
        favorites->Refresh();
        frame.menuItem(u"mnuViewRefresh"_s)->setEnabled(true);
    } else if (const frmBrowser *active = activeBrowser(frame)) {
        active->brwWebBrowser()->Refresh();
    }
}

void showDocumentHTML(Frame &frame)
{
    const frmBrowser *active = activeBrowser(frame);
    if (!active)
        return;
    WebBrowser &page = *active->brwWebBrowser();
    const QString address = page.LocationURL();
    if (page.Busy() || address.isEmpty()) {
        QApplication::beep();
        return;
    }
    page.OuterHTML([owner = QPointer(frame.window()), address](const QString &markup) {
        // The page may have gone, and the program with it.
        if (!owner || markup.isEmpty())
            return;
        // The engine waits for this to return.
        QMetaObject::invokeMethod(
            owner.data(), [markup, address] { frmSource::openOn(markup, address); },
            Qt::QueuedConnection);
    });
    letPendingEventsRun();
}

void enableItems(Frame &frame)
{
    const bool hasWindow = frame.activeChild() != nullptr;
    frame.menuItem(u"mnuViewDocumentHTML"_s)->setEnabled(hasWindow);
    frame.menuItem(u"mnuViewFontSize"_s)->setEnabled(hasWindow);
    markFontSize(frame);
}

}

void registerViewCommands(Frame &frame)
{
    for (int level = 0; level < fontSizes; ++level)
        frame.handle(fontSizeItem(level), [&frame, level] { setFontSize(frame, level); });
    frame.handle(u"mnuViewRefresh"_s, [&frame] { refresh(frame); });
    frame.handle(u"mnuViewDocumentHTML"_s, [&frame] { showDocumentHTML(frame); });
    frame.beforeOpening(u"mnuView"_s, [&frame] { enableItems(frame); });
    frame.beforeOpening(u"mnuViewFontSize"_s, [&frame] { markFontSize(frame); });
}
