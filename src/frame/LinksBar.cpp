#include "LinksBar.h"

#include <QTimer>
#include <chrono>

#include "Frame.h"
#include "LinksFolder.h"
#include "ThemedIcon.h"
#include "ToolBar.h"
#include "Yield.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// Long enough for the first page to be on its way.
constexpr auto startDelay = 250ms;
}

LinksBar::LinksBar(Frame &frame, ToolBar &bar, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
    , m_bar(bar)
{
    connect(&m_bar, &ToolBar::buttonClicked, this, [this](const QString &, int index) {
        m_frame.NavigateActive(m_bar.toolTip(index));
        letPendingEventsRun();
    });
}

int LinksBar::rebuild(bool shown)
{
    m_bar.clear();
    if (!shown)
        return 0;
    const LinksFolder folder = readLinksFolder();
    const QIcon icon = themedIcon(u"link"_s);
    for (const FavoriteLink &link : folder.links) {
        m_bar.addButton({}, link.url, icon, ToolBar::Style::Push, link.caption);
        m_bar.addSeparator();
    }
    return folder.seen;
}

void LinksBar::fillIfEmpty()
{
    if (m_bar.buttonCount() == 0)
        rebuild(true);
}

void LinksBar::rebuildSoon(const std::function<bool()> &isShown)
{
    m_bar.clear();
    QTimer::singleShot(startDelay, this, [this, isShown] {
        if (isShown())
            fillIfEmpty();
    });
}
