#pragma once

#include <QStringView>
#include <vector>

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

    int count() const { return int(m_rows.size()); }
    qsizetype start(int row) const { return m_rows[row].start; }
    /// Where the row's last character ends; the line break is not part of it.
    qsizetype end(int row) const;
    /// The row at which a position stands; where a line goes on, the later one.
    int rowAt(qsizetype at) const;
    /// Whether the row goes on with the line of the row before it.
    bool continues(int row) const { return row > 0 && m_rows[row].line == m_rows[row - 1].line; }

    int lineOf(int row) const { return m_rows[row].line; }
    int lineCount() const { return m_rows.back().line + 1; }
    int firstRowOf(int line) const;

private:
    struct Row {
        int start;
        int line;
    };
    struct Edit {
        qsizetype at;
        qsizetype removed;
        qsizetype inserted;
    };
    static Row after(QStringView text, Row row);
    Row afterEdit(QStringView text, Row row, const Edit &edit, size_t &old) const;
    qsizetype shifted(size_t row, const Edit &edit) const;
    void shift(size_t from, qsizetype characters, int lines);

    std::vector<Row> m_rows;
    qsizetype m_size = 0;
};
