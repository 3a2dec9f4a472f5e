#include "HistoryMenu.h"

#include <QMenu>
#include <algorithm>

#include "ShownAddress.h"
#include "ShownText.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int mostEntries = 20;
constexpr int captionLetters = 40;

QList<HistoryStep> stepsOf(const WebBrowser &browser, HistoryDirection direction)
{
    QList<HistoryStep> steps = browser.historySteps();
    steps.removeIf([direction](const HistoryStep &step) {
        return (step.offset < 0) != (direction == HistoryDirection::Back);
    });
    if (direction == HistoryDirection::Back)
        std::reverse(steps.begin(), steps.end());
    return steps.first(std::min<qsizetype>(steps.size(), mostEntries));
}

QString caption(const HistoryStep &step, const QMenu &menu)
{
    const QString text = step.title.trimmed().isEmpty() ? shownAddress(step.url)
                                                        : shownText(step.title).simplified();
    const QFontMetrics metrics = menu.fontMetrics();
    return metrics.elidedText(text, Qt::ElideMiddle, captionLetters * metrics.averageCharWidth())
        .replace(u'&', u"&&"_s);
}

}

QMenu *makeHistoryMenu(WebBrowser &browser, HistoryDirection direction, QWidget *owner)
{
    const QList<HistoryStep> steps = stepsOf(browser, direction);
    if (steps.isEmpty())
        return nullptr;
    auto *menu = new QMenu(owner);
    menu->setObjectName("mnuHistory"_L1);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    for (const HistoryStep &step : steps) {
        QAction *item = menu->addAction(caption(step, *menu));
        item->setToolTip(shownAddress(step.url));
        // The window may be closed by its page while the menu is open.
        QObject::connect(item, &QAction::triggered, &browser,
                         [&browser, offset = step.offset] { browser.goTo(offset); });
    }
    return menu;
}
