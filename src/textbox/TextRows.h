#pragma once

#include "RowBlocks.h"

#include <QStringView>

/// Where the rows of a text begin. A row is a line, or a piece of a line that is too long to be
/// laid out at once; where a line goes on in a further row there is nothing in the text. Positions
/// are those of a text with one line feed per line break. Rows and lines count from 0.
class TextRows {
public:
    /// Characters in a row at most.
    static constexpr qsizetype longest = 2000;

    /// What an edit did to the rows: `before` of them from `first` on became `after` others.
    struct Change {
        int first;
        int before;
        int after;
    };

    TextRows();
    void set(QStringView text);
    /// To be told after `removed` characters at `at` became `inserted` ones; `text` is the new one.
    Change replaced(QStringView text, qsizetype at, qsizetype removed, qsizetype inserted);

    int count() const { return m_rows.count(); }
    qsizetype start(int row) const { return m_rows.at(row).start; }
    /// Where the row's last character ends; the line break is not part of it.
    qsizetype end(int row) const;
    /// The row at which a position stands; where a line goes on, the later one.
    int rowAt(qsizetype at) const { return m_rows.rowAt(at); }
    /// Whether the row goes on with the line of the row before it.
    bool continues(int row) const { return row > 0 && !m_rows.at(row - 1).breaks; }

    int lineOf(int row) const { return m_rows.at(row).line; }
    int lineCount() const { return m_rows.at(count() - 1).line + 1; }
    int firstRowOf(int line) const { return qMin(m_rows.firstOfLine(line), count() - 1); }

private:
    struct Row {
        qsizetype start;
        int line;
    };
    struct Edit {
        qsizetype at;
        qsizetype removed;
        qsizetype inserted;
    };
    /// A row from before an edit that can stay as it was, and where it begins now.
    struct Kept {
        int row;
        qsizetype start;
        bool continues;
        bool isBehindEdit;
    };
    static Row after(QStringView text, Row row);
    Row afterEdit(QStringView text, Row row, const Edit &edit, Kept &kept) const;
    Kept firstKept(int from, qsizetype least, const Edit &edit) const;

    RowBlocks m_rows;
};
