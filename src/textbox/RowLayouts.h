#pragma once

#include "ColouredBuffer.h"
#include "TextRows.h"

#include <QFont>
#include <QTextLayout>
#include <memory>
#include <unordered_map>

/// The rows of a text laid out for the screen, made when they are asked for. A row is one or more
/// lines, each as high as the next whatever letters it has. Lengths are in pixels.
class RowLayouts {
public:
    /// The first of the characters that may join with one before them.
    static constexpr QChar firstCombining{0x0300};

    RowLayouts(const ColouredBuffer &buffer, const TextRows &rows);

    /// `width` is where lines are wrapped; 0 for nowhere.
    void setForm(const QFont &font, qreal width, qreal tabDistance);
    void changed(const TextRows::Change &change);
    void clear();
    /// Text that an input method composes at a position; it is shown and no part of the text.
    void setComposed(qsizetype at, const QString &text,
                     const QList<QTextLayout::FormatRange> &look);
    bool isComposing(int row) const;

    QTextLayout &at(int row);
    bool isMade(int row) const { return m_made.count(row) > 0; }
    /// Not laid out for it where lines are not wrapped.
    int lineCount(int row);
    int lineHeight() const { return m_lineHeight; }
    /// The widest line of those made so far.
    qreal widest() const { return m_widest; }

private:
    std::unique_ptr<QTextLayout> make(int row);

    const ColouredBuffer &m_buffer;
    const TextRows &m_rows;
    std::unordered_map<int, std::unique_ptr<QTextLayout>> m_made;
    QFont m_font;
    QFont m_unshaped;
    QTextOption m_option;
    qreal m_width = 0;
    int m_lineHeight = 1;
    qreal m_ascent = 0;
    qreal m_widest = 0;
    qsizetype m_composedAt = 0;
    QString m_composed;
    QList<QTextLayout::FormatRange> m_look;
};
