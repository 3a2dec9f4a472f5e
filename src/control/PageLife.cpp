#include "PageLife.h"

#include "EngineProfile.h"
#include "FreedMemory.h"
#include "Listener.h"
#include "Log.h"
#include "PageHold.h"
#include "RefusedAddress.h"
#include "SparePage.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <utility>

namespace {
QList<PageLife *> living;

QEvent::Type discardEvent()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}
}

PageLife::PageLife(BrowserHost *host, Listener &listener)
    : m_host(host)
    , m_listener(listener)
{
}

void PageLife::setQuestions(PageQuestions *questions)
{
    m_questions = questions;
    connect(questions, &PageQuestions::shown, m_host, &BrowserHost::endFullScreen);
}

void PageLife::setPrivate()
{
    m_isPrivate = true;
    m_session = PrivateProfiles::join();
}

QWebEngineProfile *PageLife::profile()
{
    if (!m_isPrivate)
        return engineProfile();
    if (!m_session)
        m_session = PrivateProfiles::join();
    return m_session.get();
}

void PageLife::begin()
{
    if (!m_page)
        use(SparePage::take(profile()));
}

void PageLife::beginAnew()
{
    if (!m_page)
        use(new WebPage(profile()));
}

void PageLife::adopt(QWebEngineNewWindowRequest &request)
{
    // The spare page has contents of its own already, which those of the request replace. A page
    // without would be left half made, and end the program as soon as a script touches it.
    WebPage *page = SparePage::take(profile());
    request.openIn(page);
    // Until Qt 6.6.1 it is lost (QTBUG-117867).
    page->renewInterceptor();
    use(page);
}

void PageLife::use(WebPage *page)
{
    m_page = page;
    m_page->setQuestions(m_questions);
    m_view = new WebView(m_page, m_host);
    m_bond = std::make_unique<QObject>();
    living.append(this);
    emit came(m_page, m_view, m_bond.get());
    connect(m_view, &WebView::visibleChanged, m_bond.get(), [this] { applyShown(); });
    connect(m_view, &WebView::eventCame, m_page,
            [page = m_page.data()](const QEvent &event) { page->placeWish().noteEvent(event); });
    connect(m_page, &QWebEnginePage::recentlyAudibleChanged, m_bond.get(),
            [this] { applyShown(); });
    connect(
        m_page, &WebPage::focusMissed, m_bond.get(),
        [this] {
            if (m_view)
                m_view->renewFocus();
        },
        Qt::QueuedConnection);
    connect(m_page, &QWebEnginePage::fullScreenRequested, m_bond.get(),
            [this](const QWebEngineFullScreenRequest &request) { answerFullScreen(request); });
    connect(&m_page->leaving(), &LeavingPage::stuck, m_bond.get(),
            [this] { endStuck(std::exchange(m_wayOut, {})); });
    connect(m_page, &QWebEnginePage::renderProcessTerminated, m_bond.get(),
            [this](QWebEnginePage::RenderProcessTerminationStatus status) {
                // Pages that are being shut down end normally.
                if (status != QWebEnginePage::NormalTerminationStatus)
                    noteCrash();
            });
    m_host->setView(m_view);
    applyShown();
}

void PageLife::end()
{
    if (m_page)
        emit going();
    living.removeOne(this);
    m_bond.reset();
    if (m_questions)
        m_questions->endAll();
    if (m_page) {
        // One that lives on for a while stays what it is.
        m_page->setQuestion([](const QUrl &url, QWebEnginePage::NavigationType, bool isMainFrame) {
            return !isMainFrame && !isRefusedToPages(url);
        });
        m_page->setIsOnItsWay({});
    }
    if (m_page && PageHold::takeOver(m_view, m_page)) {
        emit m_page->left();
        if (m_host)
            m_host->giveUpView();
        m_view.clear();
        m_page.clear();
    }
    if (m_host) {
        m_host->dropFailure();
        m_host->hideCrash();
    }
    if (m_page)
        FreedMemory::giveBackSoon();
    delete m_view;
    delete m_page;
    m_crashed = false;
}

