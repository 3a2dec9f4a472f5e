#include "DownloadPages.h"

#include "PrivateProfiles.h"

#include <QElapsedTimer>
#include <QSet>
#include <QWebEngineDownloadRequest>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype mostNoted = 1000;
/// What a page makes itself is told of at once; its page is there when no page has just gone.
/// Milliseconds.
constexpr int justNow = 10'000;

struct Asked {
    QUrl url;
    QPointer<WebPage> page;
    PageOrigin origin;
    DownloadAsker asker;
    bool isAnswerToForm = false;
    int privateSession = 0;
};

struct Gone {
    /// It may be any where none is named.
    std::optional<QString> site;
    QElapsedTimer since;
};

/// The latest last.
QList<Asked> &asked()
{
    static QList<Asked> all;
    return all;
}

QList<Gone> &gone()
{
    static QList<Gone> all;
    return all;
}

QUrl plain(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo);
}

/// A page that had to do with the site that made the address, or any where that is unknown.
bool hasOneJustGone(const QUrl &made)
{
    const QString site = plain(QUrl(made.path())).authority();
    return std::any_of(gone().cbegin(), gone().cend(), [&site](const Gone &each) {
        return !each.since.hasExpired(justNow)
            && (site.isEmpty() || !each.site || *each.site == site);
    });
}

/// No request leads to it.
bool isMadeByPage(const QUrl &url)
{
    return url.scheme() == "blob"_L1 || url.scheme() == "data"_L1;
}

/// The last that asked for it; of several the one that the engine names, which it can be asked for
/// safely while all of them are there.
const Asked *askerOf(const QWebEngineDownloadRequest &request, int privateSession)
{
    const QUrl url = plain(request.url());
    QList<const Asked *> all;
    for (qsizetype at = asked().size() - 1; at >= 0; --at) {
        if (asked().at(at).url == url && asked().at(at).privateSession == privateSession)
            all.append(&asked().at(at));
    }
    if (all.isEmpty())
        return nullptr;
    const auto isFirst = [&all](const Asked *each) { return each->page == all.first()->page; };
    const auto isThere = [](const Asked *each) { return !each->page.isNull(); };
    if (std::all_of(all.cbegin(), all.cend(), isFirst)
        || !std::all_of(all.cbegin(), all.cend(), isThere))
        return all.first();
    const QWebEnginePage *told = request.page();
    const auto named = std::find_if(all.cbegin(), all.cend(),
                                    [told](const Asked *each) { return each->page == told; });
    return named == all.cend() ? all.first() : *named;
}

DownloadSource sourceAt(WebPage *page, const QUrl &url, const DownloadAsker &asker)
{
    return page ? DownloadSource{page, page->origin(), asker, page->isAnswerToForm(url)}
                : DownloadSource();
}

/// The site that made it stands in its address, where it has one; what "data:" is of nobody says.
DownloadAsker makerOf(const QUrl &made)
{
    const QUrl maker(made.path());
    return {maker, made.scheme() == "blob"_L1 && maker.scheme().isEmpty()};
}
}

namespace DownloadPages {

void note(WebPage &page, const QUrl &url, const DownloadAsker &asker)
{
    if (isMadeByPage(url))
        return;
    QList<Asked> &all = asked();
    if (all.size() >= mostNoted)
        all.removeFirst();
    all.append({plain(url), &page, page.origin(), asker, page.isAnswerToForm(url),
                PrivateProfiles::numberOf(page.profile())});
}

/// A window that asked for nothing may have been filled by the page that opened it.
void noteEnd(const WebPage &page)
{
    QList<Gone> &all = gone();
    all.removeIf([](const Gone &each) { return each.since.hasExpired(justNow); });
    const auto add = [&all](const std::optional<QString> &site) {
        all.append({site, {}});
        all.last().since.start();
    };
    QSet<QString> sites;
    for (const Asked &each : std::as_const(asked())) {
        if (each.page == &page)
            sites.insert(each.url.authority());
    }
    for (const QString &site : std::as_const(sites))
        add(site);
    if (const std::optional<QUrl> &opener = page.openerUrl()) {
        const QString site = plain(*opener).authority();
        add(site.isEmpty() ? std::nullopt : std::optional(site));
    }
}

DownloadSource sourceOf(const QWebEngineDownloadRequest &request, int privateSession)
{
    const QUrl url = request.url();
    if (isMadeByPage(url)) {
        if (hasOneJustGone(url))
            return {nullptr, {}, makerOf(url)};
        return sourceAt(qobject_cast<WebPage *>(request.page()), url, makerOf(url));
    }
    const Asked *asker = askerOf(request, privateSession);
    if (!asker)
        return {};
    if (asker->page)
        return sourceAt(asker->page.data(), url, asker->asker);
    return {nullptr, asker->origin, asker->asker, asker->isAnswerToForm};
}

}
