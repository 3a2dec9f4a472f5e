// What a browser window does when its engine tells of something.
#include "BrowserTabs.h"
#include "Frame.h"
#include "MsgBox.h"
#include "PopupBudget.h"
#include "StatusStrip.h"
#include "TextRules.h"
#include "Twips.h"
#include "WindowTabs.h"
#include "Yield.h"
#include "frmBrowser.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace {
/// What a window has around its page: frame, title bar and status bar as the page reckons them.
constexpr int widthAroundPage = 850;
constexpr int heightAroundPage = 885;
}

void frmBrowser::StatusTextChange(const QString &text)
{
    m_status->setText(u' ' + text);
}

void frmBrowser::TitleChange(const QString &text)
{
    const QString title = trimBlanks(BrowserTabs::displayed(text));
    setWindowTitle(title);
    m_frame.tbWindows().setCaption(tabKey(), tabCaption(title));
    m_frame.tbWindows().setToolTip(tabKey(), title);
}

void frmBrowser::IconChange(const QIcon &icon)
{
    setWindowIcon(icon.isNull() ? BrowserTabs::pageIcon() : icon);
    m_frame.tbWindows().setIcon(tabKey(), icon);
}

void frmBrowser::BeforeNavigate2(const QString &url, int &flags, bool &cancel)
{
    if (Popup) {
        if (closedAsBlocked(url, cancel))
            return;
        fitToControl();
        m_frame.setAddressText(url);
        Popup = false;
    }
    if (m_browser->HasDocument())
        m_browser->ClearDocument();
    else if (url.isEmpty() || url == "http:///"_L1)
        cancel = true;
    flags = m_frame.brwFlags();
}

void frmBrowser::fitToControl()
{
    const QRect control = m_browser->widget()->geometry();
    const int roomBelow = m_status->stripHeight();
    const QRect filled(0, 0, m_client->width(), m_client->height() - roomBelow);
    if (control.size() != filled.size()) {
        showNormal();
        setGeometry(control.left(), control.top(),
                    control.width() + Twips::toPixels(widthAroundPage),
                    control.height() + Twips::toPixels(heightAroundPage));
    }
    placeControl();
    Form_Resize();
}

void frmBrowser::NewWindow2(WebBrowser *&target, bool &cancel)
{
    letPendingEventsRun();
    if (menuChecked("mnuToolsKillPopUps")) {
        cancel = true;
        return;
    }
    const WindowRequest request = m_browser->CurrentRequest();
    if (!request.userInitiated
        && !m_budget->mayOpen(request.url, this,
                              [this](const QString &url) { openWaitingPopup(url); })) {
        m_browser->setRefusesUnaskedWindows(m_budget->isClosed());
        cancel = true;
        return;
    }
    target = showPopup(!request.userInitiated)->brwWebBrowser();
    cancel = false;
}

void frmBrowser::NavigateComplete2(const QString &)
{
    renewBudget();
    m_frame.addAddress(m_browser->LocationURL(), isActiveChild());
}

void frmBrowser::LocationChange(const QString &url)
{
    if (isActiveChild())
        m_frame.setAddressText(url);
}

void frmBrowser::DocumentComplete(const QString &url)
{
    emit documentComplete(url);
}

void frmBrowser::WindowClosing(bool, bool &cancel)
{
    // The page stays as it is; the window goes by itself when the user agrees.
    cancel = true;
    if (std::exchange(m_closeQuestionOpen, true))
        return;
    MsgBox::ask(this, u"This window is attempting to close itself!\r\nDo you want to allow this?"_s,
                u"Allow Window Close?"_s,
                [window = QPointer<frmBrowser>(this)](MsgBox::Answer answer) {
                    if (!window)
                        return;
                    window->m_closeQuestionOpen = false;
                    if (answer == MsgBox::Answer::Yes)
                        window->unload();
                });
}

void frmBrowser::SetSecureLockIcon(int secureLockIcon)
{
    m_status->setSecureShown(secureLockIcon > 0);
}

void frmBrowser::PrivacyImpactedStateChange(bool impacted)
{
    m_status->setPrivacyShown(impacted);
}

void frmBrowser::GotFocus()
{
    WindowTabs &tabs = m_frame.tbWindows();
    if (tabs.isPressed(tabKey()))
        return;
    tabs.setPressed(tabKey(), true);
    const QString address = m_browser->LocationURL();
    if (!address.isEmpty())
        m_frame.setAddressText(address);
}
