#pragma once

#include <QIcon>
#include <QString>

/// How a browser window shows itself on its caption and its tab.
namespace BrowserTabs {
/// `text` cut to a length that any caption can be painted with; a page's title has no limit.
QString displayed(const QString &text);
/// The picture of a page that has none of its own.
QIcon pageIcon();
}
