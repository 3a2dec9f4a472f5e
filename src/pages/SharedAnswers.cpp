#include "SharedAnswers.h"

#include "EngineVersion.h"
#include "PermissionRequest.h"

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <algorithm>
#include <utility>

namespace {
struct Pending {
    int number = 0;
    QPointer<QWebEnginePage> page;
    QPointer<QWebEngineProfile> profile;
    QUrl origin;
    QList<Permission> permissions;
    std::weak_ptr<PermissionRequest> request;
    SharedAnswers::Give give;
    bool isAllowed = false;
};

QList<Pending> &pending()
{
    static QList<Pending> all;
    return all;
}

bool areTogether(const Pending &one, const Pending &other)
{
    return one.profile == other.profile && one.origin == other.origin
        && (answersAreForAllKinds || one.permissions == other.permissions);
}

/// All that the engine answers with that one.
QList<Pending> takeWith(const Pending &one)
{
    QList<Pending> taken;
    for (qsizetype at = pending().size() - 1; at >= 0; --at) {
        if (areTogether(pending().at(at), one))
            taken.prepend(pending().takeAt(at));
    }
    return taken;
}

void giveWhenAllAreAllowed(const Pending &one)
{
    const bool isComplete =
        std::all_of(pending().cbegin(), pending().cend(), [&one](const Pending &each) {
            return each.isAllowed || !areTogether(each, one);
        });
    if (!isComplete)
        return;
    const QList<Pending> all = takeWith(one);
    for (const Pending &each : all)
        each.give(true);
}

/// What else was allowed stands for what the page asks next, when nothing waits any more.
void refuseAll(const Pending &one)
{
    const QList<Pending> all = takeWith(one);
    for (const Pending &each : all) {
        each.give(false);
        const auto request = each.request.lock();
        if (!request || each.number == one.number || each.isAllowed)
            continue;
        if (each.permissions != one.permissions)
            request->withdraw();
        request->lose();
    }
    for (const Pending &each : all) {
        if (each.isAllowed)
            each.give(true);
    }
}
}

namespace SharedAnswers {
int nextNumber()
{
    static int last = 0;
    return ++last;
}

void add(int number, QWebEnginePage &page, const std::shared_ptr<PermissionRequest> &request,
         const Give &give)
{
    request->setShared();
    pending().append({number, &page, page.profile(), request->asker(), request->permissions(),
                      request, give, false});
}

void answer(int number, bool isAllowed)
{
    const auto found =
        std::find_if(pending().begin(), pending().end(),
                     [number](const Pending &each) { return each.number == number; });
    if (found == pending().end())
        return;
    found->isAllowed = isAllowed;
    const Pending one = *found;
    if (isAllowed)
        giveWhenAllAreAllowed(one);
    else
        refuseAll(one);
}

void forget(QWebEnginePage &page)
{
    QList<Pending> gone;
    for (qsizetype at = pending().size() - 1; at >= 0; --at) {
        if (pending().at(at).page == &page)
            gone.append(pending().takeAt(at));
    }
    for (const Pending &each : std::as_const(gone))
        giveWhenAllAreAllowed(each);
}
}
