#include "PagePermissions.h"

#include "EngineProfile.h"
#include "Log.h"
#include "NotSaved.h"
#include "PageQuestions.h"
#include "PermissionQuestion.h"
#include "PermissionRules.h"
#include "PrivateProfiles.h"
#include "ShownAddress.h"
#include "SitePermissions.h"
#include "WebPage.h"

#include <QPointer>
#include <QWebEngineView>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using PermissionRules::isCapture;
using PermissionRules::keyOf;
using SitePermissions::Word;

namespace {
/// Different questions that a page can have open; what comes then is refused.
constexpr qsizetype mostWaiting = 20;

QList<PagePermissions *> &living()
{
    static QList<PagePermissions *> all;
    return all;
}

QWidget *windowOf(WebPage &page)
{
    const QWebEngineView *view = QWebEngineView::forPage(&page);
    return view ? view->window() : nullptr;
}
}

PagePermissions::PagePermissions(WebPage &page)
    : m_page(page)
{
    living().append(this);
    PermissionRequests::watch(
        page, this, [this](const std::shared_ptr<PermissionRequest> &request) { take(request); });
    connect(&page, &WebPage::arrived, this, &PagePermissions::begin);
    connect(&page, &QWebEnginePage::renderProcessTerminated, this, &PagePermissions::begin);
    connect(&page, &WebPage::userActed, this, [this] { m_withdrawn.clear(); });
}

PagePermissions::~PagePermissions()
{
    living().removeOne(this);
    PermissionRequests::forget(m_page);
    forgetNotifications();
}

/// Somebody else's answers, and what nobody can be asked for, come first.
void PagePermissions::take(const std::shared_ptr<PermissionRequest> &request)
{
    if (request->isSettled())
        return;
    const QUrl &asker = request->asker();
    const QList<Permission> &permissions = request->permissions();
    const AskingSite site = AskingSite::of(asker, m_page.committedUrl());
    // A desktop may keep the notifications that it was given.
    const bool isTold = permissions.contains(Permission::Notifications);
    if (PermissionRules::isBarred(asker, site, permissions) || (m_page.isPrivate() && isTold))
        return;
    const std::optional<bool> isAllowed = known(site, asker, permissions);
    // A yes alone is no answer where there is something to choose.
    if (isAllowed && !(*isAllowed && request->fields())) {
        if (*isAllowed)
            allow({asker, site, permissions, {}});
        settle(request, *isAllowed);
        return;
    }
    const QString kind = PermissionRules::kindOf(asker, permissions);
    const bool isNew = !m_waiting.contains(kind);
    if (isNew && m_waiting.size() >= mostWaiting) {
        qCWarning(lcEngine) << "too many questions of" << PrivateProfiles::siteForLog(m_page);
        return;
    }
    Waiting &waiting = m_waiting[kind];
    waiting.requests.push_back(request);
    request->setLost([self = QPointer(this), kind] {
        QMetaObject::invokeMethod(
            self, [self, kind] { self->lose(kind); }, Qt::QueuedConnection);
    });
    if (!isNew)
        return;
    waiting.asker = asker;
    waiting.site = site;
    waiting.permissions = permissions;
    ask(kind);
}

std::optional<bool> PagePermissions::known(const AskingSite &site, const QUrl &asker,
                                           const QList<Permission> &permissions) const
{
    bool areAllowed = true;
    for (const Permission permission : permissions) {
        const auto held = m_held.constFind(keyOf(asker, permission));
        std::optional<bool> isAllowed;
        if (held != m_held.cend())
            isAllowed = *held;
        else if (const auto word = SitePermissions::answer(site, permission);
                 word && m_page.counts(*word == Word::Allow))
            isAllowed = *word == Word::Allow;
        if (isAllowed == false)
            return false;
        areAllowed = areAllowed && isAllowed;
    }
    return areAllowed ? std::optional(true) : std::nullopt;
}

