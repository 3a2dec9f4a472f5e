// The windows that pages ask for.
#include "BlockedList.h"
#include "BrowserWindow.h"
#include "DroppedWindows.h"
#include "EngineVersion.h"
#include "Frame.h"
#include "PopupBudget.h"
#include "PopupEntrance.h"
#include "Settings.h"

#include <QTimer>
#include <QUrl>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {
using namespace std::chrono_literals;

/// How long a window is without a first navigation before it is taken for one that its opener's
/// script fills; and where the engine is sure to ask for one, before this is doubted.
constexpr auto emptyAfter = 200ms;
constexpr auto lateAfter = 3000ms;
constexpr auto lookAgainAfter = 500ms;

constexpr auto emptyDocument = "<html><head></head><body></body></html>"_L1;

/// The engine asks before it goes to such an address.
bool isAskedFor(const QString &url)
{
    static const QStringList schemes{u"http"_s, u"https"_s, u"file"_s,
                                     u"data"_s, u"blob"_s,  u"view-source"_s};
    return schemes.contains(QUrl(url).scheme());
}
}

/// A window for a page's request; its engine control is to take the request over. It comes up now,
/// or when the list of blocked addresses has been asked about its first one.
BrowserWindow *BrowserWindow::makePopup(const WindowRequest &request)
{
    auto *window = new BrowserWindow(m_frame, m_privacy);
    window->startingAddress.clear();
    window->isPopup = true;
    if (!request.userInitiated) {
        window->m_budget = m_budget;
        window->m_openedUnasked = true;
    }
    window->m_browser->setRegisterAsBrowser(true);
    window->m_browser->setSilent(m_frame.isOn(Settings::suppressScriptErrors));
    window->m_entrance = std::make_unique<PopupEntrance>(
        *window, m_frame, request.behind ? PopupEntrance::Behind : PopupEntrance::InFront);
    if (m_frame.isOn(Settings::smartPopupKiller) && hasPopupPatterns())
        window->m_entrance->hold(*this);
    else
        window->m_entrance->comeUp();
    QTimer::singleShot(isAskedFor(request.url) ? lateAfter : emptyAfter, window,
                       &BrowserWindow::firstNavigationIsLate);
    return window;
}

/// A window that its opener fills by script is one like any other, and one that the user asked for
/// may well be empty. An empty one that he did not ask for has nothing to show and may still be
/// sent to a blocked address.
void BrowserWindow::firstNavigationIsLate()
{
    if (!isPopup || m_unloaded)
        return;
    if (!m_openedUnasked)
        m_entrance->comeUp();
    if (m_entrance->isUp()) {
        if (!m_named && !m_browser->isBusy())
            titleChange(u"about:blank"_s);
        return;
    }
    m_browser->outerHtml([self = QPointer(this)](const QString &markup) {
        if (!self || !self->isPopup || self->m_unloaded)
            return;
        if (!markup.isEmpty() && markup != emptyDocument)
            self->m_entrance->comeUp();
        QTimer::singleShot(lookAgainAfter, self, &BrowserWindow::firstNavigationIsLate);
    });
}

/// A window that had to wait for the user's answer; its opener holds no reference to it.
void BrowserWindow::openWaitingPopup(const QString &url)
{
    m_browser->setRefusesUnaskedWindows(false);
    if (!m_unloaded && !m_frame.isOn(Settings::killPopups))
        makePopup({url})->browser()->navigateForPage(url);
}

/// Closes this popup, and tells so, when the address it begins with is on the list of blocked
/// ones; what it has taken from the user, he has again.
bool BrowserWindow::closedAsBlocked(const QString &url, bool &cancel)
{
    if (!m_frame.isOn(Settings::smartPopupKiller) || isPopupAllowed(url, cancel))
        return false;
    // One that was seen counts.
    if (m_openedUnasked && !(m_entrance && m_entrance->isUp()))
        m_budget->giveBack();
    if (m_entrance)
        m_entrance->giveBack();
    m_frame.keepTyping([this] { unload(); });
    return true;
}

/// Where an empty window comes with an address, no navigation follows that could be tested.
bool BrowserWindow::refusesEmptyWindow(const QString &url, bool &cancel)
{
    return emptyWindowsAreBlank && QUrl(url).scheme() == "about"_L1
        && m_frame.isOn(Settings::smartPopupKiller) && !isPopupAllowed(url, cancel);
}

/// An address that the user named begins anew, and so does a link or a step of his to another
/// site; what a page does by itself does not, and a window that a page opened by itself stays in
/// the account of that page until the user names an address there. What remains to a page is to
/// wait for the user's click and use it to go to another site of its own: one click then buys one
/// account, as it buys one window anyway.
void BrowserWindow::renewBudget()
{
    const QString host = QUrl(m_browser->locationUrl()).host();
    const Arrival arrival = m_browser->arrivedBy();
    const bool followed = arrival == Arrival::ByStep && !m_openedUnasked && host != m_budgetHost;
    if (arrival != Arrival::ByAddress && !followed) {
        if (m_budgetHost.isEmpty())
            m_budgetHost = host;
        return;
    }
    m_budgetHost = host;
    m_openedUnasked = false;
    m_budget = std::make_shared<PopupBudget>();
    m_browser->setRefusesUnaskedWindows(false);
}

void BrowserWindow::openLinksInNewWindows(const QStringList &urls)
{
    openDropped(m_frame, urls, m_privacy, WindowState::Behind);
}
