#pragma once

#include "ColouredBuffer.h"
#include "RowLayouts.h"
#include "TextRows.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

/// Shows a text, each character in a colour of its own, with a caret and a selection that keys and
/// the mouse move. Only what is in view is ever laid out, so that the length of a text costs
/// nothing; a line too long for that goes on in further rows. Positions count a line break as one.
class TextView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit TextView(QWidget *parent = nullptr);

    /// The text has one line feed per line break.
    const ColouredBuffer &buffer() const { return m_buffer; }
    const TextRows &rows() const { return m_rows; }

    qsizetype caret() const { return m_caret; }
    qsizetype anchor() const { return m_anchor; }
    qsizetype selectionStart() const { return qMin(m_anchor, m_caret); }
    qsizetype selectionEnd() const { return qMax(m_anchor, m_caret); }
    bool hasSelection() const { return m_anchor != m_caret; }
    /// Positions outside of the text are taken as its ends.
    void select(qsizetype anchor, qsizetype caret);
    void ensureCaretVisible();
    /// Scrolls so that the caret is in the middle where it was not in view.
    void centreCaret();

    bool isWrapping() const { return m_wrapping; }
    void setWrapping(bool wrapping);
    static constexpr int smallestFont = 4;
    static constexpr int largestFont = 72;
    void zoom(int steps);

    /// Room beside the text, in pixels.
    void setLeftMargin(int width) { setViewportMargins(width, 0, 0, 0); }
    /// A row in view and where its top is, in pixels of the viewport.
    struct VisibleRow {
        int row;
        int top;
    };
    QList<VisibleRow> visibleRows() const;
    int lineHeight() const { return m_layouts.lineHeight(); }
    /// In the viewport's pixels.
    QRect caretArea(qsizetype at) const;
    qsizetype positionAt(QPoint point) const;

Q_SIGNALS:
    /// The caret or the selection is another.
    void selectionChanged();
    /// Other rows are in view, or the same ones at other places.
    void viewChanged();

protected:
    void setBuffer(const ColouredText &contents);
    /// Replaces text and shows it; the caret and the anchor stay where they are, as far as the text
    /// has such places.
    void replaceText(qsizetype at, qsizetype removed, const QString &inserted,
                     const QByteArray &colours);
    ColouredBuffer &colouring() { return m_buffer; }
    RowLayouts &layouts() { return m_layouts; }
    /// Moves the caret or selects when the key is one for that.
    bool moveByKey(const QKeyEvent *event);
    static bool isMoveKey(const QKeyEvent *event);
    /// Where a drop would go; -1 for no drop.
    void setDropPlace(qsizetype at);
    /// Starts the caret's blinking anew, so that it is seen where it went.
    void showCaret();

    /// A Tab is text; Shift+Tab leaves.
    bool focusNextPrevChild(bool next) override
    {
        return !next && QAbstractScrollArea::focusNextPrevChild(next);
    }
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

    /// The mouse drags the selection away.
    virtual void dragSelection() = 0;

private:
    /// A line of a row; the first one in view.
    struct Place {
        int row;
        int line;
        auto operator<=>(const Place &) const = default;
    };
    enum class Unit { Character, Word, Line };

    Place placeOf(qsizetype at) const;
    Place moved(Place place, int lines) const;
    Place lowestTop() const;
    int linesInView() const;
    void setTop(Place top);
    int scrollValue(Place place) const;
    void scrollBarMoved(int value);
    void scrollBarAction(int action);
    void adjustScrollBars();
    void form();
    void makeRoomSoon();
    qreal left() const;
    void paintRow(QPainter &painter, const VisibleRow &shown, const QRect &clip);

    qsizetype lineMove(int lines);
    qsizetype visualStart() const;
    qsizetype visualEnd() const;
    void selectUnit(qsizetype at);
    bool isInSelection(QPoint point) const;
    void scrollWhileSelecting();

    ColouredBuffer m_buffer;
    TextRows m_rows;
    /// What is laid out is a cache, filled also by who only looks.
    mutable RowLayouts m_layouts{m_buffer, m_rows};
    qsizetype m_anchor = 0;
    qsizetype m_caret = 0;
    Place m_top{0, 0};
    bool m_wrapping = true;
    /// Where moves from line to line would like to be; below 0 where the caret is.
    qreal m_wantedX = -1;

    /// Room for edits of a long text is made once the text is in view.
    QBasicTimer m_makingRoom;
    QBasicTimer m_blink;
    bool m_caretShown = true;
    qsizetype m_dropPlace = -1;
    int m_wheelRest = 0;
    /// The width that the horizontal bar lets the user reach.
    qreal m_reachable = 0;

    bool m_selecting = false;
    bool m_mayDrag = false;
    Unit m_unit = Unit::Character;
    /// What was first selected by a double or triple click.
    qsizetype m_unitStart = 0;
    qsizetype m_unitEnd = 0;
    QPoint m_pressed;
    QBasicTimer m_tripleClick;
    QBasicTimer m_scrolling;
};
