#pragma once

#include "InnerWindow.h"

#include <QPointer>

class BrowserWindow;
class Inspector;

/// The inner window with the developer tools of a browser window's page. There is one at most for
/// each, and it goes when that page does.
class DevToolsWindow : public InnerWindow {
    Q_OBJECT

public:
    /// The one of `inspected`, or a new one; null where that has no page.
    static DevToolsWindow *openFor(Frame &frame, BrowserWindow &inspected);

    /// No page's.
    QString shownAddress() const override { return {}; }
    void translate() override;
    bool isPrivate() const override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    DevToolsWindow(Frame &frame, BrowserWindow &inspected, Inspector &tools);
    ~DevToolsWindow() override;

    void unload();

    QPointer<BrowserWindow> m_inspected;
    bool m_isPrivate;
    bool m_unloaded = false;
};
