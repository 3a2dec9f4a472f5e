#include "SparePage.h"

#include "EngineProfile.h"
#include "WebPage.h"

#include <QWebEngineScript>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
WebPage *theSparePage = nullptr;

void useProxy()
{
    SparePage::prepare();
    // The engine refuses this port by itself, after it has looked for the proxy.
    theSparePage->runJavaScript(
        u"fetch('http://127.0.0.1:9/', {mode: 'no-cors'}).catch(() => {})"_s,
        QWebEngineScript::ApplicationWorld);
}

void end()
{
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
    if (theSparePage)
        return;
    theSparePage = new WebPage(engineProfile());
    // Any script starts the renderer process; unlike a load it leaves no history entry.
    theSparePage->runJavaScript(u"0"_s);
}

WebPage *take()
{
    prepare();
    return std::exchange(theSparePage, nullptr);
}

}
