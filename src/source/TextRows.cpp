#include "TextRows.h"

#include <QChar>
#include <algorithm>

namespace {

/// Characters from which on all rows are found anew after an edit.
constexpr qsizetype muchText = 100'000;
/// How far back a better place to part a line is looked for.
constexpr qsizetype lookBack = 200;
/// How long a piece of a line is made at most, and how short typing may make it, the line's last
/// piece apart. A piece that typing made one longer than a row may be gives two fair ones, so that
/// all pieces behind can stay as they are.
constexpr qsizetype freshPiece = TextRows::longest * 4 / 5;
constexpr qsizetype shortestPiece = TextRows::longest - freshPiece;

bool joinsItsNeighbour(QChar before, QChar after)
{
    constexpr char16_t joiner = 0x200d;
    return after.isLowSurrogate() || after.isMark() || after.unicode() == joiner
        || before.unicode() == joiner;
}

/// A row from `from` on is too long: where the next one begins. After a tag or a blank when there
/// is one, never within a character.
qsizetype partingPlace(QStringView text, qsizetype from)
{
    const qsizetype furthest = from + freshPiece;
    const qsizetype nearest = furthest - lookBack;
    for (qsizetype at = furthest; at > nearest; --at) {
        const QChar before = text[at - 1];
        if ((before == u'>' || before == u' ') && !joinsItsNeighbour(before, text[at]))
            return at;
    }
    for (qsizetype at = furthest; at > nearest; --at) {
        if (!joinsItsNeighbour(text[at - 1], text[at]))
            return at;
    }
    return text[furthest].isLowSurrogate() ? furthest - 1 : furthest;
}

}

TextRows::TextRows()
{
    m_rows.push_back({0, 0});
}

/// The row that follows; one that begins at -1 when there is none.
TextRows::Row TextRows::after(QStringView text, Row row)
{
    const QStringView rest = text.sliced(row.start);
    const qsizetype lineEnd = rest.left(longest + 1).indexOf(u'\n');
    if (lineEnd >= 0)
        return {int(row.start + lineEnd + 1), row.line + 1};
    if (rest.size() <= longest)
        return {-1, 0};
    return {int(partingPlace(text, row.start)), row.line};
}

void TextRows::set(QStringView text)
{
    m_size = text.size();
    m_rows.clear();
    m_rows.reserve(size_t(text.count(u'\n') + text.size() / (freshPiece - lookBack) + 1));
    const char16_t *units = text.utf16();
    Row row{0, 0};
    for (qsizetype at = 0; at < m_size; ++at) {
        if (units[at] == u'\n') {
            m_rows.push_back(row);
            row = {int(at + 1), row.line + 1};
        } else if (at - row.start == longest) {
            m_rows.push_back(row);
            row.start = int(partingPlace(text, row.start));
        }
    }
    m_rows.push_back(row);
}

qsizetype TextRows::end(int row) const
{
    if (row + 1 == count())
        return m_size;
    return start(row + 1) - (continues(row + 1) ? 0 : 1);
}

int TextRows::rowAt(qsizetype at) const
{
    const auto next = std::upper_bound(m_rows.begin(), m_rows.end(), at,
                                       [](qsizetype a, const Row &row) { return a < row.start; });
    return int(next - m_rows.begin()) - 1;
}

int TextRows::firstRowOf(int line) const
{
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), line,
                                        [](const Row &row, int l) { return row.line < l; });
    return int(std::min(found, m_rows.end() - 1) - m_rows.begin());
}

/// Where the start of an old row is now; -1 when the edit took it.
qsizetype TextRows::shifted(size_t row, const Edit &edit) const
{
    const qsizetype start = m_rows[row].start;
    if (start >= edit.at + edit.removed && start > edit.at)
        return start + edit.inserted - edit.removed;
    return start <= edit.at ? start : -1;
}

/// The row after `row` in the edited text. Long lines stay parted where they were as far as that
/// is fair, so that an edit moves no more of them than it must. `old` is the first old row that may
/// be kept, and goes on to the one that is.
TextRows::Row TextRows::afterEdit(QStringView text, Row row, const Edit &edit, size_t &old) const
{
    Row next = after(text, row);
    const bool parted = next.start >= 0 && next.line == row.line;
    const qsizetype least = parted ? row.start + shortestPiece : next.start;
    while (old < m_rows.size() && shifted(old, edit) < least)
        ++old;
    if (!parted || old == m_rows.size() || !continues(int(old)))
        return next;
    const qsizetype at = shifted(old, edit);
    if (at <= row.start + longest && !joinsItsNeighbour(text[at - 1], text[at]))
        next.start = int(at);
    return next;
}

TextRows::Change TextRows::replaced(QStringView text, qsizetype at, qsizetype removed,
                                    qsizetype inserted)
{
    if (inserted > muchText) {
        const int before = count();
        set(text);
        return {0, before, count()};
    }
    const Edit edit{at, removed, inserted};
    int first = rowAt(at);
    // The line may have become short enough to be one row with the piece before.
    if (continues(first))
        --first;
    size_t kept = first + 1;
    std::vector<Row> fresh;
    Row row = afterEdit(text, m_rows[first], edit, kept);
    for (; row.start >= 0; row = afterEdit(text, row, edit, kept)) {
        // From a row on that begins as one did before, behind the edit, all rows are as they were.
        if (kept < m_rows.size() && m_rows[kept].start >= at + removed && m_rows[kept].start > at
            && shifted(kept, edit) == row.start)
            break;
        fresh.push_back(row);
    }
    if (row.start < 0)
        kept = m_rows.size();
    const Change change{first, int(kept) - first, int(fresh.size()) + 1};
    shift(kept, inserted - removed, kept < m_rows.size() ? row.line - m_rows[kept].line : 0);
    const size_t old = kept - first - 1;
    const size_t same = std::min(old, fresh.size());
    const auto place = m_rows.begin() + first + 1;
    std::copy_n(fresh.begin(), same, place);
    if (old > same)
        m_rows.erase(place + same, place + old);
    else
        m_rows.insert(place + same, fresh.begin() + same, fresh.end());
    m_size = text.size();
    return change;
}

void TextRows::shift(size_t from, qsizetype characters, int lines)
{
    if (characters == 0 && lines == 0)
        return;
    for (size_t i = from; i < m_rows.size(); ++i) {
        m_rows[i].start += int(characters);
        m_rows[i].line += lines;
    }
}
