#include "EditCommands.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>

#include "AddressFocus.h"
#include "Clipboard.h"
#include "ExecForms.h"
#include "Frame.h"
#include "WebBrowser.h"
#include "brwURL.h"
#include "frmBrowser.h"

using namespace Qt::StringLiterals;

namespace {

using PageAction = void (*)(WebBrowser &page);
using BarAction = void (*)(brwURL &bar);

void onTarget(Frame &frame, const AddressFocus &focus, const QString &item, PageAction pageAction,
              BarAction barAction)
{
    frame.handle(item, [&frame, &focus, pageAction, barAction] {
        const frmBrowser *active = activeBrowser(frame);
        if (active && !focus.isSet())
            pageAction(*active->brwWebBrowser());
        else if (focus.isActiveControl())
            barAction(focus.bar());
    });
}

template <OleCmd command> void ifEnabled(WebBrowser &page)
{
    constexpr int enabled = OleCmdStatus::Supported | OleCmdStatus::Enabled;
    if (page.QueryStatusWB(command) == enabled)
        ExecForms::two(page, command);
}

template <OleCmd command> void always(WebBrowser &page)
{
    ExecForms::four(page, command);
}

void copyFrom(brwURL &bar)
{
    const QString selected = bar.SelText();
    if (!selected.isEmpty())
        QApplication::clipboard()->setText(selected);
}

void cutFrom(brwURL &bar)
{
    if (bar.SelText().isEmpty())
        return;
    copyFrom(bar);
    bar.setSelText({});
}

void pasteInto(brwURL &bar)
{
    bar.setSelText(clipboardText());
}

void selectAllOf(brwURL &bar)
{
    bar.setSelStart(0);
    bar.setSelLength(int(bar.Text().size()));
}

void selectNoneOf(brwURL &bar)
{
    bar.setSelStart(int(bar.Text().size()));
}

/// The page is a window's active control unless another control in it is.
bool pageIsActiveControl(const frmBrowser &form)
{
    const QWidget *control = form.focusWidget();
    const QWidget *page = form.brwWebBrowser()->widget();
    return !control || control->isAncestorOf(page) || control == page
        || page->isAncestorOf(control);
}

void undo(Frame &frame)
{
    const frmBrowser *active = activeBrowser(frame);
    if (active && pageIsActiveControl(*active))
        ExecForms::four(*active->brwWebBrowser(), OleCmd::Undo);
}

void find(Frame &frame)
{
    const frmBrowser *active = activeBrowser(frame);
    if (!active)
        return;
    active->brwWebBrowser()->SetFocus();
    active->brwWebBrowser()->Find();
}

void enableItems(Frame &frame)
{
    const bool hasWindow = frame.activeChild() != nullptr;
    frame.menuItem(u"mnuEditUndo"_s)->setEnabled(hasWindow);
    frame.menuItem(u"mnuEditFind"_s)->setEnabled(hasWindow);
}

}

void registerEditCommands(Frame &frame)
{
    auto *bar = frame.window()->findChild<brwURL *>(u"brwURL1"_s);
    Q_ASSERT(bar);
    const AddressFocus &focus = *new AddressFocus(*bar);
    onTarget(frame, focus, u"mnuEditCut"_s, ifEnabled<OleCmd::Cut>, cutFrom);
    onTarget(frame, focus, u"mnuEditCopy"_s, always<OleCmd::Copy>, copyFrom);
    onTarget(frame, focus, u"mnuEditPaste"_s, ifEnabled<OleCmd::Paste>, pasteInto);
    onTarget(frame, focus, u"mnuEditSelectAll"_s, always<OleCmd::SelectAll>, selectAllOf);
    onTarget(frame, focus, u"mnuEditSelectNone"_s, always<OleCmd::ClearSelection>, selectNoneOf);
    frame.handle(u"mnuEditUndo"_s, [&frame] { undo(frame); });
    frame.handle(u"mnuEditFind"_s, [&frame] { find(frame); });
    frame.beforeOpening(u"mnuEdit"_s, [&frame] { enableItems(frame); });
}
