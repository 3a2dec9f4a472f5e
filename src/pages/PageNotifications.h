#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QTimer>
#include <memory>

class PageNotification;
class QWebEngineNotification;
class QWebEngineProfile;

/// Notifications of pages whose users allowed them, given to the desktop: always with the site that
/// sends them, some at a time, and so many in a minute. The page of any other is told that it was
/// closed.
class PageNotifications : public QObject {
    Q_OBJECT

public:
    /// For all pages of the profile from now on. Private ones have none: a desktop may keep what it
    /// was given.
    static void install();
    ~PageNotifications() override;

private:
    PageNotifications();
    static void begin(QWebEngineProfile *profile);
    static void end(QWebEngineProfile *profile);
    void present(std::unique_ptr<QWebEngineNotification> notification);
    bool mayShow();
    void remove(PageNotification *shown);
    void tellDropped();

    /// The oldest first.
    QList<PageNotification *> m_shown;
    QDeadlineTimer m_minute = QDeadlineTimer(0);
    int m_left = 0;
    int m_dropped = 0;
    QTimer m_tells;
};
