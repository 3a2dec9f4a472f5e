#include "PageZoom.h"

#include "EngineProfile.h"
#include "WebPage.h"
#include "WebView.h"
#include "ZoomKeeper.h"
#include "ZoomScale.h"

#include <QWheelEvent>
#include <QtMath>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {
/// By which the engine changes the factor at a turn of the wheel.
constexpr double engineStep = 0.1;
/// Smaller differences of factors are none.
constexpr double closeness = 0.001;
constexpr auto lookInterval = 50ms;
/// A page may take that long to say that it does not want the wheel for itself.
constexpr int mostLooks = 40;
}

PageZoom::PageZoom()
{
    m_look.setInterval(lookInterval);
    connect(&m_look, &QTimer::timeout, this, &PageZoom::followEngine);
    connect(&ZoomKeeper::instance(), &ZoomKeeper::changed, this,
            [this](const QString &site, int percent) {
                if (site == m_site && !isPrivate())
                    put(percent / 100.0);
            });
}

PageZoom::~PageZoom()
{
    ZoomKeeper::instance().flush();
}

void PageZoom::use(WebPage *page, WebView *view, QObject *bond)
{
    m_page = page;
    m_page->setZoomFactor(m_factor);
    connect(view, &WebView::eventCame, bond, [this](const QEvent &event) { noteEvent(event); });
}

double PageZoom::waitAt(const QUrl &url, double factor)
{
    m_site = SiteZoom::siteOf(url);
    const bool isOwn = qAbs(factor - 1) > closeness;
    const double percent = isOwn ? 100 * factor : ZoomKeeper::instance().percent(m_site);
    put(qBound(double(SiteZoom::least), percent, double(SiteZoom::most)) / 100);
    return m_factor;
}

void PageZoom::forget()
{
    m_site.clear();
    put(1);
}

/// The engine shows the page that comes as large as the one before.
void PageZoom::pageCame(const QUrl &url)
{
    const QString site = SiteZoom::siteOf(url);
    if (site != m_site) {
        m_site = site;
        put(ZoomKeeper::instance().percent(site) / 100.0);
    } else if (m_page) {
        put(m_factor);
    }
}

int PageZoom::percent() const
{
    return qRound(100 * (m_page ? m_page->zoomFactor() : m_factor));
}

/// What is done in another profile than the one that is kept leaves nothing behind.
bool PageZoom::isPrivate() const
{
    return m_page && m_page->profile() != engineProfile();
}

void PageZoom::choose(int percent)
{
    put(percent / 100.0);
    if (!m_site.isEmpty() && !isPrivate())
        ZoomKeeper::instance().put(m_site, percent);
}

void PageZoom::walk(int steps)
{
    choose(ZoomScale::walk(percent(), steps));
}

void PageZoom::put(double factor)
{
    if (m_page && qAbs(m_page->zoomFactor() - factor) > closeness)
        m_page->setZoomFactor(factor);
    if (qAbs(std::exchange(m_factor, factor) - factor) > closeness)
        emit changed();
}

/// The page has the wheel first, as a map wants it. If it leaves it, the engine zooms by a step of
/// its own, and tells nobody.
void PageZoom::noteEvent(const QEvent &event)
{
    if (event.type() != QEvent::Wheel
        || !(static_cast<const QWheelEvent &>(event).modifiers() & Qt::ControlModifier))
        return;
    m_looksLeft = mostLooks;
    if (!m_look.isActive())
        m_look.start();
}

void PageZoom::followEngine()
{
    if (--m_looksLeft <= 0 || !m_page)
        m_look.stop();
    if (!m_page)
        return;
    const double turned = m_page->zoomFactor() - m_factor;
    if (qAbs(turned) < closeness)
        return;
    const int steps = qMax(1, qRound(qAbs(turned) / engineStep));
    choose(ZoomScale::walk(qRound(100 * m_factor), turned > 0 ? steps : -steps));
}
