#include "ListWindow.h"

#include "FlowRows.h"
#include "ThemedIcon.h"
#include "WindowTabs.h"

#include <QCloseEvent>
#include <QToolButton>
#include <utility>

ListWindow::ListWindow(Frame &frame, const char *name, const QString &icon)
    : InnerWindow(frame)
{
    setObjectName(QLatin1String(name));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(themedIcon(icon));
    Forms::add(this);
    frame.windowTabs().addTab(tabKey(), {});
    frame.windowTabs().setIcon(tabKey(), windowIcon());
    connect(this, &QMdiSubWindow::windowStateChanged, this,
            [this](Qt::WindowStates before, Qt::WindowStates now) {
                if ((before & Qt::WindowActive) || !(now & Qt::WindowActive) || m_unloaded)
                    return;
                pressTab();
                m_frame.setAddressText(shownAddress());
                onActivated();
            });
}

ListWindow::~ListWindow()
{
    disconnect(this, &QMdiSubWindow::windowStateChanged, this, nullptr);
    unload();
}

void ListWindow::unload()
{
    if (std::exchange(m_unloaded, true))
        return;
    m_frame.windowTabs().removeTab(tabKey());
    Forms::remove(this);
}

void ListWindow::closeEvent(QCloseEvent *event)
{
    unload();
    InnerWindow::closeEvent(event);
}

void ListWindow::setCaption(const QString &caption)
{
    setWindowTitle(caption);
    m_frame.windowTabs().setCaption(tabKey(), caption);
    m_frame.windowTabs().setToolTip(tabKey(), caption);
}

QLayout *ListWindow::buttonsFor(const QList<QAction *> &actions)
{
    auto *rows = new FlowRows;
    for (QAction *action : actions) {
        auto *button = new QToolButton;
        button->setDefaultAction(action);
        button->setObjectName(action->objectName());
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setFocusPolicy(Qt::StrongFocus);
        rows->addWidget(button);
    }
    return rows;
}

WindowState ListWindow::beginOpening(Frame &frame)
{
    const WindowState state = frame.newWindowState();
    if (const InnerWindow *active = activeInner(frame))
        frame.windowTabs().setPressed(active->tabKey(), false);
    return state;
}

void ListWindow::endOpening(ListWindow &window, WindowState state)
{
    window.m_frame.adopt(&window);
    if (state == WindowState::Maximized)
        window.showMaximized();
    else
        window.show();
}
