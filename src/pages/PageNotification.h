#pragma once

#include "DesktopNotice.h"

#include <QObject>
#include <memory>

class QWebEngineNotification;

/// One notification of a page on the desktop. A click brings the page's window to the front.
class PageNotification : public QObject {
    Q_OBJECT

public:
    explicit PageNotification(std::unique_ptr<QWebEngineNotification> notification);
    ~PageNotification() override;

    /// The page means `notification` to stand in the place of this one.
    bool isReplacedBy(const QWebEngineNotification &notification) const;
    void replace(std::unique_ptr<QWebEngineNotification> notification);
    /// Takes it off the desktop, and tells the page.
    void end();

signals:
    /// The user, his desktop or the page has closed it.
    void over();

private:
    void show();
    void choose();

    std::unique_ptr<QWebEngineNotification> m_notification;
    DesktopNotice m_notice;
};
