#include "WebBrowserMaker.h"

#include "QtWebBrowser.h"

namespace {
WebBrowserMaker &currentMaker()
{
    static WebBrowserMaker maker = [](QWidget *host) -> WebBrowser * {
        return new QtWebBrowser(host);
    };
    return maker;
}
}

WebBrowser *makeWebBrowser(QWidget *host)
{
    return currentMaker()(host);
}

WebBrowserMaker setWebBrowserMaker(const WebBrowserMaker &maker)
{
    return std::exchange(currentMaker(), maker);
}
