#pragma once

#include "WebBrowser.h"

#include <QStringList>

/// The events of an engine control, one line each in the order in which they came.
class RecordedEvents : public WebBrowserEvents {
public:
    void statusTextChange(const QString &text) override { statuses.append(text); }
    void titleChange(const QString &text) override
    {
        titles.append(text);
        lines.append(QStringLiteral("title ") + text.left(100));
    }
    void iconChange(const QIcon &icon) override { lastIcon = icon; }
    void beforeNavigate2(const QString &url, int &flags, bool &cancel) override
    {
        lines.append(QStringLiteral("before ") + url);
        flags = flagsToSet;
        cancel = refuse;
    }
    void newWindow2(WebBrowser *&target, bool &cancel) override
    {
        lines.append(QStringLiteral("window"));
        target = nextTarget;
        cancel = !nextTarget;
    }
    void navigateComplete2(const QString &url) override
    {
        lines.append(QStringLiteral("navigated ") + url);
    }
    void locationChange(const QString &url) override
    {
        lines.append(QStringLiteral("location ") + url);
    }
    void documentComplete(const QString &url) override
    {
        lines.append(QStringLiteral("complete ") + url);
    }
    void windowClosing(bool, bool &) override { lines.append(QStringLiteral("closing")); }
    void setSecureLockIcon(int lock) override
    {
        secure = lock > 0;
        unproven = lock < 0;
    }
    void privacyImpactedStateChange(bool impacted) override { privacy = impacted; }
    void gotFocus() override { ++focused; }

    int count(const QString &line) const { return int(lines.count(line)); }
    /// The lines of navigation alone.
    QStringList navigation() const
    {
        QStringList result;
        for (const QString &line : lines) {
            if (!line.startsWith(QStringLiteral("title ")))
                result.append(line);
        }
        return result;
    }

    QStringList lines;
    QStringList statuses;
    QStringList titles;
    QIcon lastIcon;
    WebBrowser *nextTarget = nullptr;
    int flagsToSet = 0;
    int focused = 0;
    bool refuse = false;
    bool secure = false;
    bool unproven = false;
    bool privacy = false;
};