/// A window without a page of its own stands for the page that opened it.
QUrl PagePermissions::around() const
{
    const QUrl url = m_page.committedUrl();
    const bool isNone = url.isEmpty() || url.scheme() == "about"_L1;
    return isNone ? m_page.openerUrl().value_or(QUrl()) : url;
}

void PagePermissions::ask(const QString &kind)
{
    const Waiting &waiting = m_waiting[kind];
    PageQuestion question = permissionQuestion(waiting.permissions);
    question.kind = kind;
    question.asker = waiting.asker;
    question.around = around();
    question.fields = waiting.requests.front()->fields();
    question.remember = mayKeep(waiting.site) && !question.fields;
    question.done = [self = QPointer(this), kind](PageQuestion::Reply reply) {
        if (self)
            self->answer(kind, reply);
    };
    if (!m_page.questions() || !m_page.questions()->ask(question))
        m_waiting.remove(kind);
}

void PagePermissions::answer(const QString &kind, PageQuestion::Reply reply)
{
    const Waiting waiting = m_waiting.take(kind);
    if (waiting.requests.empty())
        return;
    const bool isAllowed = reply.answer == PageQuestion::Answer::Yes;
    if (reply.answer != PageQuestion::Answer::Ended)
        hold(waiting, isAllowed);
    if (reply.isRemembered && mayKeep(waiting.site))
        keep(waiting.site, waiting.permissions, isAllowed);
    if (isAllowed)
        allow(waiting);
    for (const auto &request : waiting.requests) {
        // A no goes to other pages of the site as well, and needs none where the page goes now. Of
        // what there is to choose from, nobody else waits, and it must not outlast the page.
        if (request->isShared() && reply.answer == PageQuestion::Answer::Ended)
            QMetaObject::invokeMethod(
                &m_page, [this, request] { settle(request, false); }, Qt::QueuedConnection);
        else
            settle(request, isAllowed);
    }
    if (reply.answer != PageQuestion::Answer::Ended)
        answerElsewhere(kind, waiting, isAllowed);
}

void PagePermissions::answerElsewhere(const QString &kind, const Waiting &waiting, bool isAllowed)
{
    if (!PermissionRules::isOneAnswer(waiting.site, waiting.permissions))
        return;
    const QList<PagePermissions *> all = living();
    for (PagePermissions *each : all) {
        if (each != this && each->m_page.profile() == m_page.profile())
            each->answerAlike(kind, waiting.site, isAllowed);
    }
}

/// The user has answered that question in another window.
void PagePermissions::answerAlike(const QString &kind, const AskingSite &site, bool isAllowed)
{
    const auto found = m_waiting.constFind(kind);
    if (found == m_waiting.cend() || found->site != site)
        return;
    const Waiting waiting = m_waiting.take(kind);
    hold(waiting, isAllowed);
    if (isAllowed)
        allow(waiting);
    for (const auto &request : waiting.requests)
        settle(request, isAllowed);
    if (m_page.questions())
        m_page.questions()->end(kind);
}

void PagePermissions::hold(const Waiting &waiting, bool isAllowed)
{
    for (const Permission permission : waiting.permissions)
        m_held.insert(keyOf(waiting.asker, permission), isAllowed);
}

/// The user need not be asked what nobody waits for.
void PagePermissions::lose(const QString &kind)
{
    const auto found = m_waiting.find(kind);
    if (found == m_waiting.end())
        return;
    auto &requests = found->requests;
    requests.erase(std::remove_if(requests.begin(), requests.end(),
                                  [](const auto &request) { return request->isSettled(); }),
                   requests.end());
    if (!requests.empty())
        return;
    m_waiting.erase(found);
    if (m_page.questions())
        m_page.questions()->end(kind);
}

void PagePermissions::settle(const std::shared_ptr<PermissionRequest> &request, bool isAllowed)
{
    request->settle(isAllowed);
    m_answered.insert(PermissionRules::kindOf(request->asker(), request->permissions()), request);
}

void PagePermissions::allow(const Waiting &waiting)
{
    const QList<Permission> before = inUse();
    for (const Permission permission : waiting.permissions)
        m_granted.append({waiting.asker, waiting.site, permission});
    if (inUse() != before)
        emit useChanged();
}

