#pragma once

#include "Permission.h"

#include <QList>
#include <QUrl>
#include <functional>
#include <memory>

class QWebEnginePage;
class QWidget;

/// Which page the window showed, and how many loads had been begun, when something was heard.
struct PageMoment {
    int navigation = 0;
    QUrl page;

    bool operator==(const PageMoment &) const = default;
};

/// Somebody in a page asks the engine for permissions, all or none, and waits for the answer. One
/// that nobody answers is answered no as it goes.
class PermissionRequest {
public:
    using Settle = std::function<void(bool isAllowed)>;

    PermissionRequest(const QUrl &asker, const QList<Permission> &permissions,
                      const Settle &settle);
    ~PermissionRequest();
    PermissionRequest(const PermissionRequest &) = delete;
    PermissionRequest &operator=(const PermissionRequest &) = delete;

    /// The site that the engine names: of the frame, where it is one that asks. Empty where it has
    /// none.
    const QUrl &asker() const { return m_asker; }
    const QList<Permission> &permissions() const { return m_permissions; }
    void setHeard(const PageMoment &heard) { m_heard = heard; }
    const PageMoment &heard() const { return m_heard; }
    /// Makes what the user fills in beside his answer; empty where there is nothing, which is
    /// usual.
    using Fields = std::function<QWidget *(QWidget *parent)>;
    void setFields(const Fields &fields) { m_fields = fields; }
    const Fields &fields() const { return m_fields; }
    /// The first answer counts. The page may be gone by then.
    void settle(bool isAllowed);
    /// Takes the answer back, where the engine would hold it beyond the page that it was for.
    using Withdraw = std::function<void()>;
    void setWithdraw(const Withdraw &withdraw) { m_withdraw = withdraw; }
    void withdraw() const;
    /// The engine has one answer for this and for others of the site, in whatever page.
    void setShared() { m_isShared = true; }
    bool isShared() const { return m_isShared; }
    /// Called when the engine has answered no, as it did to another request of the site.
    void setLost(const std::function<void()> &lost) { m_lost = lost; }
    void lose();
    bool isSettled() const { return !m_settle; }

private:
    QUrl m_asker;
    QList<Permission> m_permissions;
    PageMoment m_heard;
    Settle m_settle;
    Fields m_fields;
    Withdraw m_withdraw;
    std::function<void()> m_lost;
    bool m_isShared = false;
};

/// How the engine tells of requests, whichever way its version has.
namespace PermissionRequests {
using Handler = std::function<void(const std::shared_ptr<PermissionRequest> &request)>;

/// Calls `handler` for each request of the page, out of the engine's own calls, as long as
/// `receiver` is there. What the engine may ask for beyond `Permission` is refused.
void watch(QWebEnginePage &page, QObject *receiver, const Handler &handler);
/// Nobody in the page waits any more: it goes.
void forget(QWebEnginePage &page);
/// Allows notifications before they are asked for: pages look first whether they need to ask.
void allowNotifications(QWebEnginePage &page, const QUrl &asker);
/// Takes back what the engine holds allowed or refused beyond the request.
void withdraw(QWebEnginePage &page, const QUrl &asker, Permission permission);
}
