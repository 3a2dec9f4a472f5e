// What a browser window does when its engine tells of something.
#include "BrowserTabs.h"
#include "BrowserWindow.h"
#include "ClosedWindows.h"
#include "Frame.h"
#include "PageQuestions.h"
#include "PopupBudget.h"
#include "PopupEntrance.h"
#include "ScriptError.h"
#include "ScriptErrorsDialog.h"
#include "Settings.h"
#include "ShownText.h"
#include "StatusStrip.h"
#include "TextRules.h"
#include "Texts.h"
#include "VisitRecorder.h"
#include "WindowTabs.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// What a window has around its page: frame, title bar and status bar as the page reckons them.
constexpr int widthAroundPage = 57;
constexpr int heightAroundPage = 59;
}

void BrowserWindow::statusTextChange(const QString &text)
{
    m_status->setText(u' ' + text);
}

void BrowserWindow::titleChange(const QString &text)
{
    m_named = true;
    setWindowTitle(trimBlanks(shownText(text)));
    showTitle();
    m_visits->titleChanged(windowTitle());
}

void BrowserWindow::showTitle()
{
    const QString title = windowTitle();
    m_frame.windowTabs().setCaption(tabKey(), tabCaption(title));
    m_frame.windowTabs().setToolTip(tabKey(), title);
}

void BrowserWindow::iconChange(const QIcon &icon)
{
    setWindowIcon(icon.isNull() ? BrowserTabs::pageIcon() : icon);
    m_frame.windowTabs().setIcon(tabKey(), icon);
}

void BrowserWindow::beforeNavigate2(const QString &url, int &flags, bool &cancel)
{
    if (isPopup) {
        if (closedAsBlocked(url, cancel))
            return;
        if (m_entrance)
            m_entrance->comeUp();
        fitToControl();
        m_opening = url;
        showAddress();
        isPopup = false;
    }
    if (m_browser->hasDocument())
        m_browser->clearDocument();
    else if (url.isEmpty() || url == "http:///"_L1)
        cancel = true;
    flags = m_frame.navigationFlags();
}

void BrowserWindow::fitToControl()
{
    const QRect control = m_browser->widget()->geometry();
    const int others = m_questions->stripHeight() + m_status->stripHeight();
    const QRect filled(0, 0, m_client->width(), qMax(0, m_client->height() - others));
    if (control.size() != filled.size()) {
        showNormal();
        setGeometry(control.left(), control.top(), control.width() + widthAroundPage,
                    control.height() + heightAroundPage);
    }
    placeControl();
    layOut();
}

void BrowserWindow::newWindow2(WebBrowser *&target, bool &cancel)
{
    if (m_frame.isOn(Settings::killPopups)) {
        cancel = true;
        return;
    }
    const WindowRequest request = m_browser->currentRequest();
    if (refusesEmptyWindow(request.url, cancel))
        return;
    if (!request.userInitiated
        && !m_budget->mayOpen(request.url, QUrl(m_browser->locationUrl()), *m_questions,
                              [this](const QString &url) { openWaitingPopup(url); })) {
        m_browser->setRefusesUnaskedWindows(m_budget->isClosed());
        cancel = true;
        return;
    }
    target = makePopup(request)->browser();
    cancel = false;
}

void BrowserWindow::navigateComplete2(const QString &)
{
    renewBudget();
    if (m_scriptErrors)
        m_scriptErrors->pageChanged();
    if (isPrivate()) {
        showAddress();
        return;
    }
    m_frame.addAddress(m_browser->locationUrl(), isActiveChild());
    if (m_browser->isVisit())
        m_visits->pageCame(m_browser->locationUrl());
}

/// A download or an answer without a page leaves nothing to look at in a window made for it, unless
/// it is there that the user is asked.
void BrowserWindow::nothingCame()
{
    if (!m_entrance || m_browser->arrivedBy() == Arrival::ByAddress || m_questions->shownQuestion())
        return;
    m_entrance->giveBack();
    m_frame.keepTyping([this] { unload(); });
}

void BrowserWindow::scriptFailed(const ScriptError &error)
{
    if (!m_scriptErrors)
        m_scriptErrors = new ScriptErrorsDialog(this, [this] { return m_browser->locationUrl(); });
    m_scriptErrors->add(error);
}

void BrowserWindow::locationChange(const QString &)
{
    showAddress();
    if (m_browser->isVisit() && !isPrivate())
        m_visits->addressChanged(m_browser->locationUrl());
}

void BrowserWindow::navigationGivenUp()
{
    showAddress();
}

void BrowserWindow::documentComplete(const QString &url)
{
    // One that came ahead of its page was taken for that of the page before.
    m_visits->titleChanged(windowTitle());
    emit documentCompleted(url);
}

void BrowserWindow::windowClosing(bool, bool &cancel)
{
    // The page stays as it is; the window goes by itself when the user agrees.
    cancel = true;
    PageQuestion question;
    question.kind = u"close"_s;
    question.asker = QUrl(m_browser->locationUrl());
    question.title = u"Allow Window Close?"_s;
    question.text = u"This window is attempting to close itself!\r\nDo you want to allow this?"_s;
    question.yes = Texts<"PageQuestions">::at<"cmdYes", "Yes">();
    question.no = Texts<"PageQuestions">::at<"cmdNo", "No">();
    question.done = [this](PageQuestion::Reply reply) {
        if (reply.answer != PageQuestion::Answer::Yes)
            return;
        ClosedWindows::note(*this);
        unload();
    };
    m_questions->ask(question);
}

void BrowserWindow::setSecureLockIcon(int secureLockIcon)
{
    m_status->setSecureShown(secureLockIcon > 0);
    m_status->setUnprovenShown(secureLockIcon < 0);
}

void BrowserWindow::privacyImpactedStateChange(bool impacted)
{
    m_status->setPrivacyShown(impacted);
}

void BrowserWindow::zoomChange(int percent)
{
    m_status->setZoom(percent);
}

void BrowserWindow::useChange(const QString &text)
{
    m_status->setUse(text);
    m_frame.windowTabs().setUse(tabKey(), text);
}

void BrowserWindow::soundChange(PageSound sound)
{
    m_frame.windowTabs().setSound(tabKey(), sound);
}

void BrowserWindow::wanted()
{
    emit frontWanted();
}

/// The command is for the window in front.
void BrowserWindow::sourceWanted()
{
    emit frontWanted();
    m_frame.run(u"mnuViewSource"_s);
}

void BrowserWindow::gotFocus()
{
    if (m_frame.windowTabs().isPressed(tabKey()))
        return;
    pressTab();
    m_frame.setAddressText(shownAddress());
}
