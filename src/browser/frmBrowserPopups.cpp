// The windows that pages ask for.
#include "Frame.h"
#include "PopupBudget.h"
#include "PopupURLs.h"
#include "frmBrowser.h"

#include <QApplication>
#include <QMdiArea>
#include <QTimer>
#include <QUrl>

/// A window for a page's request, shown; its engine control is to take the request over.
frmBrowser *frmBrowser::showPopup(bool unasked)
{
    auto *window = new frmBrowser(m_frame);
    window->StartingAddress.clear();
    window->Popup = true;
    if (unasked) {
        window->m_budget = m_budget;
        window->m_openedUnasked = true;
    }
    window->m_windowBefore = m_frame.activeChild();
    window->m_focusBefore = QApplication::focusWidget();
    window->m_browser->setRegisterAsBrowser(true);
    window->m_browser->setSilent(menuChecked("mnuToolsScriptErrorSuppress"));
    m_frame.adopt(window);
    window->show();
    return window;
}

/// A window that had to wait for the user's answer; its opener holds no reference to it.
void frmBrowser::openWaitingPopup(const QString &url)
{
    m_browser->setRefusesUnaskedWindows(false);
    if (!m_unloaded && !menuChecked("mnuToolsKillPopUps"))
        showPopup(true)->brwWebBrowser()->Navigate(url);
}

/// Closes this popup, and tells so, when the address it begins with is on the list of blocked
/// ones; what was active before it, and had the focus, is and has it again.
bool frmBrowser::closedAsBlocked(const QString &url, bool &cancel)
{
    if (!menuChecked("mnuToolsSmartPopupKiller") || IsPopupURLAllowed(url, cancel))
        return false;
    if (m_openedUnasked)
        m_budget->giveBack();
    QTimer::singleShot(0, m_windowBefore.data(), [window = m_windowBefore, focus = m_focusBefore] {
        if (!window)
            return;
        if (QMdiArea *area = window->mdiArea())
            area->setActiveSubWindow(window);
        if (focus)
            focus->setFocus();
    });
    unload();
    return true;
}

/// Another site in a window of the user's begins anew; a window that a page opened by itself
/// stays in the account of that page.
void frmBrowser::renewBudget()
{
    const QString host = QUrl(m_browser->LocationURL()).host();
    if (m_openedUnasked || host == m_budgetHost)
        return;
    m_budgetHost = host;
    m_budget = std::make_shared<PopupBudget>();
    m_browser->setRefusesUnaskedWindows(false);
}

void frmBrowser::OpenLinkInNewWindow(const QString &url)
{
    m_frame.OpenBrowserWindow(url, m_frame.NewWindowState());
}
