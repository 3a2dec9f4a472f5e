#include "PopupEntrance.h"

#include "BrowserWindow.h"
#include "Frame.h"
#include "WebBrowser.h"

#include <QApplication>
#include <QMdiArea>
#include <QTimer>
#include <utility>

PopupEntrance::PopupEntrance(BrowserWindow &window, Frame &frame, Place place)
    : m_window(window)
    , m_frame(frame)
    , m_place(place)
{
}

void PopupEntrance::hold(QWidget &keeper)
{
    m_window.setParent(&keeper);
    m_unplaced = m_window.browser()->widget()->geometry();
}

void PopupEntrance::comeUp()
{
    if (std::exchange(m_isUp, true))
        return;
    m_windowBefore = m_frame.activeChild();
    m_focusBefore = QApplication::focusWidget();
    QWidget *control = m_window.browser()->widget();
    const QRect wanted = control->geometry();
    m_frame.keepTyping([this] {
        m_frame.adopt(&m_window);
        // Being shown, the window lays itself out and fills itself with the control.
        if (m_place == Behind)
            m_window.showBehind();
        else
            m_window.show();
    });
    if (!m_unplaced.isNull() && wanted != m_unplaced)
        control->setGeometry(wanted);
}

void PopupEntrance::giveBack()
{
    if (!m_isUp || !m_windowBefore || m_frame.activeChild() != &m_window)
        return;
    QTimer::singleShot(0, m_windowBefore.data(),
                       [&frame = m_frame, window = m_windowBefore, focus = m_focusBefore] {
                           frame.keepTyping([&] {
                               if (QMdiArea *area = window->mdiArea())
                                   area->setActiveSubWindow(window);
                               if (focus)
                                   focus->setFocus();
                           });
                       });
}
