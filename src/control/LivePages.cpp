#include "LivePages.h"

#include "QtWebBrowser.h"

#include <QList>

namespace {
QList<QtWebBrowser *> live;
}

namespace LivePages {

void add(QtWebBrowser *browser)
{
    if (!live.contains(browser))
        live.append(browser);
}

void remove(QtWebBrowser *browser)
{
    live.removeOne(browser);
}

void deleteAll()
{
    const QList<QtWebBrowser *> all = live;
    for (QtWebBrowser *browser : all)
        browser->dropPage();
}

}
