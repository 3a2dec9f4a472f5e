#include "EditCommands.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

#include "AddressFocus.h"
#include "Clipboard.h"
#include "ExecForms.h"
#include "FieldEdit.h"
#include "Frame.h"
#include "WebBrowser.h"
#include "brwURL.h"
#include "frmBrowser.h"

using namespace Qt::StringLiterals;

namespace {

/// What a command does with each thing it can be for.
struct Actions {
    void (*page)(WebBrowser &page);
    void (*bar)(brwURL &bar);
    void (*field)(QLineEdit &field);
};

/// The field of the frame that the user works in, of whatever is docked there; null for the page
/// and for the address bar, which have rules of their own.
QLineEdit *otherField(Frame &frame, const AddressFocus &focus)
{
    QLineEdit *field = FieldEdit::focused(*frame.window());
    return field && !focus.isSet() && !focus.bar().isAncestorOf(field) ? field : nullptr;
}

void onTarget(Frame &frame, const AddressFocus &focus, const QString &item, const Actions &actions)
{
    frame.handle(item, [&frame, &focus, actions] {
        const frmBrowser *active = activeBrowser(frame);
        if (QLineEdit *field = otherField(frame, focus))
            actions.field(*field);
        else if (active && !focus.isSet())
            actions.page(*active->brwWebBrowser());
        else if (focus.isActiveControl())
            actions.bar(focus.bar());
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

void pasteIntoField(QLineEdit &field)
{
    QWidget *owner = &field;
    while (owner && !qobject_cast<brwURL *>(owner))
        owner = owner->parentWidget();
    if (auto *bar = qobject_cast<brwURL *>(owner))
        pasteInto(*bar);
    else
        FieldEdit::paste(field);
}

/// The page is a window's active control unless another control in it is.
bool pageIsActiveControl(const frmBrowser &form)
{
    const QWidget *control = form.focusWidget();
    const QWidget *page = form.brwWebBrowser()->widget();
    return !control || control->isAncestorOf(page) || control == page
        || page->isAncestorOf(control);
}

void undo(Frame &frame, const AddressFocus &focus)
{
    if (QLineEdit *field = otherField(frame, focus)) {
        field->undo();
        return;
    }
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
    onTarget(frame, focus, u"mnuEditCut"_s, {ifEnabled<OleCmd::Cut>, cutFrom, FieldEdit::cut});
    onTarget(frame, focus, u"mnuEditCopy"_s,
             {always<OleCmd::Copy>, copyFrom, [](QLineEdit &field) { field.copy(); }});
    onTarget(frame, focus, u"mnuEditPaste"_s,
             {ifEnabled<OleCmd::Paste>, pasteInto, pasteIntoField});
    onTarget(frame, focus, u"mnuEditSelectAll"_s,
             {always<OleCmd::SelectAll>, selectAllOf, [](QLineEdit &field) { field.selectAll(); }});
    onTarget(
        frame, focus, u"mnuEditSelectNone"_s,
        {always<OleCmd::ClearSelection>, selectNoneOf, [](QLineEdit &field) { field.deselect(); }});
    frame.handle(u"mnuEditUndo"_s, [&frame, &focus] { undo(frame, focus); });
    frame.handle(u"mnuEditFind"_s, [&frame] { find(frame); });
    frame.beforeOpening(u"mnuEdit"_s, [&frame] { enableItems(frame); });
}
