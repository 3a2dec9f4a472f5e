#include "VisitIndex.h"

#include "ShownAddress.h"

#include <QRegularExpression>
#include <algorithm>
#include <numeric>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 day = 24 * 60 * 60;
/// A page that is visited all day long stays comparable.
constexpr int highestScore = 1'000'000;
/// What more of a text was typed than any title or address has says nothing.
constexpr qsizetype longestTyped = 500;

std::string_view plain(const QByteArray &text)
{
    return {text.constData(), size_t(text.size())};
}

QByteArray folded(const QByteArray &utf8)
{
    const bool isAscii =
        std::all_of(utf8.cbegin(), utf8.cend(), [](char c) { return uchar(c) < 0x80; });
    return isAscii ? utf8.toLower() : QString::fromUtf8(utf8).toCaseFolded().toUtf8();
}

/// Also as it is shown, where that differs: users type what they read.
QByteArray searched(const QByteArray &address)
{
    if (!address.contains('%') && !address.contains("xn--"))
        return address;
    return address + '\n' + shownAddress(QString::fromLatin1(address)).toUtf8();
}

void setBit(std::array<quint64, 4> &marks, unsigned bit)
{
    marks[(bit >> 6) & 3] |= quint64(1) << (bit & 63);
}
}

VisitIndex::VisitIndex(qint64 now)
    : m_now(now)
{
}

VisitIndex::Marks VisitIndex::marksOf(QByteArrayView text)
{
    Marks marks = {};
    unsigned before = 0;
    for (const char c : text) {
        const unsigned now = uchar(c);
        setBit(marks, now * 0x9E3779B1U >> 24);
        if (before)
            setBit(marks, (before << 8 | now) * 0x9E3779B1U >> 24);
        before = now;
    }
    return marks;
}

QList<VisitIndex::Word> VisitIndex::wordsOf(const QString &typed)
{
    static const QRegularExpression scheme(u"^\\s*(https?|file)://"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    QString text = typed.left(longestTyped);
    text.remove(scheme);
    QList<Word> words;
    const QStringList parts = text.simplified().split(u' ', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QByteArray word = folded(part.toUtf8());
        words.append({word, marksOf(word)});
    }
    return words;
}

bool VisitIndex::has(const Key &key, const QList<Word> &words)
{
    for (const Word &word : words) {
        for (size_t i = 0; i < word.marks.size(); ++i) {
            if ((key.marks[i] & word.marks[i]) != word.marks[i])
                return false;
        }
    }
    return std::all_of(words.cbegin(), words.cend(), [&key](const Word &word) {
        return plain(key.text).find(plain(word.text)) != std::string_view::npos;
    });
}

void VisitIndex::makeKey(int number)
{
    const Page &page = m_pages[size_t(number)];
    Key &key = m_keys[size_t(number)];
    key.text = folded(page.title + '\n' + searched(page.address));
    key.marks = marksOf(key.text);
}

int VisitIndex::weight(qint64 time) const
{
    static constexpr std::pair<int, int> byAge[] = {{4, 100}, {14, 70}, {31, 50}, {90, 30}};
    for (const auto &[days, weight] : byAge) {
        if (m_now - time <= days * day)
            return weight;
    }
    return 10;
}

bool VisitIndex::isBefore(int one, int other) const
{
    const Page &a = page(one);
    const Page &b = page(other);
    if (a.score != b.score)
        return a.score > b.score;
    return a.last != b.last ? a.last > b.last : one < other;
}

/// Where it is in the order, or belongs.
std::vector<int>::iterator VisitIndex::placeOf(int number)
{
    return std::lower_bound(m_order.begin(), m_order.end(), number,
                            [this](int one, int other) { return isBefore(one, other); });
}

int VisitIndex::addPage(QByteArrayView address)
{
    const int number = pageCount();
    m_pages.push_back({address.toByteArray(), {}, std::numeric_limits<qint64>::min(), 0});
    m_keys.emplace_back();
    m_numbers.insert(m_pages.back().address, number);
    return number;
}

void VisitIndex::add(const VisitLine::Parts &visit)
{
    const QByteArray address = QByteArray::fromRawData(visit.address.data(), visit.address.size());
    const auto known = m_numbers.constFind(address);
    const bool isNew = known == m_numbers.constEnd();
    const int number = isNew ? addPage(visit.address) : *known;
    if (!isNew && m_isRanked)
        m_order.erase(placeOf(number));
    Page &page = m_pages[size_t(number)];
    page.last = std::max(page.last, visit.time);
    page.score = std::min(page.score + weight(visit.time), highestScore);
    if (!visit.title.isEmpty() && page.title != visit.title)
        page.title = visit.title.toByteArray();
    m_stays.push_back({visit.time, number});
    if (!m_isRanked)
        return;
    makeKey(number);
    m_order.insert(placeOf(number), number);
}

void VisitIndex::rank()
{
    for (int number = 0; number < pageCount(); ++number)
        makeKey(number);
    m_order.resize(m_pages.size());
    std::iota(m_order.begin(), m_order.end(), 0);
    std::sort(m_order.begin(), m_order.end(),
              [this](int one, int other) { return isBefore(one, other); });
    m_isRanked = true;
}

void VisitIndex::setTitle(const QByteArray &address, const QByteArray &title)
{
    const auto known = m_numbers.constFind(address);
    if (known == m_numbers.constEnd() || page(*known).title == title)
        return;
    m_pages[size_t(*known)].title = title;
    makeKey(*known);
}

QList<int> VisitIndex::best(const QString &typed, int most) const
{
    QList<int> found;
    const QList<Word> words = wordsOf(typed);
    if (words.isEmpty())
        return found;
    for (const int number : m_order) {
        if (found.size() == most)
            break;
        if (has(m_keys[size_t(number)], words))
            found.append(number);
    }
    return found;
}

std::vector<bool> VisitIndex::matches(const QString &typed) const
{
    const QList<Word> words = wordsOf(typed);
    std::vector<bool> found(m_pages.size(), true);
    for (size_t number = 0; number < m_pages.size() && !words.isEmpty(); ++number)
        found[number] = has(m_keys[number], words);
    return found;
}
