#pragma once

#include <QIcon>
#include <QString>

/// What is heard of a page.
enum class PageSound { None, Playing, Muted };

/// The tab strip as browser windows see it: one button per window, found by the window's key.
/// Every call on a key that has no tab does nothing.
class WindowTabs {
public:
    virtual ~WindowTabs() = default;

    /// The key of a window's tab: "X" and the window's number in decimal.
    static QString key(int hWnd) { return u'X' + QString::number(hWnd); }

    /// A new tab at the end, with the strip's own picture until `setIcon` gives another.
    virtual void addTab(const QString &key, const QString &caption) = 0;
    virtual void removeTab(const QString &key) = 0;
    virtual void setCaption(const QString &key, const QString &caption) = 0;
    virtual void setToolTip(const QString &key, const QString &text) = 0;
    /// A null icon gives the strip's own picture back.
    virtual void setIcon(const QString &key, const QIcon &icon) = 0;
    /// What the window uses of camera, microphone and screen, in words; empty: nothing.
    virtual void setUse(const QString &key, const QString &text) = 0;
    virtual void setSound(const QString &key, PageSound sound) = 0;
    /// The picture of a window that has given its page up is dimmed.
    virtual void setAsleep(const QString &key, bool asleep) = 0;
    /// The window is private, for good: its tab is marked so.
    virtual void setPrivate(const QString &key) = 0;
    /// Pressing a tab releases the others.
    virtual void setPressed(const QString &key, bool pressed) = 0;
    virtual bool isPressed(const QString &key) const = 0;
};
