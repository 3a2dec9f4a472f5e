#include "SparePage.h"

#include "EngineProfile.h"
#include "Profiles.h"
#include "WebPage.h"

#include <QHash>
#include <QWebEngineScript>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
WebPage *theSparePage = nullptr;
/// Pages of private profiles that ask for something once. One of ours would hold its profile.
QHash<const QWebEngineProfile *, QWebEnginePage *> theAskers;

/// Any script starts the renderer process; unlike a load it leaves no history entry.
WebPage *begun(QWebEngineProfile *profile)
{
    auto *page = new WebPage(profile);
    page->runJavaScript(u"0"_s);
    return page;
}

QWebEnginePage *askerOf(QWebEngineProfile *profile)
{
    if (profile == engineProfile()) {
        SparePage::prepare();
        return theSparePage;
    }
    QWebEnginePage *&page = theAskers[profile];
    if (!page)
        page = new QWebEnginePage(profile);
    return page;
}

void useProxy(QWebEngineProfile *profile)
{
    // The engine refuses this port by itself, after it has looked for the proxy.
    askerOf(profile)->runJavaScript(
        u"fetch('http://127.0.0.1:9/', {mode: 'no-cors'}).catch(() => {})"_s,
        QWebEngineScript::ApplicationWorld);
}

void end(QWebEngineProfile *profile)
{
    delete theAskers.take(profile);
    if (theSparePage && theSparePage->profile() == profile)
        delete std::exchange(theSparePage, nullptr);
}
}

namespace SparePage {

void install()
{
    followProfile({nullptr, end, useProxy});
}

void prepare()
{
    if (!theSparePage)
        theSparePage = begun(engineProfile());
}

WebPage *take(QWebEngineProfile *profile)
{
    if (profile != engineProfile())
        return begun(profile);
    prepare();
    return std::exchange(theSparePage, nullptr);
}

}
