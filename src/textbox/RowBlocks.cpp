#include "RowBlocks.h"

#include <algorithm>
#include <iterator>

namespace {

/// A block that has become smaller than this takes in the next one.
constexpr size_t fewRows = 128;

int lengthOf(RowBlocks::Piece row)
{
    return row & RowBlocks::longest;
}

int breaksOf(RowBlocks::Piece row)
{
    return row >> 15;
}

}

void RowBlocks::clear()
{
    m_blocks.clear();
    m_count = 0;
}

RowBlocks::Block::Block(std::vector<Piece> pieces)
    : rows(std::move(pieces))
{
    for (const Piece piece : rows) {
        length += lengthOf(piece);
        breaks += breaksOf(piece);
    }
}

void RowBlocks::append(std::vector<Piece> rows)
{
    m_count += int(rows.size());
    m_blocks.emplace_back(std::move(rows));
    number(m_blocks.size() - 1);
}

/// Tells blocks where they begin: each where the one before it ends.
void RowBlocks::number(size_t from)
{
    for (size_t i = from; i < m_blocks.size(); ++i) {
        Block &block = m_blocks[i];
        if (i == 0) {
            block.start = block.line = block.row = 0;
        } else {
            const Block &before = m_blocks[i - 1];
            block.start = before.start + before.length;
            block.line = before.line + before.breaks;
            block.row = before.row + int(before.rows.size());
        }
    }
}

/// Blocks of about equal size, none too large.
std::vector<RowBlocks::Block> RowBlocks::parted(const std::vector<Piece> &rows)
{
    const size_t parts = (rows.size() + mostRows - 1) / mostRows;
    std::vector<Block> blocks;
    blocks.reserve(parts);
    for (size_t i = 0; i < parts; ++i)
        blocks.emplace_back(std::vector<Piece>(rows.begin() + rows.size() * i / parts,
                                               rows.begin() + rows.size() * (i + 1) / parts));
    return blocks;
}

void RowBlocks::replace(int first, int last, const std::vector<Piece> &rows)
{
    const size_t from = blockOf(first);
    const Block &head = m_blocks[from];
    std::vector<Piece> merged(head.rows.begin(), head.rows.begin() + (first - head.row));
    merged.insert(merged.end(), rows.begin(), rows.end());
    size_t to = m_blocks.size();
    if (last < m_count) {
        to = blockOf(last);
        const Block &tail = m_blocks[to];
        merged.insert(merged.end(), tail.rows.begin() + (last - tail.row), tail.rows.end());
        ++to;
    }
    // Deleting would leave ever more blocks of few rows.
    if (merged.size() < fewRows && to < m_blocks.size()) {
        merged.insert(merged.end(), m_blocks[to].rows.begin(), m_blocks[to].rows.end());
        ++to;
    }
    m_count += int(rows.size()) - (last - first);
    std::vector<Block> fresh = parted(merged);
    const size_t same = std::min(fresh.size(), to - from);
    const auto place = m_blocks.begin() + qsizetype(from);
    std::move(fresh.begin(), fresh.begin() + qsizetype(same), place);
    if (same < to - from)
        m_blocks.erase(place + qsizetype(same), m_blocks.begin() + qsizetype(to));
    else
        m_blocks.insert(place + qsizetype(same),
                        std::make_move_iterator(fresh.begin() + qsizetype(same)),
                        std::make_move_iterator(fresh.end()));
    number(from);
}

size_t RowBlocks::blockOf(int row) const
{
    const auto next = std::upper_bound(m_blocks.begin(), m_blocks.end(), row,
                                       [](int r, const Block &block) { return r < block.row; });
    return size_t(next - m_blocks.begin()) - 1;
}

RowBlocks::Row RowBlocks::at(int row) const
{
    const Block &block = m_blocks[blockOf(row)];
    const size_t index = size_t(row - block.row);
    Row result{block.start, block.line, lengthOf(block.rows[index]),
               breaksOf(block.rows[index]) != 0};
    for (size_t i = 0; i < index; ++i) {
        result.start += lengthOf(block.rows[i]);
        result.line += breaksOf(block.rows[i]);
    }
    return result;
}

int RowBlocks::rowAt(qsizetype position) const
{
    return firstFrom(position + 1) - 1;
}

int RowBlocks::firstFrom(qsizetype position) const
{
    const auto next = std::lower_bound(m_blocks.begin(), m_blocks.end(), position,
                                       [](const Block &b, qsizetype p) { return b.start < p; });
    if (next == m_blocks.begin())
        return 0;
    const Block &block = *std::prev(next);
    qsizetype start = block.start;
    size_t i = 0;
    for (; i < block.rows.size() && start < position; ++i)
        start += lengthOf(block.rows[i]);
    // A block's last row may be the one; what follows it begins in the next block.
    return block.row + int(i);
}

int RowBlocks::firstOfLine(int line) const
{
    const auto next = std::lower_bound(m_blocks.begin(), m_blocks.end(), line,
                                       [](const Block &b, int l) { return b.line < l; });
    if (next == m_blocks.begin())
        return 0;
    const Block &block = *std::prev(next);
    int reached = block.line;
    size_t i = 0;
    for (; i < block.rows.size() && reached < line; ++i)
        reached += breaksOf(block.rows[i]);
    return block.row + int(i);
}