bool PagePermissions::mayKeep(const AskingSite &site) const
{
    return site.canBeKept() && m_page.leavesTrace() && engineProfileIsStored();
}

void PagePermissions::keep(const AskingSite &site, const QList<Permission> &permissions,
                           bool isAllowed, const QString &scheme)
{
    const WriteResult result =
        SitePermissions::keep(site, permissions, isAllowed ? Word::Allow : Word::Refuse, scheme);
    if (!result)
        NotSaved::tell(windowOf(m_page), SitePermissions::path(), result);
}

QList<Permission> PagePermissions::inUse() const
{
    QList<Permission> result;
    for (const Permission permission : allPermissions()) {
        const bool isGranted =
            std::any_of(m_granted.cbegin(), m_granted.cend(), [permission](const Grant &grant) {
                return grant.permission == permission;
            });
        if (isGranted && isCapture(permission))
            result.append(permission);
    }
    return result;
}

void PagePermissions::endUse()
{
    QList<SitePermissions::Answer> kept;
    for (const Grant &grant : std::as_const(m_granted)) {
        if (!isCapture(grant.permission))
            continue;
        m_withdrawn.insert(keyOf(grant.asker, grant.permission), false);
        if (m_page.leavesTrace())
            kept.append({grant.site, grant.permission, Word::Allow});
    }
    m_withdrawnSite = shownSite(m_page.committedUrl());
    if (const WriteResult result = SitePermissions::remove(kept); !result)
        NotSaved::tell(windowOf(m_page), SitePermissions::path(), result);
    stopScripts();
}

/// Nothing else takes from the scripts of a page what they hold, and waits neither for them nor for
/// a server. The page comes anew as soon as it is to be seen.
void PagePermissions::stopScripts()
{
    m_isEndingUse = true;
    if (m_page.mayAskAgain()) {
        const bool isVisible = m_page.isVisible();
        if (m_page.questions())
            m_page.questions()->endAll();
        m_page.setVisible(false);
        m_page.setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
        m_page.setVisible(isVisible);
        begin();
    } else {
        m_page.load(QUrl(u"about:blank"_s));
    }
}

/// Another page is shown, or none.
void PagePermissions::begin()
{
    const bool wasUsed = !inUse().isEmpty();
    forgetNotifications();
    const auto answered = std::exchange(m_answered, {});
    for (const auto &request : answered)
        request->withdraw();
    m_isEndingUse = false;
    m_waiting.clear();
    m_granted.clear();
    if (shownSite(m_page.committedUrl()) != m_withdrawnSite)
        m_withdrawn.clear();
    m_held = m_withdrawn;
    allowNotifications();
    if (wasUsed)
        emit useChanged();
}

/// Where the user had that remembered.
void PagePermissions::allowNotifications()
{
    const AskingSite site = AskingSite::of(m_page.committedUrl(), m_page.committedUrl());
    if (SitePermissions::answer(site, Permission::Notifications) != Word::Allow)
        return;
    const QUrl asker(site.asker + u'/');
    m_granted.append({asker, site, Permission::Notifications});
    PermissionRequests::allowNotifications(m_page, asker);
}

/// Where another page of the site may show them, they stay.
void PagePermissions::forgetNotifications()
{
    const QList<Grant> granted = std::exchange(m_granted, {});
    for (const Grant &grant : granted) {
        if (grant.permission == Permission::Notifications && !notifying(grant.asker))
            PermissionRequests::withdraw(m_page, grant.asker, grant.permission);
    }
}

WebPage *PagePermissions::notifying(const QUrl &origin)
{
    for (qsizetype at = living().size() - 1; at >= 0; --at) {
        PagePermissions *each = living().at(at);
        const QList<Grant> &granted = each->m_granted;
        const bool isOne = std::any_of(granted.cbegin(), granted.cend(), [&](const Grant &grant) {
            return grant.permission == Permission::Notifications && grant.asker == origin;
        });
        if (isOne)
            return &each->m_page;
    }
    return nullptr;
}