void PageLife::drop()
{
    m_listener.set(nullptr);
    end();
}

void PageLife::dropAll()
{
    const QList<PageLife *> all = living;
    for (PageLife *life : all)
        life->drop();
}

void PageLife::setShown(bool shown)
{
    m_shown = shown;
    applyShown();
}

bool PageLife::isInSight() const
{
    return m_shown && m_view->isVisible() && !m_view->window()->isMinimized();
}

/// A page that can be heard goes on as if it were seen.
void PageLife::applyShown()
{
    if (!m_page || !m_view || m_crashed)
        return;
    const bool isVisible = isInSight() || m_page->recentlyAudible();
    if (m_page->isVisible() && !isVisible)
        emit goingOutOfSight();
    m_page->setVisible(isVisible);
}

void PageLife::noteCrash()
{
    if (m_questions)
        m_questions->endAll();
    m_host->showCrash();
    m_crashed = true;
    // Ahead of whatever a screen reader asks meanwhile.
    QCoreApplication::postEvent(this, new QEvent(discardEvent()), Qt::HighEventPriority);
    emit crashed();
}

bool PageLife::event(QEvent *event)
{
    if (event->type() != discardEvent())
        return QObject::event(event);
    discardCrashed();
    return true;
}

/// What screen readers know of the page leads through what has gone with its process, and would end
/// the program. It goes as well; the history stays.
void PageLife::discardCrashed()
{
    if (!m_crashed || !m_page)
        return;
    m_page->setVisible(false);
    m_page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
}

void PageLife::leaveCrashed()
{
    if (m_host)
        m_host->hideCrash();
    if (!m_crashed)
        return;
    // One that would not go still runs where nothing has come in between.
    discardCrashed();
    m_crashed = false;
    applyShown();
}

bool PageLife::waitsForAnswer(const std::function<void()> &command)
{
    return leave(LeavingPage::Way::Elsewhere, command);
}

void PageLife::leaveUnheard(const std::function<void()> &command)
{
    if (!m_page || !m_questions || !m_questions->isSilenced() || m_page->leaving().isOn())
        return;
    m_wayOut = command;
    m_page->leaving().begin(LeavingPage::Way::Elsewhere);
}

bool PageLife::stopsAnswering()
{
    return leave(LeavingPage::Way::Stop, {});
}

bool PageLife::leave(LeavingPage::Way way, const std::function<void()> &command)
{
    if (!m_page || !m_page->awaitsAnswer())
        return false;
    m_wayOut = command;
    m_page->leaving().begin(way);
    if (command)
        connect(m_page, &WebPage::answerGiven, m_bond.get(), command, Qt::SingleShotConnection);
    if (m_questions)
        m_questions->endAll();
    return true;
}

/// What the user is asked must be in sight, and no page comes from behind others. One that is
/// refused never hears of it, and can ask no more.
void PageLife::answerFullScreen(QWebEngineFullScreenRequest request)
{
    const bool isAsking = m_questions && m_questions->shownQuestion();
    if (!request.toggleOn() || (!isAsking && m_view && isInSight())) {
        if (m_host)
            m_host->answerFullScreen(request);
        return;
    }
    request.accept();
    QMetaObject::invokeMethod(
        m_page, [page = m_page] { page->triggerAction(QWebEnginePage::ExitFullScreen); },
        Qt::QueuedConnection);
}

/// Its process goes with what is discarded.
void PageLife::endStuck(const std::function<void()> &command)
{
    if (m_crashed)
        return;
    qCInfo(lcEngine) << "a page that would not go is ended:"
                     << PrivateProfiles::siteForLog(*m_page);
    noteCrash();
    if (command)
        QTimer::singleShot(0, m_bond.get(), command);
}

void PageLife::noteUserAction()
{
    if (m_questions)
        m_questions->userActed();
    if (m_page)
        emit m_page->userActed();
}
