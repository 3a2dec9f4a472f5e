#include "DownloadPages.h"

#include "WebPage.h"

#include <QElapsedTimer>
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
    /// Since it did.
    QElapsedTimer gone;
};

/// The latest last.
QList<Asked> &asked()
{
    static QList<Asked> all;
    return all;
}

QUrl plain(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo);
}

/// A page that had to do with the site that made the address, or any where that is unknown.
bool hasOneJustGone(const QUrl &made)
{
    const QString site = QUrl(made.path()).authority();
    return std::any_of(asked().cbegin(), asked().cend(), [&site](const Asked &each) {
        return each.gone.isValid() && !each.gone.hasExpired(justNow)
            && (site.isEmpty() || each.url.authority() == site);
    });
}

/// No request leads to it.
bool isMadeByPage(const QUrl &url)
{
    return url.scheme() == "blob"_L1 || url.scheme() == "data"_L1;
}
}

namespace DownloadPages {

void note(WebPage &page, const QUrl &url)
{
    QList<Asked> &all = asked();
    if (all.size() >= mostNoted)
        all.removeFirst();
    all.append({plain(url), &page, {}});
}

void noteEnd(const WebPage &page)
{
    for (Asked &each : asked()) {
        if (each.page == &page)
            each.gone.start();
    }
}

WebPage *of(const QWebEngineDownloadRequest &request)
{
    if (isMadeByPage(request.url()))
        return hasOneJustGone(request.url()) ? nullptr : qobject_cast<WebPage *>(request.page());
    const QUrl url = plain(request.url());
    const QList<Asked> &all = asked();
    const auto last = std::find_if(all.crbegin(), all.crend(),
                                   [&url](const Asked &each) { return each.url == url; });
    return last == all.crend() ? nullptr : last->page.data();
}

}
