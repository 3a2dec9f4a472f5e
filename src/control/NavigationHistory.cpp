#include "NavigationHistory.h"

#include <QDateTime>
#include <QWebEngineHistory>
#include <QWebEnginePage>

namespace {
/// The engine gives an entry no identity; when and what was visited is one.
QString keyOf(const QWebEngineHistoryItem &item)
{
    return QString::number(item.lastVisited().toMSecsSinceEpoch()) + u' '
        + item.url().toString(QUrl::FullyEncoded);
}
}

void NavigationHistory::skipCurrent(QWebEnginePage *page)
{
    m_skipped.insert(keyOf(page->history()->currentItem()));
}

QList<int> NavigationHistory::skippedPlaces(QWebEnginePage *page) const
{
    QList<int> places;
    for (int index = 0; index < page->history()->count(); ++index) {
        if (isSkipped(page->history()->itemAt(index)))
            places.append(index);
    }
    return places;
}

void NavigationHistory::skip(QWebEnginePage *page, const QList<int> &places)
{
    for (const int index : places) {
        if (index >= 0 && index < page->history()->count())
            m_skipped.insert(keyOf(page->history()->itemAt(index)));
    }
}

bool NavigationHistory::isSkipped(const QWebEngineHistoryItem &item) const
{
    return !m_skipped.isEmpty() && m_skipped.contains(keyOf(item));
}

bool NavigationHistory::goBack(QWebEnginePage *page)
{
    QWebEngineHistory *history = page->history();
    return goTo(history, history->currentItemIndex() - 1, -1);
}

bool NavigationHistory::goForward(QWebEnginePage *page)
{
    QWebEngineHistory *history = page->history();
    return goTo(history, history->currentItemIndex() + 1, 1);
}

bool NavigationHistory::goTo(QWebEngineHistory *history, int from, int step)
{
    for (int index = from; index >= 0 && index < history->count(); index += step) {
        const QWebEngineHistoryItem item = history->itemAt(index);
        if (isSkipped(item))
            continue;
        history->goToItem(item);
        return true;
    }
    return false;
}

QList<HistoryStep> NavigationHistory::steps(QWebEnginePage *page) const
{
    const QWebEngineHistory *history = page->history();
    const int current = history->currentItemIndex();
    QList<HistoryStep> result;
    for (int index = 0; index < history->count(); ++index) {
        const QWebEngineHistoryItem item = history->itemAt(index);
        if (index != current && !isSkipped(item))
            result.append({index - current, item.title(), item.url().toString(QUrl::FullyEncoded)});
    }
    return result;
}

bool NavigationHistory::go(QWebEnginePage *page, int offset)
{
    QWebEngineHistory *history = page->history();
    const int index = history->currentItemIndex() + offset;
    if (offset == 0 || index < 0 || index >= history->count())
        return false;
    history->goToItem(history->itemAt(index));
    return true;
}
