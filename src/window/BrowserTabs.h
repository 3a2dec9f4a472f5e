#pragma once

#include <QIcon>

/// How a browser window shows itself on its caption and its tab.
namespace BrowserTabs {
/// The picture of a page that has none of its own.
QIcon pageIcon();
}
