#include "PageNotification.h"

#include "PagePermissions.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"
#include "WebPage.h"

#include <QWebEngineNotification>

namespace {
/// Characters; a page may hand over any length.
constexpr int longestTitle = 100;
constexpr int longestText = 400;

constexpr Texts<"Permissions"> texts;
}

PageNotification::PageNotification(std::unique_ptr<QWebEngineNotification> notification)
    : m_notification(std::move(notification))
{
    connect(&m_notice, &DesktopNotice::chosen, this, &PageNotification::choose);
    connect(&m_notice, &DesktopNotice::gone, this, &PageNotification::over);
    show();
}

PageNotification::~PageNotification()
{
    m_notice.close();
}

bool PageNotification::isReplacedBy(const QWebEngineNotification &notification) const
{
    // The engine takes two without a tag for the same.
    return !notification.tag().isEmpty() && notification.matches(m_notification.get());
}

void PageNotification::replace(std::unique_ptr<QWebEngineNotification> notification)
{
    m_notification->disconnect(this);
    m_notification->close();
    m_notification = std::move(notification);
    show();
}

/// The site stands where the desktop writes largest, and a page's own words never do.
void PageNotification::show()
{
    connect(m_notification.get(), &QWebEngineNotification::closed, this, &PageNotification::over);
    QString text = shownText(m_notification->title().left(longestTitle));
    if (const QString message = m_notification->message(); !message.isEmpty())
        text += u'\n' + shownText(message.left(longestText));
    m_notice.show(shownSite(m_notification->origin()), text,
                  texts.at<"strShowPage", "Show the page">(), m_notification->icon());
    m_notification->show();
}

void PageNotification::end()
{
    m_notice.close();
    m_notification->disconnect(this);
    m_notification->close();
}

void PageNotification::choose()
{
    if (WebPage *page = PagePermissions::notifying(m_notification->origin()))
        emit page->wanted();
    m_notification->click();
}
