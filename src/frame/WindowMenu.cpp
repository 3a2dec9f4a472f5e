#include "WindowMenu.h"

#include "BrowserWindow.h"
#include "DroppedWindows.h"
#include "Forms.h"
#include "Frame.h"
#include "MdiArea.h"
#include "ShownAddress.h"
#include "TabStrip.h"
#include "Texts.h"
#include "ToolTipText.h"

#include <QAction>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>
#include <QProxyStyle>

using namespace Qt::StringLiterals;

namespace {

// Widest caption in the list of windows, in average letters.
constexpr int captionLetters = 50;

/// One column that scrolls, where a style would make a long menu several columns wide.
class ScrollingMenuStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_Menu_Scrollable)
            return 1;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

/// The window of a tab; null when it is gone.
InnerWindow *windowOfTab(const QString &key)
{
    bool isNumber = false;
    const int wanted = key.mid(1).toInt(&isNumber);
    if (!isNumber)
        return nullptr;
    for (InnerWindow *window : innerForms()) {
        if (window->hWnd() == wanted)
            return window;
    }
    return nullptr;
}

void bringToFront(Frame &frame, QMdiSubWindow *window)
{
    if (auto *area = qobject_cast<MdiArea *>(window->mdiArea())) {
        if (window->isMinimized())
            area->restore(window);
        area->setActiveSubWindow(window);
    }
    auto *inner = qobject_cast<InnerWindow *>(window);
    if (!inner)
        return;
    // Out of the address field: what was typed there for another page would keep the text from
    // telling which page this is.
    inner->focusContents();
    frame.setAddressText(inner->shownAddress());
}

/// A window as the list of windows names it: by its caption, or by what else is known of its page.
QString listedName(const QMdiSubWindow &child)
{
    QString name = child.windowTitle().simplified();
    const auto *browser = qobject_cast<const BrowserWindow *>(&child);
    if (name.isEmpty() && browser)
        name = shownAddress(browser->browser()->locationUrl()).simplified();
    return name.isEmpty() ? u"Loading..."_s : name;
}

void addWindowItem(QMenu &menu, Frame &frame, QMdiSubWindow *child, bool active)
{
    const QFontMetrics metrics = menu.fontMetrics();
    const QString caption = listedName(*child);
    const QString shown = metrics.elidedText(caption.left(4 * captionLetters), Qt::ElideMiddle,
                                             captionLetters * metrics.averageCharWidth());
    QAction *item = menu.addAction(QString(shown).replace(u'&', u"&&"_s));
    item->setCheckable(true);
    item->setChecked(active);
    if (shown != caption)
        item->setToolTip(wrappedToolTip(caption));
    const QPointer<QMdiSubWindow> window(child);
    QObject::connect(item, &QAction::triggered, &menu, [&frame, window] {
        if (window)
            bringToFront(frame, window);
    });
}

void listWindows(QMenu &menu, Frame &frame, const MdiArea &area)
{
    menu.clear();
    const QList<QMdiSubWindow *> children = area.orderedWindows();
    const QMdiSubWindow *active = frame.activeChild();
    for (QMdiSubWindow *child : children)
        addWindowItem(menu, frame, child, child == active);
    if (children.isEmpty()) {
        menu.addAction(Texts<"frmMain">::at<"strNoOpenBrowsers", "(None)">())->setEnabled(false);
    }
}

}

void activateTab(Frame &frame, const QString &key)
{
    if (InnerWindow *window = windowOfTab(key))
        bringToFront(frame, window);
}

void registerWindowCommands(Frame &frame, MdiArea &area, QMenu &openBrowsers)
{
    // Of the forms, those that are inner windows.
    frame.handle(u"mnuWindowMinimizeAll"_s, [&area] { area.minimizeAll(Forms::all()); });
    frame.handle(u"mnuWindowRestoreAll"_s, [&area] { area.restoreAll(Forms::all()); });
    frame.handle(u"mnuWindowCascade"_s, [&area] { area.arrange(Arrange::Cascade); });
    frame.handle(u"mnuWindowTileHorizontal"_s, [&area] { area.arrange(Arrange::TileHorizontal); });
    frame.handle(u"mnuWindowTileVertical"_s, [&area] { area.arrange(Arrange::TileVertical); });
    openBrowsers.setToolTipsVisible(true);
    auto *style = new ScrollingMenuStyle;
    style->setParent(&openBrowsers);
    openBrowsers.setStyle(style);
    QObject::connect(&openBrowsers, &QMenu::aboutToShow, &area,
                     [&openBrowsers, &frame, &area] { listWindows(openBrowsers, frame, area); });
}

void connectTabStrip(TabStrip &strip, Frame &frame, QMenu &openBrowsers)
{
    QObject::connect(&strip, &TabStrip::tabClicked, &strip,
                     [&frame](const QString &key) { activateTab(frame, key); });
    QObject::connect(&strip, &TabStrip::useClicked, &strip, [](const QString &key) {
        if (InnerWindow *window = windowOfTab(key))
            window->endUse();
    });
    QObject::connect(&strip, &TabStrip::soundClicked, &strip, [](const QString &key) {
        if (InnerWindow *window = windowOfTab(key))
            window->turnSound();
    });
    QObject::connect(&strip, &TabStrip::tabMiddleClicked, &strip, [](const QString &key) {
        if (InnerWindow *window = windowOfTab(key))
            window->close();
    });
    QObject::connect(
        &strip, &TabStrip::addressesDropped, &strip, [&frame](const QStringList &addresses) {
            const BrowserWindow *active = activeBrowser(frame);
            openDropped(frame, addresses, active ? active->privacy() : Privacy::Ordinary,
                        WindowState::AsOthers);
        });
    QObject::connect(&strip, &TabStrip::tabMoved, &strip, [&strip] {
        QList<QWidget *> windows;
        for (const QString &key : strip.keys())
            windows.append(windowOfTab(key));
        Forms::arrange(windows);
    });
    QObject::connect(&strip, &TabStrip::rightReleased, &strip,
                     [&frame, &openBrowsers](const QPoint &globalPos) {
                         if (frame.activeChild())
                             openBrowsers.popup(globalPos);
                     });
}
