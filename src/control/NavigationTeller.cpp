#include "NavigationTeller.h"

#include "AddressCompletion.h"
#include "Addresses.h"
#include "ErrorPage.h"
#include "GuidePage.h"
#include "Listener.h"
#include "NavigationHistory.h"
#include "OwnPages.h"
#include "PageCertificates.h"
#include "PageIndicators.h"
#include "PageLife.h"
#include "RefusedAddress.h"
#include "Settings.h"
#include "ShownAddress.h"
#include "StartPage.h"
#include "Texts.h"
#include "Yield.h"

#include <QPointer>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWebEngineScript>

using namespace Addresses;
using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmBrowser"> texts;

/// What stands for no address where one is looked for.
bool isNothing(const QString &text)
{
    return text.isEmpty() || text == "http:///"_L1;
}

bool isHomePage(const QUrl &url)
{
    QUrl home = completeAddress(Settings::homeUrl.read());
    // As the engine has it.
    if (isWeb(home) && home.path().isEmpty())
        home.setPath(u"/"_s);
    return isSamePage(url, home);
}

QString whyNoPage(const QUrl &address)
{
    if (address.isEmpty())
        return texts.at<"strNoAddress", "This is not an address:">();
    if (isRefusedAddress(address)) {
        return texts
            .at<"strRefusedAddress", "This address is not opened, it could end the program:">();
    }
    return texts.at<"strOtherProgram", "Addresses of this kind are not opened here:">();
}
}

NavigationTeller::NavigationTeller(PageLife &life, const Listener &listener, Navigation &state,
                                   NavigationHistory &history)
    : m_life(life)
    , m_listener(listener)
    , m_state(state)
    , m_history(history)
    , m_indicators(new PageIndicators(this)) // NOLINT(bugprone-throw-keyword-missing)
{
    connect(&life, &PageLife::came, m_indicators, &PageIndicators::watch);
    const auto tellLock = [this] {
        const int lock = m_indicators->isSecure() ? 1 : m_indicators->isUnproven() ? -1 : 0;
        m_listener.tell(&WebBrowserEvents::setSecureLockIcon, lock);
    };
    connect(m_indicators, &PageIndicators::secureChanged, this, tellLock);
    connect(m_indicators, &PageIndicators::unprovenChanged, this, tellLock);
    connect(m_indicators, &PageIndicators::privacyImpacted, this, [this](bool impacted) {
        m_listener.tell(&WebBrowserEvents::privacyImpactedStateChange, impacted);
    });
}

bool NavigationTeller::askWindow(const QUrl &url)
{
    bool cancel = false;
    int flags = m_state.flags();
    emit windowAsked();
    m_listener.tell(&WebBrowserEvents::beforeNavigate2, encoded(url), flags, cancel);
    m_state.setFlags(flags);
    // A handler may have closed the window, and then nothing more is to be loaded.
    return m_listener.isThere() && !cancel;
}

void NavigationTeller::tell(const Navigation::Events &events)
{
    for (const Navigation::Event &event : events)
        tellOne(event);
}

void NavigationTeller::tellOne(const Navigation::Event &event)
{
    using What = Navigation::What;
    switch (event.what) {
    case What::Begun:
        askWindow(event.url);
        break;
    case What::Opening:
        showStatus(texts.at<"strOpening", "Opening page">() + u' ' + shownAddress(event.url)
                   + u"..."_s);
        break;
    case What::Done:
        m_statusOfNothing.clear();
        showStatus(texts.at<"strDone", "Done">());
        break;
    case What::Refused:
        if (event.url.isEmpty())
            showStatus(std::exchange(m_statusOfNothing, {}));
        else
            tellNoPage(encoded(event.url), event.url);
        break;
    case What::PageCame:
        tellPage(event);
        break;
    case What::BlankCame:
        QTimer::singleShot(0, this, [this] { tell(m_state.blankShown()); });
        break;
    case What::ErrorCame:
        tellError(event);
        break;
    case What::Location:
        m_listener.tell(&WebBrowserEvents::locationChange, event.text);
        break;
    case What::Distrust:
        m_indicators->distrust();
        break;
    case What::Complete:
        if (isStartPage(QUrl(event.text)))
            StartPage::fill(m_life.page());
        else if (isOwnPage(QUrl(event.text)))
            GuidePage::letLinksLead(*m_life.page());
        m_listener.tell(&WebBrowserEvents::documentComplete, event.text);
        break;
    case What::GivenUp:
        m_listener.tell(&WebBrowserEvents::navigationGivenUp);
        break;
    case What::PerhapsNothing:
        tellIfNothingCame();
        break;
    case What::ForgetLinks:
        forgetLinks(m_state.takeLinksToForget());
        break;
    case What::Ended:
        emit loadEnded();
        break;
    }
}

