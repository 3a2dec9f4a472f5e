#pragma once

#include <QObject>
#include <QPointer>

class QWebEnginePage;
class WordFinder;

/// Finds text in a page; all hits are marked in it and along its scroll bar, by the engine or, as
/// far as whole words go, by `WordFinder`.
class TextFinder : public QObject {
    Q_OBJECT

public:
    struct Query {
        QString text;
        bool matchesCase = false;
        bool isWhole = false;

        bool operator==(const Query &) const = default;
    };

    TextFinder(QWebEnginePage *page, QObject *parent);

    /// What was looked for last, in whatever window that leaves a trace.
    static Query &last();

    /// The next hit of what was looked for before, or the first of anything else. `found` follows,
    /// but not for an empty text, which takes the marks away.
    void find(const Query &query, bool backwards);
    /// The page is another one by now.
    void findAnew(const Query &query);
    /// Takes the marks away; the hit stays selected in the page.
    void end();

signals:
    /// The current hit of how many, from 1; `isMore`: they are not all.
    void found(int active, int hits, bool isMore);

private:
    void remember(const Query &query) const;
    void findByEngine(bool backwards);

    QPointer<QWebEnginePage> m_page;
    WordFinder *m_words;
    Query m_query;
    /// The engine answers also searches that later ones have overtaken.
    int m_newest = 0;
};
