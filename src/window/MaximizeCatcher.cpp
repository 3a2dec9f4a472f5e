#include "MaximizeCatcher.h"

#include "Frame.h"
#include "StatusStrip.h"
#include "Twips.h"
#include "WebBrowser.h"
#include "Yield.h"
#include "frmBrowser.h"

#include <QAction>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
constexpr int milliseconds = 750;
/// Twips; where the control stops on its way back.
constexpr int aside = 45;
}

MaximizeCatcher::MaximizeCatcher(frmBrowser &window, const Frame &frame)
    : QObject(&window)
    , m_window(window)
    , m_frame(frame)
    , m_tmrMaxCatch(new QTimer(this))
{
    m_tmrMaxCatch->setObjectName("tmrMaxCatch"_L1);
    m_tmrMaxCatch->setInterval(milliseconds);
    connect(m_tmrMaxCatch, &QTimer::timeout, this, &MaximizeCatcher::tmrMaxCatch_Timer);
    connect(&window, &frmBrowser::documentComplete, this, &MaximizeCatcher::arm);
}

void MaximizeCatcher::arm()
{
    if (m_frame.menuItem(u"mnuToolsMaximizeCatcher"_s)->isChecked())
        m_tmrMaxCatch->start();
    else
        m_tmrMaxCatch->stop();
}

void MaximizeCatcher::tmrMaxCatch_Timer()
{
    m_tmrMaxCatch->stop();
    // The control is always moved twice, wherever it is: a page that lost its place in the window
    // is laid out anew by it.
    const int height =
        m_window.innerHeight() - Twips::fromPixels(m_window.statusBar()->stripHeight());
    if (height >= 0 && !m_window.isMinimized())
        m_window.brwWebBrowser()->Move(aside, aside, m_window.innerWidth(), height);
    m_window.Form_Resize();
    letPendingEventsRun();
}
