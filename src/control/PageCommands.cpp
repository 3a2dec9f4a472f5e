#include "PageCommands.h"

#include "Clipboard.h"
#include "PagePrinter.h"
#include "PageProperties.h"
#include "PageSaver.h"
#include "PageSetup.h"
#include "PrintPreview.h"
#include "WebBrowser.h"
#include "WebPage.h"

#include <QWebEngineView>
#include <array>

namespace {
/// Text sizes from smallest to largest.
constexpr std::array<qreal, 5> zoomFactors{0.75, 0.9, 1.0, 1.25, 1.5};

bool readZoom(const WebPage *page, QVariant *out)
{
    for (size_t level = 0; level < zoomFactors.size(); ++level) {
        if (qAbs(page->zoomFactor() - zoomFactors[level]) < 0.01) {
            *out = int(level);
            return true;
        }
    }
    return false;
}

bool setZoom(WebPage *page, const QVariant &in)
{
    bool isNumber = false;
    const int level = in.toInt(&isNumber);
    if (!isNumber || level < 0 || level >= int(zoomFactors.size()))
        return false;
    page->setZoomFactor(zoomFactors[size_t(level)]);
    return true;
}

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

bool run(WebPage *page, OleCmd command, const QVariant *in, QVariant *out)
{
    if (command == OleCmd::Zoom) {
        if (in)
            return setZoom(page, *in);
        return out && readZoom(page, out);
    }
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

int status(const WebPage *page, OleCmd command)
{
    if (command != OleCmd::Zoom && !opensWindow(command)
        && actionFor(command) == QWebEnginePage::NoWebAction)
        return 0;
    return isEnabled(page, command) ? OleCmdStatus::Supported | OleCmdStatus::Enabled
                                    : OleCmdStatus::Supported;
}

}
