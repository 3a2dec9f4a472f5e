#include "DeskPlacer.h"

#include "BrowserWindow.h"
#include "DeskPlaces.h"
#include "Factory.h"
#include "MdiArea.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>

DeskPlacer::DeskPlacer(Frame &frame, MdiArea &area, const Desk &desk)
    : m_frame(frame)
    , m_area(area)
    , m_desk(desk)
    , m_room(area.maximumViewportSize())
    , m_windows(desk.windows.size())
{
    placeFrame(*frame.window());
    if (desk.hasPlaces())
        area.viewport()->setUpdatesEnabled(false);
}

DeskPlacer::~DeskPlacer()
{
    m_area.viewport()->setUpdatesEnabled(true);
}

void DeskPlacer::placeFrame(QWidget &frame)
{
    constexpr Qt::WindowStates others =
        Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized;
    if (!m_desk.hasPlaces() || !m_desk.frame.isValid() || (frame.windowState() & others))
        return;
    const QRect screen = frame.screen()->availableGeometry();
    if (m_desk.isFrameMaximized) {
        // The desktop may take its time for it.
        m_room += screen.size() - frame.size();
        frame.showMaximized();
    } else {
        frame.setGeometry(DeskPlaces::onScreen(m_desk.frame, screen));
        m_room = m_area.maximumViewportSize();
    }
}

BrowserWindow *DeskPlacer::open(qsizetype index)
{
    DeskWindow window = m_desk.windows.at(index);
    if (window.place.isValid())
        window.place = DeskPlaces::inside(window.place, m_room,
                                          m_area.style()->pixelMetric(QStyle::PM_TitleBarHeight));
    BrowserWindow *opened = openDeskWindow(m_frame, window);
    m_windows[index] = opened;
    return opened;
}

QList<BrowserWindow *> DeskPlacer::windows() const
{
    QList<BrowserWindow *> windows;
    for (const QPointer<BrowserWindow> &window : m_windows) {
        if (window && !window->isUnloaded())
            windows.append(window);
    }
    return windows;
}

void DeskPlacer::finish()
{
    QList<qsizetype> stack;
    for (qsizetype i = 0; i < m_windows.size(); ++i) {
        if (m_windows.at(i) && !m_windows.at(i)->isUnloaded())
            stack.append(i);
    }
    if (stack.isEmpty())
        return;
    std::sort(stack.begin(), stack.end(), [this](qsizetype a, qsizetype b) {
        return m_desk.windows.at(a).order < m_desk.windows.at(b).order;
    });
    const qsizetype active = stack.contains(m_desk.active) ? m_desk.active : stack.last();
    QList<QMdiSubWindow *> children;
    QList<QMdiSubWindow *> minimized;
    for (const qsizetype index : std::as_const(stack)) {
        children.append(m_windows.at(index));
        if (m_desk.windows.at(index).state == DeskWindow::State::Minimized)
            minimized.append(m_windows.at(index));
    }
    m_area.putBack(children, minimized, m_windows.at(active),
                   m_desk.windows.at(active).state == DeskWindow::State::Maximized);
}
