#include "MaximizeCatcher.h"

#include "BrowserWindow.h"
#include "Frame.h"
#include "Settings.h"
#include "StatusStrip.h"
#include "WebBrowser.h"

#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
constexpr int milliseconds = 750;
/// Pixels; where the control stops on its way back.
constexpr int aside = 3;
}

MaximizeCatcher::MaximizeCatcher(BrowserWindow &window, const Frame &frame)
    : QObject(&window)
    , m_window(window)
    , m_frame(frame)
    , m_timer(new QTimer(this))
{
    m_timer->setObjectName("tmrMaxCatch"_L1);
    m_timer->setInterval(milliseconds);
    connect(m_timer, &QTimer::timeout, this, &MaximizeCatcher::catchUp);
    connect(&window, &BrowserWindow::documentCompleted, this, &MaximizeCatcher::arm);
}

void MaximizeCatcher::arm()
{
    if (m_frame.isOn(Settings::maximizeCatcher))
        m_timer->start();
    else
        m_timer->stop();
}

void MaximizeCatcher::catchUp()
{
    m_timer->stop();
    // The control is always moved twice, wherever it is: a page that lost its place in the window
    // is laid out anew by it.
    const int height = m_window.innerHeight() - m_window.statusBar()->stripHeight();
    if (height >= 0 && !m_window.isMinimized())
        m_window.browser()->move(aside, aside, m_window.innerWidth(), height);
    m_window.layOut();
}
