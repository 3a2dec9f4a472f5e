// A page that goes from one window to another, so that its process need not end and another start.
#include "AddressCompletion.h"
#include "BrowserHost.h"
#include "LivePages.h"
#include "PageIndicators.h"
#include "PageJobs.h"
#include "PageScripts.h"
#include "QtWebBrowser.h"
#include "TitleThrottle.h"
#include "WebOrigin.h"
#include "WebPage.h"
#include "WebView.h"

#include <QWebEngineScript>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

void QtWebBrowser::NavigateNowInPlaceOf(WebBrowser &idle)
{
    auto *other = qobject_cast<QtWebBrowser *>(&idle);
    const bool takesPage =
        m_waiting && !m_page && other && other->mayHandOnPage(completeAddress(m_location));
    if (takesPage) {
        usePage(other->releasePage());
        m_handedOn = true;
    }
    idle.NavigateLater(idle.LocationURL());
    NavigateNow();
}

/// Only a page that came to its end and that nothing else refers to, and only for its own origin:
/// whatever it still shares with the next page, they would share as neighbours, too.
bool QtWebBrowser::mayHandOnPage(const QUrl &address) const
{
    const bool atRest = m_page && m_hasDocument && !m_busy && m_stage == Stage::None
        && !m_showsError && m_page->renderProcessPid() != 0;
    return atRest && !m_adopted && !m_isEntangled && !m_page->recentlyAudible()
        && !PageJobs::has(m_page) && sameOrigin(QUrl(m_location), address);
}

WebPage *QtWebBrowser::releasePage()
{
    WebPage *page = m_page;
    LivePages::remove(this);
    for (const QObject *listener :
         std::initializer_list<const QObject *>{this, m_title, m_host, m_indicators})
        page->disconnect(listener);
    m_page.clear();
    delete m_view;
    forgetPage();
    page->setQuestion({});
    page->setCacheBypass(false);
    page->settings()->resetAttribute(QWebEngineSettings::JavascriptCanOpenWindows);
    page->runJavaScript(PageScripts::source(u"page-leaves.js"_s),
                        QWebEngineScript::ApplicationWorld);
    return page;
}

/// What came was no page, and the one that is there is another window's. Another address may be on
/// its way by now.
void QtWebBrowser::dropHandedPage()
{
    if (!m_handedOn || m_stage != Stage::None || !m_handedOver.isEmpty())
        return;
    deletePage();
    forgetPage();
}
