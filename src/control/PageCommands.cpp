#include "PageCommands.h"

#include "Clipboard.h"
#include "PagePrinter.h"
#include "PageProperties.h"
#include "PageSaver.h"
#include "PageSetup.h"
#include "PrintPreview.h"
#include "WebBrowser.h"
#include "WebPage.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWebEngineView>

namespace {
/// In a field that takes text alone, pasting anything else would only delete what is selected.
bool clipboardFits(const WebPage &page)
{
    if (!page.hasEditableFocus())
        return false;
    const ClipboardKinds kinds = clipboardKinds();
    return kinds.text || (page.hasRichFocus() && (kinds.html || kinds.image));
}

QWebEnginePage::WebAction actionFor(OleCmd command)
{
    switch (command) {
    case OleCmd::Cut:
        return QWebEnginePage::Cut;
    case OleCmd::Copy:
        return QWebEnginePage::Copy;
    case OleCmd::Paste:
        return QWebEnginePage::Paste;
    case OleCmd::Undo:
        return QWebEnginePage::Undo;
    case OleCmd::SelectAll:
        return QWebEnginePage::SelectAll;
    case OleCmd::ClearSelection:
        return QWebEnginePage::Unselect;
    default:
        return QWebEnginePage::NoWebAction;
    }
}

bool opensWindow(OleCmd command)
{
    return command == OleCmd::SaveAs || command == OleCmd::Print || command == OleCmd::PrintPreview
        || command == OleCmd::PageSetup || command == OleCmd::Properties;
}

bool openWindow(WebPage *page, OleCmd command)
{
    const QWebEngineView *view = QWebEngineView::forPage(page);
    // A page whose process has ended answers nothing.
    if (!view || (command != OleCmd::PageSetup && page->renderProcessPid() == 0))
        return false;
    QWidget *owner = view->window();
    if (command == OleCmd::SaveAs)
        PageSaver::open(page, owner);
    else if (command == OleCmd::Print)
        PagePrinter::open(page, owner);
    else if (command == OleCmd::PrintPreview)
        (new PrintPreview(page))->show();
    else if (command == OleCmd::PageSetup)
        PageSetup::open(owner);
    else
        (new PageProperties(page, owner))->open();
    return true;
}

QWebEnginePage::WebAction actionFor(PageAct act)
{
    switch (act) {
    case PageAct::SaveLink:
        return QWebEnginePage::DownloadLinkToDisk;
    case PageAct::SaveImage:
        return QWebEnginePage::DownloadImageToDisk;
    case PageAct::SaveMedia:
        return QWebEnginePage::DownloadMediaToDisk;
    case PageAct::CopyImage:
        return QWebEnginePage::CopyImageToClipboard;
    case PageAct::PlayOrPause:
        return QWebEnginePage::ToggleMediaPlayPause;
    case PageAct::Mute:
        return QWebEnginePage::ToggleMediaMute;
    case PageAct::Repeat:
        return QWebEnginePage::ToggleMediaLoop;
    case PageAct::Controls:
        return QWebEnginePage::ToggleMediaControls;
    case PageAct::Redo:
        return QWebEnginePage::Redo;
    case PageAct::PasteText:
        return QWebEnginePage::PasteAndMatchStyle;
    case PageAct::Delete:
        break;
    }
    return QWebEnginePage::NoWebAction;
}

/// The engine has no command for it; as a key it can be undone like what is typed.
void deleteSelection(const WebPage &page)
{
    const QWebEngineView *view = QWebEngineView::forPage(&page);
    if (!view || !view->focusProxy())
        return;
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_Delete, Qt::NoModifier);
        QCoreApplication::sendEvent(view->focusProxy(), &event);
    }
}

bool isEnabled(const WebPage *page, OleCmd command)
{
    switch (command) {
    case OleCmd::Cut:
        return page->hasEditableFocus() && page->hasSelection();
    case OleCmd::Paste:
        return clipboardFits(*page);
    case OleCmd::Undo:
        return page->hasEditableFocus();
    case OleCmd::Copy:
    case OleCmd::ClearSelection:
        return page->hasSelection();
    default:
        return true;
    }
}
}

namespace PageCommands {

bool run(WebPage *page, OleCmd command)
{
    if (opensWindow(command))
        return openWindow(page, command);
    const QWebEnginePage::WebAction action = actionFor(command);
    if (action == QWebEnginePage::NoWebAction)
        return false;
    if (command == OleCmd::Paste)
        makeClipboardTextPlain();
    page->triggerAction(action);
    return true;
}

void act(WebPage &page, PageAct act)
{
    if (act == PageAct::Delete) {
        deleteSelection(page);
        return;
    }
    if (act == PageAct::PasteText)
        makeClipboardTextPlain();
    page.triggerAction(actionFor(act));
}

int status(const WebPage *page, OleCmd command)
{
    if (command != OleCmd::Zoom && !opensWindow(command)
        && actionFor(command) == QWebEnginePage::NoWebAction)
        return 0;
    return isEnabled(page, command) ? OleCmdStatus::Supported | OleCmdStatus::Enabled
                                    : OleCmdStatus::Supported;
}

}
