#pragma once

#include "VisitLine.h"

#include <QHash>
#include <QList>
#include <array>
#include <vector>

/// All visits in memory, made to be searched at each key: with 200,000 pages, within milliseconds.
class VisitIndex {
public:
    /// A page once, however often it was visited.
    struct Page {
        QByteArray address;
        /// The one it came with last.
        QByteArray title;
        /// Of the last visit, in seconds as in `Visit`.
        qint64 last = 0;
        /// How often and how lately it was visited.
        int score = 0;
    };
    /// One visit of the page with that number.
    struct Stay {
        qint64 time = 0;
        int page = 0;
    };

    /// How much a visit counts by its age: 100 within 4 days, 70 within 14, 50 within 31, 30
    /// within 90, else 10. `now` in seconds as in `Visit`.
    explicit VisitIndex(qint64 now);

    /// Adds a visit. Of many before the first search, all but the last need not be in order.
    void add(const VisitLine::Parts &visit);
    /// Orders what was added; from then on `add` keeps the order by itself.
    void rank();
    /// Nothing where there is no such page.
    void setTitle(const QByteArray &address, const QByteArray &title);

    const Page &page(int number) const { return m_pages[size_t(number)]; }
    int pageCount() const { return int(m_pages.size()); }
    /// In the order of the file.
    const std::vector<Stay> &stays() const { return m_stays; }

    /// The pages that have each word of `typed` in title or address, whatever the case, those
    /// visited often and lately first; at most so many. None for no words.
    QList<int> best(const QString &typed, int most) const;
    /// For each page, whether it has each word of `typed`; all do for no words.
    std::vector<bool> matches(const QString &typed) const;

private:
    /// Which pairs of bytes a text has, each as one of so many bits: what lacks one of a word's has
    /// not the word.
    using Marks = std::array<quint64, 4>;
    struct Word {
        QByteArray text;
        Marks marks;
    };
    struct Key {
        Marks marks = {};
        /// What is searched: title and address in lower case.
        QByteArray text;
    };

    static Marks marksOf(QByteArrayView text);
    static QList<Word> wordsOf(const QString &typed);
    static bool has(const Key &key, const QList<Word> &words);
    void makeKey(int number);
    int weight(qint64 time) const;
    bool isBefore(int one, int other) const;
    std::vector<int>::iterator placeOf(int number);
    int addPage(QByteArrayView address);

    qint64 m_now;
    std::vector<Page> m_pages;
    std::vector<Key> m_keys;
    std::vector<Stay> m_stays;
    QHash<QByteArray, int> m_numbers;
    /// The pages by their rank.
    std::vector<int> m_order;
    bool m_isRanked = false;
};
