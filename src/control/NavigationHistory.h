#pragma once

#include <QSet>
#include <QString>

#include "WebBrowser.h"

class QWebEngineHistory;
class QWebEngineHistoryItem;
class QWebEnginePage;

/// Steps back and forward in a page's history, past the entries that were to leave no trace.
class NavigationHistory {
public:
    /// Marks the current entry as one to skip.
    void skipCurrent(QWebEnginePage *page);
    /// The places of those to skip, and to skip those at `places`.
    QList<int> skippedPlaces(QWebEnginePage *page) const;
    void skip(QWebEnginePage *page, const QList<int> &places);
    bool goBack(QWebEnginePage *page);
    bool goForward(QWebEnginePage *page);
    QList<HistoryStep> steps(QWebEnginePage *page) const;
    bool go(QWebEnginePage *page, int offset);

private:
    bool isSkipped(const QWebEngineHistoryItem &item) const;
    bool goTo(QWebEngineHistory *history, int from, int step);

    QSet<QString> m_skipped;
};
