#pragma once

#include <QtGlobal>
#include <vector>

/// How long each of many consecutive rows is and whether a line break ends it, in blocks that know
/// where they begin: what an edit changes in front of a row costs next to nothing, and rows cost
/// two bytes each. Rows, lines and characters count from 0.
class RowBlocks {
public:
    struct Row {
        qsizetype start;
        int line;
        /// With the line break that ends the row.
        int length;
        bool breaks;
    };
    /// A row's length, and in the highest bit whether a line break ends it.
    using Piece = quint16;
    static constexpr int longest = 0x7fff;
    static Piece piece(qsizetype length, bool breaks)
    {
        return Piece(length | (breaks ? 0x8000 : 0));
    }

    void clear();
    /// Adds rows behind all others, at most as many as a block holds.
    void append(std::vector<Piece> rows);
    static constexpr size_t mostRows = 512;
    /// Puts `rows` in place of those from `first` up to `last`, that one not included.
    void replace(int first, int last, const std::vector<Piece> &rows);

    int count() const { return m_count; }
    Row at(int row) const;
    /// The last row that begins at a position or before it; there is one.
    int rowAt(qsizetype position) const;
    /// The first row that begins at a position or behind it; count() when there is none.
    int firstFrom(qsizetype position) const;
    /// The first row of a line or of the next one there is; count() when there is none.
    int firstOfLine(int line) const;

private:
    struct Block {
        explicit Block(std::vector<Piece> pieces);

        std::vector<Piece> rows;
        /// Of all its rows.
        qsizetype length = 0;
        int breaks = 0;
        /// Of its first row.
        qsizetype start = 0;
        int line = 0;
        int row = 0;
    };
    size_t blockOf(int row) const;
    void number(size_t from);
    static std::vector<Block> parted(const std::vector<Piece> &rows);

    std::vector<Block> m_blocks;
    int m_count = 0;
};
