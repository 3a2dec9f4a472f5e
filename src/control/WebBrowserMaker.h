#pragma once

#include <functional>

class QWidget;
class WebBrowser;

/// Makes the engine control of a window, parented to `host`. Tests put another maker in.
using WebBrowserMaker = std::function<WebBrowser *(QWidget *host)>;
WebBrowser *makeWebBrowser(QWidget *host);
/// Returns the maker that was in force.
WebBrowserMaker setWebBrowserMaker(const WebBrowserMaker &maker);
