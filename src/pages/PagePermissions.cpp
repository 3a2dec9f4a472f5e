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
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;
using PermissionRules::isCapture;
using PermissionRules::keyOf;
using SitePermissions::Word;

namespace {
/// Different questions that a page can have open; what comes then is refused.
constexpr qsizetype mostWaiting = 20;
/// Nothing was heard then.
const PageMoment never{-1, {}};

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
    connect(&page, &WebPage::arrived, this, [this] { begin(now()); });
    connect(&page, &QWebEnginePage::renderProcessTerminated, this, [this] { begin(never); });
    connect(&page, &WebPage::userActed, this, [this] { m_withdrawn.clear(); });
}

PagePermissions::~PagePermissions()
{
    living().removeOne(this);
    PermissionRequests::forget(m_page);
    forgetGrants(never);
}

PageMoment PagePermissions::now() const
{
    return {m_page.navigation(), m_page.committedUrl()};
}

/// Somebody else's answers, and what nobody can be asked for, come first.
void PagePermissions::take(const std::shared_ptr<PermissionRequest> &request)
{
    if (request->isSettled())
        return;
    request->setHeard(now());
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
            allow({asker, site, permissions, {request}});
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
            isAllowed = held->isAllowed;
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
    question.staysAt = waiting.heard().page;
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
        m_held.insert(keyOf(waiting.asker, permission), {isAllowed, waiting.heard()});
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
        m_granted.append({waiting.asker, waiting.site, permission, waiting.heard()});
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
        m_withdrawn.insert(keyOf(grant.asker, grant.permission), {});
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
        begin(never);
    } else {
        m_page.load(QUrl(u"about:blank"_s));
    }
}

/// Another page is shown, or none. What was heard at that moment is its own: its first scripts may
/// be heard before the engine tells of it.
void PagePermissions::begin(const PageMoment &moment)
{
    const bool wasUsed = !inUse().isEmpty();
    forgetGrants(moment);
    forgetAnswers(moment);
    forgetWaiting(moment);
    m_isEndingUse = false;
    allowNotifications();
    if (wasUsed)
        emit useChanged();
}

void PagePermissions::forgetWaiting(const PageMoment &moment)
{
    const auto before = std::exchange(m_waiting, {});
    for (auto each = before.cbegin(); each != before.cend(); ++each) {
        Waiting waiting = *each;
        auto &requests = waiting.requests;
        requests.erase(
            std::remove_if(requests.begin(), requests.end(),
                           [&](const auto &request) { return request->heard() != moment; }),
            requests.end());
        const bool isAsked = requests.size() == each->requests.size();
        if (!isAsked && m_page.questions())
            m_page.questions()->takeBack(each.key());
        if (requests.empty())
            continue;
        m_waiting.insert(each.key(), waiting);
        if (!isAsked)
            ask(each.key());
    }
}

void PagePermissions::forgetAnswers(const PageMoment &moment)
{
    m_answered.removeIf([&moment](const auto &each) {
        const bool isOver = each.value()->heard() != moment;
        if (isOver)
            each.value()->withdraw();
        return isOver;
    });
    if (shownSite(m_page.committedUrl()) != m_withdrawnSite)
        m_withdrawn.clear();
    m_held.removeIf([&moment](const auto &each) { return each->heard != moment; });
    m_held.insert(m_withdrawn);
}

/// Where the user had that remembered.
void PagePermissions::allowNotifications()
{
    const AskingSite site = AskingSite::of(m_page.committedUrl(), m_page.committedUrl());
    if (SitePermissions::answer(site, Permission::Notifications) != Word::Allow)
        return;
    const QUrl asker(site.asker + u'/');
    m_granted.append({asker, site, Permission::Notifications, now()});
    PermissionRequests::allowNotifications(m_page, asker);
}

/// Where another page of the site may show notifications, they stay.
void PagePermissions::forgetGrants(const PageMoment &moment)
{
    const QList<Grant> before = std::exchange(m_granted, {});
    std::copy_if(before.cbegin(), before.cend(), std::back_inserter(m_granted),
                 [&moment](const Grant &grant) { return grant.heard == moment; });
    for (const Grant &grant : before) {
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
