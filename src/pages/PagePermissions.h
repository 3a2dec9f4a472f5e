#pragma once

#include "AskingSite.h"
#include "PageQuestion.h"
#include "PermissionRequest.h"

#include <QHash>
#include <QObject>
#include <optional>
#include <vector>

class WebPage;

/// What a page and the frames in it may do beyond showing themselves. Nothing, unless the user
/// allows it: asked once for each site and kind, an answer holds until the page goes, or for good
/// where he has it remembered. Every request is answered: no where the page goes first.
class PagePermissions : public QObject {
    Q_OBJECT

public:
    explicit PagePermissions(WebPage &page);
    ~PagePermissions() override;

    /// Of camera, microphone and screen what was allowed since the page came. The engine does not
    /// tell when a script gives them back, so it counts as in use until the page goes.
    QList<Permission> inUse() const;
    /// Ends that, for good: the page is loaded anew and refused them; one that is the answer to a
    /// form, and would send it again, is left.
    void endUse();
    /// The page is being left because the user ended its use, so it has no say.
    bool isEndingUse() const { return m_isEndingUse; }

    /// Where an answer for `asker` in the page may be kept, as things are now.
    bool mayKeep(const AskingSite &site) const;
    /// Keeps it, or tells the user why not. `scheme` as in `SitePermissions`.
    void keep(const AskingSite &site, const QList<Permission> &permissions, bool isAllowed,
              const QString &scheme = {});

    /// The page that may show notifications in the name of `origin`, the newest if there are
    /// several; null: none.
    static WebPage *notifying(const QUrl &origin);

signals:
    void useChanged();

private:
    struct Grant {
        QUrl asker;
        AskingSite site;
        Permission permission = Permission::Place;
        PageMoment heard;
    };
    struct Held {
        bool isAllowed = false;
        PageMoment heard;
    };
    struct Waiting {
        QUrl asker;
        AskingSite site;
        QList<Permission> permissions;
        std::vector<std::shared_ptr<PermissionRequest>> requests;

        /// Of the latest of them.
        PageMoment heard() const { return requests.back()->heard(); }
    };

    PageMoment now() const;
    void take(const std::shared_ptr<PermissionRequest> &request);
    std::optional<bool> known(const AskingSite &site, const QUrl &asker,
                              const QList<Permission> &permissions) const;
    QUrl around() const;
    void ask(const QString &kind);
    void answer(const QString &kind, PageQuestion::Reply reply);
    void answerElsewhere(const QString &kind, const Waiting &waiting, bool isAllowed);
    void answerAlike(const QString &kind, const AskingSite &site, bool isAllowed);
    void hold(const Waiting &waiting, bool isAllowed);
    void lose(const QString &kind);
    void allow(const Waiting &waiting);
    void settle(const std::shared_ptr<PermissionRequest> &request, bool isAllowed);
    void stopScripts();
    void begin(const PageMoment &moment);
    void forgetWaiting(const PageMoment &moment);
    void forgetAnswers(const PageMoment &moment);
    void allowNotifications();
    void forgetGrants(const PageMoment &moment);

    WebPage &m_page;
    /// By the question's kind.
    QHash<QString, Waiting> m_waiting;
    /// Answers that hold while the page is there, by who asked and what for.
    QHash<QString, Held> m_held;
    QList<Grant> m_granted;
    /// The last that was answered, by who asked and what for.
    QHash<QString, std::shared_ptr<PermissionRequest>> m_answered;
    /// Refused to the pages of a site that follow, too, as long as none of another site comes.
    QHash<QString, Held> m_withdrawn;
    QString m_withdrawnSite;
    bool m_isEndingUse = false;
};
