#include "DevToolsWindow.h"

#include "BrowserWindow.h"
#include "Forms.h"
#include "Frame.h"
#include "Inspector.h"
#include "TextRules.h"
#include "Texts.h"
#include "ThemedIcon.h"
#include "WindowTabs.h"

#include <QCloseEvent>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmDevTools"> texts;

}

DevToolsWindow::DevToolsWindow(Frame &frame, BrowserWindow &inspected, Inspector &tools)
    : InnerWindow(frame)
    , m_inspected(&inspected)
    , m_isPrivate(inspected.isPrivate())
{
    setObjectName("frmDevTools"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(themedIcon(u"tools"_s));
    setWidget(&tools);
    Forms::add(this);
    frame.windowTabs().addTab(tabKey(), {});
    frame.windowTabs().setIcon(tabKey(), windowIcon());
    if (m_isPrivate)
        frame.windowTabs().setPrivate(tabKey());
    DevToolsWindow::translate();
    connect(&inspected, &QWidget::windowTitleChanged, this, &DevToolsWindow::translate);
    connect(&tools, &Inspector::over, this, &QWidget::close);
    connect(&tools, &Inspector::gotFocus, this, &DevToolsWindow::pressTab);
    connect(&tools, &Inspector::linkWanted, this, [this](const QString &url) {
        m_frame.openWindowLike(m_isPrivate ? Privacy::Private : Privacy::Ordinary, url,
                               m_frame.newWindowState());
    });
    connect(this, &QMdiSubWindow::windowStateChanged, this,
            [this](Qt::WindowStates before, Qt::WindowStates now) {
                if ((before & Qt::WindowActive) || !(now & Qt::WindowActive) || m_unloaded)
                    return;
                pressTab();
                m_frame.setAddressText(shownAddress());
            });
}

DevToolsWindow::~DevToolsWindow()
{
    disconnect(this, &QMdiSubWindow::windowStateChanged, this, nullptr);
    unload();
}

bool DevToolsWindow::isPrivate() const
{
    return m_isPrivate;
}

void DevToolsWindow::translate()
{
    if (m_unloaded)
        return;
    const QString tools = texts.at<"Caption", "Developer Tools">();
    const QString title = m_inspected ? m_inspected->windowTitle() : QString();
    const QString caption = title.isEmpty() ? tools : title + u" - "_s + tools;
    setWindowTitle(caption);
    m_frame.windowTabs().setCaption(tabKey(), tabCaption(caption));
    m_frame.windowTabs().setToolTip(tabKey(), caption);
    widget()->setAccessibleName(caption);
}

void DevToolsWindow::unload()
{
    if (std::exchange(m_unloaded, true))
        return;
    m_frame.windowTabs().removeTab(tabKey());
    Forms::remove(this);
}

void DevToolsWindow::closeEvent(QCloseEvent *event)
{
    unload();
    InnerWindow::closeEvent(event);
}

DevToolsWindow *DevToolsWindow::openFor(Frame &frame, BrowserWindow &inspected)
{
    const QList<InnerWindow *> windows = innerForms();
    for (InnerWindow *each : windows) {
        auto *open = qobject_cast<DevToolsWindow *>(each);
        if (open && open->m_inspected == &inspected)
            return open;
    }
    Inspector *tools = inspected.browser()->makeInspector();
    if (!tools)
        return nullptr;
    const WindowState state = frame.newWindowState();
    frame.windowTabs().setPressed(inspected.tabKey(), false);
    auto *window = new DevToolsWindow(frame, inspected, *tools);
    frame.adopt(window);
    if (state == WindowState::Maximized)
        window->showMaximized();
    else
        window->show();
    return window;
}
