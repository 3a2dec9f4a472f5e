#include "SourceCommands.h"

#include "BrowserWindow.h"
#include "Frame.h"
#include "MsgBox.h"
#include "PageSource.h"
#include "SourceWindow.h"
#include "Texts.h"
#include "WebBrowser.h"

#include <QApplication>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {
using Outcome = PageSource::Outcome;

constexpr Texts<"PageSource"> texts;

/// The page in front; beeps where there is none yet that has a source.
WebBrowser *readablePage(const BrowserWindow *active)
{
    if (!active)
        return nullptr;
    WebBrowser *page = active->browser();
    if (!page->isBusy() && !page->locationUrl().isEmpty())
        return page;
    QApplication::beep();
    return nullptr;
}

void showDocument(WebBrowser &page, QWidget *frame, Privacy privacy)
{
    page.outerHtml(
        [owner = QPointer(frame), address = page.locationUrl(), privacy](const QString &markup) {
            // The page may have gone, and the program with it.
            if (!owner)
                return;
            if (markup.isEmpty()) {
                QApplication::beep();
                return;
            }
            // The engine waits for this to return.
            QMetaObject::invokeMethod(
                owner.data(), [=] { SourceWindow::openOn(markup, address, privacy); },
                Qt::QueuedConnection);
        });
}

QString reasonOf(Outcome outcome)
{
    if (outcome == Outcome::AnswerToForm) {
        return texts.at<"strForm",
                        "This page is the answer to a form. To have its source as it came, the "
                        "form would have to be sent again, and that is not done.">();
    }
    return texts.at<"strMissing", "The source of this page cannot be had again as it came.">();
}

void offerDocument(QWidget *frame, WebBrowser &page, Outcome outcome, Privacy privacy)
{
    const QString question =
        texts.at<"strOffer", "Do you want to see the document as it is now?">();
    // What it asks about is the page of now, wherever that leads until the answer.
    MsgBox::ask(frame, reasonOf(outcome) + u"\n\n"_s + question, {},
                [frame = QPointer(frame), page = QPointer(&page), address = page.locationUrl(),
                 privacy](MsgBox::Answer answer) {
                    if (answer != MsgBox::Answer::Yes || !frame)
                        return;
                    if (page && page->locationUrl() == address)
                        showDocument(*page, frame, privacy);
                    else
                        QApplication::beep();
                });
}

void showSource(QWidget *frame, WebBrowser &page, const PageSource &source, Privacy privacy)
{
    switch (source.outcome) {
    case Outcome::Came:
        SourceWindow::openOn(source.text, page.locationUrl(), privacy);
        break;
    case Outcome::Nothing:
        QApplication::beep();
        break;
    case Outcome::NoText:
        MsgBox::inform(
            frame, texts.at<"strNoText", "This page is no text, and so has no source to show.">());
        break;
    case Outcome::AnswerToForm:
    case Outcome::Missing:
        offerDocument(frame, page, source.outcome, privacy);
        break;
    }
}

void showDocumentHTML(Frame &frame)
{
    const BrowserWindow *active = activeBrowser(frame);
    if (WebBrowser *page = readablePage(active))
        showDocument(*page, frame.window(), active->privacy());
}

void showSourceAsItCame(Frame &frame)
{
    const BrowserWindow *active = activeBrowser(frame);
    WebBrowser *page = readablePage(active);
    if (!page)
        return;
    page->readSource([owner = QPointer(frame.window()), page = QPointer(page),
                      privacy = active->privacy()](const PageSource &source) {
        if (owner && page)
            showSource(owner, *page, source, privacy);
    });
}

}

void registerSourceCommands(Frame &frame)
{
    frame.handle(u"mnuViewDocumentHTML"_s, [&frame] { showDocumentHTML(frame); });
    frame.handle(u"mnuViewSource"_s, [&frame] { showSourceAsItCame(frame); });
}
