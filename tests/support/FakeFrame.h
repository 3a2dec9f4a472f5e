#pragma once

#include "BrowserWindow.h"
#include "CoveredWindows.h"
#include "Frame.h"
#include "WindowTabs.h"

#include <QAction>
#include <QMainWindow>
#include <QMdiArea>
#include <QStringList>
#include <map>
#include <memory>

/// Tabs that only remember what they were told.
class FakeTabs : public WindowTabs {
public:
    struct Tab {
        QString key;
        QString caption;
        QString toolTip;
        QIcon icon;
        bool pressed = false;
        QString use = {};
        bool asleep = false;
        PageSound sound = PageSound::None;
        /// How often that changed.
        int soundChanges = 0;
        bool isPrivate = false;
    };

    void addTab(const QString &key, const QString &caption) override
    {
        tabs.append({key, caption, {}, {}, false});
    }
    void removeTab(const QString &key) override
    {
        tabs.removeIf([&key](const Tab &tab) { return tab.key == key; });
    }
    void setCaption(const QString &key, const QString &caption) override
    {
        if (Tab *tab = find(key))
            tab->caption = caption;
    }
    void setUse(const QString &key, const QString &text) override
    {
        if (Tab *tab = find(key))
            tab->use = text;
    }
    void setSound(const QString &key, PageSound sound) override
    {
        if (Tab *tab = find(key)) {
            tab->sound = sound;
            ++tab->soundChanges;
        }
    }
    void setAsleep(const QString &key, bool asleep) override
    {
        if (Tab *tab = find(key))
            tab->asleep = asleep;
    }
    void setPrivate(const QString &key) override
    {
        if (Tab *tab = find(key))
            tab->isPrivate = true;
    }
    void setToolTip(const QString &key, const QString &text) override
    {
        if (Tab *tab = find(key))
            tab->toolTip = text;
    }
    void setIcon(const QString &key, const QIcon &icon) override
    {
        if (Tab *tab = find(key))
            tab->icon = icon;
    }
    void setPressed(const QString &key, bool pressed) override
    {
        for (Tab &tab : tabs) {
            if (tab.key == key)
                tab.pressed = pressed;
            else if (pressed)
                tab.pressed = false;
        }
    }
    bool isPressed(const QString &key) const override
    {
        const auto tab = std::find_if(tabs.begin(), tabs.end(),
                                      [&key](const Tab &each) { return each.key == key; });
        return tab != tabs.end() && tab->pressed;
    }

    Tab *find(const QString &key)
    {
        const auto tab = std::find_if(tabs.begin(), tabs.end(),
                                      [&key](const Tab &each) { return each.key == key; });
        return tab == tabs.end() ? nullptr : &*tab;
    }

    QList<Tab> tabs;
};

/// A frame of a real window and a real area of inner windows that remembers what it was asked.
class FakeFrame : public Frame {
public:
    FakeFrame()
    {
        m_window.setCentralWidget(area);
        m_window.resize(1000, 700);
        m_window.show();
    }
    ~FakeFrame() override
    {
        const QList<BrowserWindow *> windows = browserForms();
        qDeleteAll(windows);
    }

    QWidget *window() override { return &m_window; }
    void adopt(QMdiSubWindow *child) override
    {
        area->addSubWindow(child);
        CoveredWindows::follow(*child);
    }
    QMdiSubWindow *activeChild() const override { return area->currentSubWindow(); }
    void openBrowserWindow(const QString &url, WindowState state) override
    {
        opened.append({url, state});
    }
    void openPrivateWindow(const QString &url, WindowState state) override
    {
        openedPrivately.append({url, state});
    }
    void navigateActive(const QString &url) override { navigated.append(url); }
    WindowState newWindowState() const override
    {
        return activeChild() ? WindowState::AsOthers : WindowState::Maximized;
    }
    bool openProfile(const QString &, bool) override { return false; }
    WindowTabs &windowTabs() override { return tabs; }
    void setAddressText(const QString &url) override
    {
        addressText = url;
        addressTexts.append(url);
    }
    void addAddress(const QString &url, bool showText) override
    {
        addresses.append({url, showText});
        if (showText)
            addressText = url;
    }
    QAction *menuItem(const QString &name) const override
    {
        std::unique_ptr<QAction> &action = m_actions[name];
        if (!action) {
            action = std::make_unique<QAction>();
            action->setObjectName(name);
            action->setCheckable(true);
        }
        return action.get();
    }
    void handle(const QString &name, const Handler &handler) override { handlers[name] = handler; }
    void handleToggle(const QAction *item, const ToggleHandler &handler) override
    {
        handlers[item->objectName()] = [mark = menuItem(item->objectName()), handler] {
            mark->toggle();
            handler(mark->isChecked());
        };
    }
    void beforeOpening(const QString &, const Handler &) override { }
    void run(const QString &name) override
    {
        if (handlers[name])
            handlers[name]();
    }
    int navigationFlags() const override { return flags; }
    void setNavigationFlags(int value) override { flags = value; }

    /// A window as the frame makes one: shown, and opened on `url`.
    BrowserWindow *open(const QString &url, bool maximized = false)
    {
        auto *form = new BrowserWindow(*this);
        form->startingAddress = url;
        adopt(form);
        if (maximized)
            form->showMaximized();
        else
            form->show();
        return form;
    }
    FakeTabs::Tab tabOf(const BrowserWindow *form)
    {
        const FakeTabs::Tab *tab = tabs.find(form->tabKey());
        return tab ? *tab : FakeTabs::Tab();
    }

    struct Opened {
        QString url;
        WindowState state = WindowState::AsOthers;
    };
    struct Address {
        QString url;
        bool shown = false;
    };
    FakeTabs tabs;
    QList<Opened> opened;
    QList<Opened> openedPrivately;
    QStringList navigated;
    QString addressText;
    QStringList addressTexts;
    QList<Address> addresses;
    std::map<QString, Handler> handlers;
    int flags = 0;

private:
    QMainWindow m_window;
    mutable std::map<QString, std::unique_ptr<QAction>> m_actions;

public:
    /// Owned by the window.
    QMdiArea *area = new QMdiArea;
};
