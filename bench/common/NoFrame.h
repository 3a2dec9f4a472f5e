#pragma once

#include "Frame.h"

/// A frame for parts of the program that are measured alone: it has a window at most, and nothing
/// is ever opened in it.
class NoFrame : public Frame {
public:
    explicit NoFrame(QWidget *window)
        : m_window(window)
    {
    }

    QWidget *window() override { return m_window; }
    void adopt(QMdiSubWindow *) override { }
    QMdiSubWindow *activeChild() const override { return nullptr; }
    void openBrowserWindow(const QString &, WindowState) override { }
    void openPrivateWindow(const QString &, WindowState) override { }
    void navigateActive(const QString &) override { }
    WindowState newWindowState() const override { return WindowState::Maximized; }
    bool openProfile(const QString &, bool) override { return false; }
    WindowTabs &windowTabs() override { qFatal("no tabs"); }
    void setAddressText(const QString &) override { }
    void addAddress(const QString &, bool) override { }
    QAction *menuItem(const QString &) const override { return nullptr; }
    void handle(const QString &, const Handler &) override { }
    void handleToggle(const QAction *, const ToggleHandler &) override { }
    void beforeOpening(const QString &, const Handler &) override { }
    void run(const QString &) override { }
    int navigationFlags() const override { return 0; }
    void setNavigationFlags(int) override { }

private:
    QWidget *m_window;
};
