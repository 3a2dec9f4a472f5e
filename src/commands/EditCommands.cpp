#include "EditCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

#include "AddressBox.h"
#include "AddressFocus.h"
#include "BrowserWindow.h"
#include "Clipboard.h"
#include "DownloadsWindow.h"
#include "ExecForms.h"
#include "FieldEdit.h"
#include "Frame.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

/// What a command does with each thing it can be for.
struct Actions {
    void (*page)(WebBrowser &page);
    void (*bar)(AddressBox &bar);
    void (*field)(QLineEdit &field);
    /// Null where the list of downloads has no use for it.
    void (DownloadsWindow::*list)() = nullptr;
};

/// The field beside the page that the user works in, of whatever its window shows there: the find
/// bar, a question. Null elsewhere: while the side bars have the focus, the page is still meant.
QLineEdit *otherField(Frame &frame, const AddressFocus &focus)
{
    QLineEdit *field = FieldEdit::focused(*frame.window());
    const QWidget *active = frame.activeChild();
    return field && !focus.isSet() && active && active->isAncestorOf(field) ? field : nullptr;
}

void onTarget(Frame &frame, const AddressFocus &focus, const QString &item, const Actions &actions)
{
    frame.handle(item, [&frame, &focus, actions] {
        const BrowserWindow *active = activeBrowser(frame);
        if (QLineEdit *field = otherField(frame, focus))
            actions.field(*field);
        else if (active && !focus.isSet())
            actions.page(*active->browser());
        else if (auto *list = qobject_cast<DownloadsWindow *>(frame.activeChild());
                 list && actions.list && !focus.isSet())
            (list->*actions.list)();
        else if (focus.isActiveControl())
            actions.bar(focus.bar());
    });
}

template <OleCmd command> void ifEnabled(WebBrowser &page)
{
    constexpr int enabled = OleCmdStatus::Supported | OleCmdStatus::Enabled;
    if (page.queryStatus(command) == enabled)
        ExecForms::two(page, command);
}

template <OleCmd command> void always(WebBrowser &page)
{
    ExecForms::four(page, command);
}

void copyFrom(AddressBox &bar)
{
    const QString selected = bar.selText();
    if (!selected.isEmpty())
        QApplication::clipboard()->setText(selected);
}

void cutFrom(AddressBox &bar)
{
    if (bar.selText().isEmpty())
        return;
    copyFrom(bar);
    bar.setSelText({});
}

void pasteInto(AddressBox &bar)
{
    bar.setSelText(clipboardText());
}

void selectAllOf(AddressBox &bar)
{
    bar.setSelStart(0);
    bar.setSelLength(int(bar.text().size()));
}

void selectNoneOf(AddressBox &bar)
{
    bar.setSelStart(int(bar.text().size()));
}

void pasteIntoField(QLineEdit &field)
{
    QWidget *owner = &field;
    while (owner && !qobject_cast<AddressBox *>(owner))
        owner = owner->parentWidget();
    if (auto *bar = qobject_cast<AddressBox *>(owner))
        pasteInto(*bar);
    else
        FieldEdit::paste(field);
}

/// The page is a window's active control unless another control in it is.
bool pageIsActiveControl(const BrowserWindow &form)
{
    const QWidget *control = form.focusWidget();
    const QWidget *page = form.browser()->widget();
    return !control || control->isAncestorOf(page) || control == page
        || page->isAncestorOf(control);
}

void undo(Frame &frame, const AddressFocus &focus)
{
    if (QLineEdit *field = otherField(frame, focus)) {
        field->undo();
        return;
    }
    const BrowserWindow *active = activeBrowser(frame);
    if (active && pageIsActiveControl(*active))
        ExecForms::four(*active->browser(), OleCmd::Undo);
}

void find(Frame &frame)
{
    const BrowserWindow *active = activeBrowser(frame);
    if (!active)
        return;
    active->browser()->setFocus();
    active->browser()->find();
}

void findAgain(Frame &frame, bool backwards)
{
    if (const BrowserWindow *active = activeBrowser(frame))
        active->browser()->findAgain(backwards);
}

}

void registerEditCommands(Frame &frame)
{
    auto *bar = frame.window()->findChild<AddressBox *>(u"brwURL1"_s);
    Q_ASSERT(bar);
    const AddressFocus &focus = *new AddressFocus(*bar);
    onTarget(frame, focus, u"mnuEditCut"_s, {ifEnabled<OleCmd::Cut>, cutFrom, FieldEdit::cut});
    onTarget(frame, focus, u"mnuEditCopy"_s,
             {always<OleCmd::Copy>, copyFrom, [](QLineEdit &field) { field.copy(); },
              &DownloadsWindow::copyAddresses});
    onTarget(frame, focus, u"mnuEditPaste"_s,
             {ifEnabled<OleCmd::Paste>, pasteInto, pasteIntoField});
    onTarget(frame, focus, u"mnuEditSelectAll"_s,
             {always<OleCmd::SelectAll>, selectAllOf, [](QLineEdit &field) { field.selectAll(); },
              &DownloadsWindow::selectAll});
    onTarget(frame, focus, u"mnuEditSelectNone"_s,
             {always<OleCmd::ClearSelection>, selectNoneOf,
              [](QLineEdit &field) { field.deselect(); }, &DownloadsWindow::selectNone});
    frame.handle(u"mnuEditUndo"_s, [&frame, &focus] { undo(frame, focus); });
    frame.handle(u"mnuEditFind"_s, [&frame] { find(frame); });
    frame.handle(u"cmdFindNext"_s, [&frame] { findAgain(frame, false); });
    frame.handle(u"cmdFindPrevious"_s, [&frame] { findAgain(frame, true); });
}
