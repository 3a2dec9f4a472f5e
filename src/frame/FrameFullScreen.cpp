#include "FrameFullScreen.h"

#include "CoolBar.h"
#include "Frame.h"
#include "FrameBody.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QMainWindow>
#include <QMenuBar>
#include <QStyle>
#include <QWindowStateChangeEvent>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto item = "mnuViewFullScreen"_L1;
/// Pixels.
constexpr int edgeHeight = 2;
/// How far below the bars the pointer may be; pixels.
constexpr int tolerance = 12;
constexpr int slideMs = 120;
constexpr auto watchInterval = 400ms;
}

FrameFullScreen::FrameFullScreen(QMainWindow &window, Frame &frame, FrameBody &body, CoolBar &bars)
    : QObject(&window)
    , m_window(window)
    , m_frame(frame)
    , m_body(body)
    , m_bars(bars)
    , m_menu(*window.menuBar())
{
    m_watch.setInterval(watchInterval);
    connect(&m_watch, &QTimer::timeout, this, [this] {
        if (!isWanted())
            retreat();
    });
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_inSight = value.toDouble();
        place();
    });
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *now) {
        if (m_edge && holds(now))
            reveal(false);
    });
    m_window.installEventFilter(this);
    m_body.installEventFilter(this);
    m_menu.installEventFilter(this);
    m_frame.handle(item, [this] { toggle(); });
}

FrameFullScreen::~FrameFullScreen()
{
    disconnect(qApp, nullptr, this, nullptr);
}

void FrameFullScreen::toggle()
{
    Qt::WindowStates state = m_window.windowState() ^ Qt::WindowFullScreen;
    // Not every desktop remembers it.
    if (m_edge)
        state.setFlag(Qt::WindowMaximized, m_wasMaximized);
    m_window.setWindowState(state);
}

/// The desktop may do it, too.
void FrameFullScreen::followState(Qt::WindowStates before)
{
    const bool isOn = m_window.windowState() & Qt::WindowFullScreen;
    if (isOn == !m_edge.isNull())
        return;
    m_frame.menuItem(item)->setChecked(isOn);
    if (isOn) {
        m_wasMaximized = before & Qt::WindowMaximized;
        begin();
    } else {
        end();
    }
}

void FrameFullScreen::begin()
{
    m_edge = new QWidget(&m_window);
    m_edge->setObjectName("FullScreenEdge"_L1);
    m_edge->setAcceptDrops(true);
    m_edge->installEventFilter(this);
    m_edge->show();
    m_body.setBarFloats(true);
    // Over the pages.
    m_menu.setAutoFillBackground(true);
    m_bars.setAutoFillBackground(true);
    // Else a margin that is negative counts for nothing.
    m_window.setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea, false);
    // They are seen to go.
    m_inSight = 1;
    place();
    m_watch.start();
}

void FrameFullScreen::end()
{
    m_slide.stop();
    m_watch.stop();
    delete m_edge;
    m_inSight = 1;
    m_window.setContentsMargins({});
    m_window.setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea);
    m_body.setBarFloats(false);
    m_menu.setAutoFillBackground(false);
    m_bars.setAutoFillBackground(false);
}

int FrameFullScreen::menuHeight() const
{
    const int height = m_menu.heightForWidth(m_window.width());
    return height < 0 ? m_menu.sizeHint().height() : height;
}

int FrameFullScreen::barsHeight() const
{
    return m_bars.isHidden() ? 0 : m_bars.sizeHint().height();
}

/// The layout has the menu bar above the edge, and its place below left to the windows; what is to
/// be in sight is brought down from there, over them.
void FrameFullScreen::place()
{
    if (!m_edge || m_isPlacing)
        return;
    m_isPlacing = true;
    const int menu = menuHeight();
    const int all = menu + barsHeight();
    m_window.setContentsMargins(0, -menu, 0, 0);
    const int top = qRound((m_inSight - 1) * all);
    m_menu.setGeometry(0, top, m_window.width(), menu);
    m_bars.setGeometry(0, m_body.mapFrom(&m_window, QPoint(0, top + menu)).y(), m_body.width(),
                       barsHeight());
    m_bars.raise();
    m_menu.raise();
    m_edge->setGeometry(0, 0, m_window.width(), edgeHeight);
    m_edge->setVisible(m_inSight < 1);
    m_edge->raise();
    m_isPlacing = false;
}

/// Once the layout has done its part.
void FrameFullScreen::placeSoon()
{
    if (m_edge && !m_isPlacing)
        QMetaObject::invokeMethod(this, &FrameFullScreen::place, Qt::QueuedConnection);
}

void FrameFullScreen::reveal(bool atOnce)
{
    m_watch.start();
    if (m_slide.state() == QAbstractAnimation::Running && m_slide.endValue().toDouble() == 1
        && !atOnce)
        return;
    m_slide.stop();
    const bool slides = m_window.style()->styleHint(QStyle::SH_Widget_Animate, nullptr, &m_window);
    if (atOnce || !slides || m_inSight == 1) {
        m_inSight = 1;
        place();
        return;
    }
    m_slide.setDuration(slideMs);
    m_slide.setStartValue(m_inSight);
    m_slide.setEndValue(1.0);
    m_slide.start();
}

void FrameFullScreen::retreat()
{
    m_watch.stop();
    m_slide.stop();
    m_slide.setDuration(slideMs);
    m_slide.setStartValue(m_inSight);
    m_slide.setEndValue(0.0);
    m_slide.start();
}

bool FrameFullScreen::holds(const QWidget *widget) const
{
    return widget
        && (widget == &m_menu || m_menu.isAncestorOf(widget) || widget == &m_bars
            || m_bars.isAncestorOf(widget));
}

bool FrameFullScreen::isWanted() const
{
    if (QApplication::activePopupWidget() || m_menu.activeAction()
        || holds(QApplication::focusWidget()))
        return true;
    const QRect bars(m_window.mapToGlobal(QPoint()),
                     QSize(m_window.width(), menuHeight() + barsHeight() + tolerance));
    return m_window.isActiveWindow() && bars.contains(QCursor::pos());
}

bool FrameFullScreen::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (watched == &m_window && type == QEvent::WindowStateChange)
        followState(static_cast<QWindowStateChangeEvent *>(event)->oldState());
    else if (watched == m_edge && (type == QEvent::Enter || type == QEvent::DragEnter))
        reveal(false);
    // A menu opens where its bar is.
    else if (watched == &m_menu && type == QEvent::Shortcut && m_edge)
        reveal(true);
    else if (type == QEvent::Resize || type == QEvent::LayoutRequest)
        placeSoon();
    return QObject::eventFilter(watched, event);
}
