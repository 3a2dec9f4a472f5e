#include "PageCompany.h"

#include "AskingSite.h"
#include "WebPage.h"

#include <QUrl>
#include <algorithm>

namespace {
/// Beyond that all count.
constexpr qsizetype mostSites = 200;

/// Empty for what is no page of the web, and so the page's own or this machine's.
QString siteOf(const QUrl &url)
{
    return AskingSite::of(url, url).asker;
}
}

PageCompany::PageCompany(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
}

/// A frame asks for nothing before the page around it has come: what is shown is that page.
void PageCompany::noteFrame(const QUrl &url)
{
    const QString own = siteOf(m_page.committedUrl());
    const QString frame = siteOf(url);
    if (frame.isEmpty() || frame == own)
        return;
    if (m_framing.size() >= mostSites)
        m_isAnyFraming = true;
    else
        m_framing.insert(own);
}

void PageCompany::noteWindow(WebPage &opened)
{
    m_opened.removeIf([](const QPointer<WebPage> &each) { return !each; });
    m_opened.append(&opened);
}

bool PageCompany::hasFrames() const
{
    return m_isAnyFraming || m_framing.contains(siteOf(m_page.committedUrl()));
}

bool PageCompany::hasWindows() const
{
    return std::any_of(m_opened.begin(), m_opened.end(),
                       [](const QPointer<WebPage> &each) { return bool(each); });
}

bool PageCompany::isAlone() const
{
    return !hasFrames() && !m_page.openerUrl() && !hasWindows();
}
