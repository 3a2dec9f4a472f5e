#pragma once

#include "WebBrowser.h"

#include <QStringList>

/// The events of an engine control, one line each in the order in which they came.
class RecordedEvents : public WebBrowserEvents {
public:
    void StatusTextChange(const QString &text) override { statuses.append(text); }
    void TitleChange(const QString &text) override
    {
        titles.append(text);
        lines.append(QStringLiteral("title ") + text.left(100));
    }
    void IconChange(const QIcon &icon) override { lastIcon = icon; }
    void BeforeNavigate2(const QString &url, int &flags, bool &cancel) override
    {
        lines.append(QStringLiteral("before ") + url);
        flags = flagsToSet;
        cancel = refuse;
    }
    void NewWindow2(WebBrowser *&target, bool &cancel) override
    {
        lines.append(QStringLiteral("window"));
        target = nextTarget;
        cancel = !nextTarget;
    }
    void NavigateComplete2(const QString &url) override
    {
        lines.append(QStringLiteral("navigated ") + url);
    }
    void LocationChange(const QString &url) override
    {
        lines.append(QStringLiteral("location ") + url);
    }
    void DocumentComplete(const QString &url) override
    {
        lines.append(QStringLiteral("complete ") + url);
    }
    void WindowClosing(bool, bool &) override { lines.append(QStringLiteral("closing")); }
    void SetSecureLockIcon(int lock) override { secure = lock > 0; }
    void PrivacyImpactedStateChange(bool impacted) override { privacy = impacted; }
    void GotFocus() override { ++focused; }

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
    bool privacy = false;
};
