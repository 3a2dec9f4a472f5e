#include "GuidePage.h"

#include "PageScripts.h"

#include <QWebEnginePage>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

void GuidePage::letLinksLead(QWebEnginePage &page)
{
    page.runJavaScript(PageScripts::isolatedSource(u"guide-links.js"_s),
                       QWebEngineScript::ApplicationWorld);
}
