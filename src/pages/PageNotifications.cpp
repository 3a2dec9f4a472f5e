#include "PageNotifications.h"

#include "Log.h"
#include "PageNotification.h"
#include "PrivateProfiles.h"
#include "Profiles.h"

#include <QPointer>
#include <QWebEngineNotification>
#include <QWebEngineProfile>
#include <algorithm>
#include <chrono>
#include <utility>

namespace {
constexpr int mostShown = 5;
constexpr int mostInAMinute = 10;
/// Milliseconds in which dropped ones are told as one.
constexpr int pace = 1000;

/// The profile's.
PageNotifications *theNotifications = nullptr;
}

void PageNotifications::install()
{
    followProfile({begin, end});
}

void PageNotifications::begin(QWebEngineProfile *profile)
{
    if (PrivateProfiles::numberOf(profile) != 0)
        return;
    theNotifications = new PageNotifications;
    profile->setNotificationPresenter(
        [self = QPointer(theNotifications)](std::unique_ptr<QWebEngineNotification> notification) {
            if (self)
                self->present(std::move(notification));
        });
}

void PageNotifications::end(QWebEngineProfile *profile)
{
    if (PrivateProfiles::numberOf(profile) == 0)
        delete std::exchange(theNotifications, nullptr);
}

PageNotifications::PageNotifications()
{
    m_tells.setSingleShot(true);
    m_tells.setInterval(pace);
    connect(&m_tells, &QTimer::timeout, this, &PageNotifications::tellDropped);
}

PageNotifications::~PageNotifications()
{
    qDeleteAll(std::exchange(m_shown, {}));
}

void PageNotifications::present(std::unique_ptr<QWebEngineNotification> notification)
{
    if (!mayShow()) {
        ++m_dropped;
        if (!m_tells.isActive())
            m_tells.start();
        notification->close();
        return;
    }
    const auto same =
        std::find_if(m_shown.cbegin(), m_shown.cend(), [&](const PageNotification *each) {
            return each->isReplacedBy(*notification);
        });
    if (same != m_shown.cend()) {
        (*same)->replace(std::move(notification));
        return;
    }
    if (m_shown.size() >= mostShown)
        remove(m_shown.first());
    auto *shown = new PageNotification(std::move(notification));
    m_shown.append(shown);
    connect(shown, &PageNotification::over, this, [this, shown] { remove(shown); });
}

bool PageNotifications::mayShow()
{
    if (m_minute.hasExpired()) {
        m_minute.setRemainingTime(std::chrono::minutes(1));
        m_left = mostInAMinute;
    }
    return m_left > 0 && m_left-- > 0;
}

/// It may be in the middle of telling.
void PageNotifications::remove(PageNotification *shown)
{
    if (!m_shown.removeOne(shown))
        return;
    shown->disconnect(this);
    shown->end();
    shown->deleteLater();
}

void PageNotifications::tellDropped()
{
    qCWarning(lcEngine) << "dropped" << std::exchange(m_dropped, 0) << "notifications of pages";
}