void NavigationTeller::tellPage(const Navigation::Event &event)
{
    WebPage *page = m_life.page();
    page->noteArrival();
    if (m_life.host())
        m_life.host()->hideFailure();
    m_indicators->reset(event.url, event.hasArrived);
    if (m_life.questions())
        m_life.questions()->pageChanged(event.url);
    emit pageCame();
    if (event.isSkipped)
        m_history.skipCurrent(page);
    forgetLinks(m_state.linksToForget());
    m_listener.tell(&WebBrowserEvents::navigateComplete2, event.text);
}

/// A server that cannot prove who it is has a notice of ours, over the page of the error.
void NavigationTeller::tellError(const Navigation::Event &event)
{
    ErrorPage::show(m_life.page(), event.url, event.error);
    if (isHomePage(event.url))
        StartPage::offerBelowError(m_life.page());
    const auto failure = m_life.page()->certificates().failureAt(event.url, event.error);
    if (failure && m_life.host())
        m_life.host()->showFailure(*failure);
}

void NavigationTeller::forgetLinks(const QList<QUrl> &links)
{
    if (!links.isEmpty())
        m_life.page()->profile()->clearVisitedLinks(links);
}

/// What the window holds is asked of the page, as its opener may have written into it; by then
/// another load may be under way.
void NavigationTeller::tellIfNothingCame()
{
    m_life.page()->runJavaScript(u"!document.body || !document.body.hasChildNodes()"_s,
                                 QWebEngineScript::ApplicationWorld,
                                 [self = QPointer(this)](const QVariant &isEmpty) {
                                     const EngineCallbackScope scope;
                                     if (self && isEmpty.toBool() && self->m_state.holdsNothing())
                                         self->m_listener.tell(&WebBrowserEvents::nothingCame);
                                 });
}

void NavigationTeller::tellNoPage(const QString &text, const QUrl &address)
{
    if (!isNothing(text))
        showStatus(whyNoPage(address) + u' ' + editableAddress(text.left(200)));
}

void NavigationTeller::tellText(const QString &text)
{
    if (m_state.isUnderWay())
        m_statusOfNothing = text;
    else
        showStatus(text);
}

/// The engine would open an empty page instead, end, or do nothing and say nothing.
void NavigationTeller::tellRefused(const QString &text, const QUrl &address)
{
    if (askWindow(address.isEmpty() ? QUrl(text) : address)) {
        const QString name = text.trimmed();
        tellNoPage(name, address);
        if (!m_state.hasDocument() && !isNothing(name))
            m_listener.tell(&WebBrowserEvents::titleChange, name);
    }
    emit loadEnded();
}

void NavigationTeller::showStatus(const QString &text)
{
    m_status = text;
    m_listener.tell(&WebBrowserEvents::statusTextChange, text);
}

void NavigationTeller::tellLink(const QString &url)
{
    m_listener.tell(&WebBrowserEvents::statusTextChange,
                    url.isEmpty() ? m_status : shownAddress(url));
}

void NavigationTeller::expect(const QUrl &url)
{
    m_indicators->expect(url);
}

void NavigationTeller::tellCrash()
{
    m_indicators->reset(QUrl(m_state.location()));
    emit loadEnded();
}

void NavigationTeller::forgetPage()
{
    m_indicators->reset(QUrl());
    showStatus({});
}
