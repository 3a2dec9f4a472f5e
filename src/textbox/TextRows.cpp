#include "TextRows.h"

#include <QChar>

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
    m_rows.append({RowBlocks::piece(0, false)});
}

/// The row that follows; one that begins at -1 when there is none.
TextRows::Row TextRows::after(QStringView text, Row row)
{
    const QStringView rest = text.sliced(row.start);
    const qsizetype lineEnd = rest.left(longest + 1).indexOf(u'\n');
    if (lineEnd >= 0)
        return {row.start + lineEnd + 1, row.line + 1};
    if (rest.size() <= longest)
        return {-1, 0};
    return {partingPlace(text, row.start), row.line};
}

void TextRows::set(QStringView text)
{
    static_assert(longest < RowBlocks::longest);
    m_rows.clear();
    const char16_t *units = text.utf16();
    const qsizetype size = text.size();
    std::vector<RowBlocks::Piece> rows(RowBlocks::mostRows);
    size_t used = 0;
    qsizetype start = 0;
    for (qsizetype at = 0; at < size; ++at) {
        const bool breaks = units[at] == u'\n';
        if (!breaks && at - start < longest)
            continue;
        const qsizetype next = breaks ? at + 1 : partingPlace(text, start);
        rows[used++] = RowBlocks::piece(next - start, breaks);
        start = next;
        if (used == rows.size()) {
            m_rows.append(rows);
            used = 0;
        }
    }
    rows.resize(used);
    rows.push_back(RowBlocks::piece(size - start, false));
    m_rows.append(std::move(rows));
}

qsizetype TextRows::end(int row) const
{
    const RowBlocks::Row found = m_rows.at(row);
    return found.start + found.length - (found.breaks ? 1 : 0);
}

/// The first old row, from `from` on, that the edit did not take and that begins at `least` or
/// behind it now; row count() when there is none.
TextRows::Kept TextRows::firstKept(int from, qsizetype least, const Edit &edit) const
{
    const qsizetype behind = qMax(edit.at + edit.removed, edit.at + 1);
    const qsizetype shift = edit.inserted - edit.removed;
    int row = qMax(from, m_rows.firstFrom(least));
    if (row < count() && start(row) > edit.at)
        row = qMax(from, m_rows.firstFrom(qMax(behind, least - shift)));
    if (row == count())
        return {row, -1, false, true};
    const bool isBehindEdit = start(row) >= behind;
    return {row, start(row) + (isBehindEdit ? shift : 0), continues(row), isBehindEdit};
}

/// The row after `row` in the edited text. Long lines stay parted where they were as far as that
/// is fair, so that an edit moves no more of them than it must. `kept` is the first old row that
/// may be kept, and goes on to the one that is.
TextRows::Row TextRows::afterEdit(QStringView text, Row row, const Edit &edit, Kept &kept) const
{
    Row next = after(text, row);
    const bool parted = next.start >= 0 && next.line == row.line;
    const qsizetype least = parted ? row.start + shortestPiece : next.start;
    if (kept.row < count() && kept.start < least)
        kept = firstKept(kept.row, least, edit);
    if (!parted || kept.row == count() || !kept.continues)
        return next;
    if (kept.start <= row.start + longest
        && !joinsItsNeighbour(text[kept.start - 1], text[kept.start]))
        next.start = kept.start;
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
    Kept kept = firstKept(first + 1, 0, edit);
    std::vector<RowBlocks::Piece> fresh;
    Row row{start(first), lineOf(first)};
    int last = -1;
    while (last < 0) {
        const Row next = afterEdit(text, row, edit, kept);
        const qsizetype end = next.start < 0 ? text.size() : next.start;
        fresh.push_back(RowBlocks::piece(end - row.start, next.line > row.line));
        // From a row on that begins as one did before, behind the edit, all rows are as they were.
        if (next.start < 0)
            last = count();
        else if (kept.row < count() && kept.isBehindEdit && kept.start == next.start)
            last = kept.row;
        row = next;
    }
    const Change change{first, last - first, int(fresh.size())};
    m_rows.replace(first, last, fresh);
    return change;
}
