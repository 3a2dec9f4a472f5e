#pragma once

#include "ColouredBuffer.h"

#include <QBasicTimer>
#include <QPlainTextEdit>
#include <functional>
#include <memory>
#include <optional>

class DocumentFiller;

/// A box of plain lines in which each character has a colour of its own. Every character a text
/// may hold is kept as it is; only line ends are made CR LF.
///
/// Positions and lengths count a line break as two, CR and LF; a position between them is taken
/// as the one before. Colours are 0x00BBGGRR. Colouring never alters the text, and is nothing
/// that an undo takes back.
///
/// Long texts come into view in slices, while `Text` gives all of it at once. Until the last slice
/// the caret can be at the start or the end; whoever asks for anything else, or types, makes the
/// box finish first.
class RichTextBox : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit RichTextBox(QWidget *parent = nullptr);
    ~RichTextBox() override;

    QString Text() const;
    void setText(const QString &text);
    int TextLength() const;

    int SelStart() const;
    /// Puts the caret there, nothing selected.
    void setSelStart(int position);
    int SelLength() const;
    void setSelLength(int length);
    QString SelText() const;
    /// Replaces the selection; the caret is after what was put in.
    void setSelText(const QString &text);

    /// The colour of the selection's first character, or the one that typed text will have.
    int SelColor() const;
    void setSelColor(int colour);
    QString SelRTF() const;
    QString TextRTF() const;
    /// Takes rich text, or plain text where it is none. When only colours differ, the caret and
    /// what can be undone stay.
    void setTextRTF(const QString &document);
    /// All text in the colour of text that was given none.
    void clearColours();

    /// Text and colours with one line feed per line break, by position in it.
    const ColouredBuffer &buffer() const { return m_buffer; }
    char colourIndex(int colour) { return m_buffer.indexOf(colour); }
    void setColours(qsizetype from, QByteArrayView colours);
    /// The caret and the anchor as positions in the buffer.
    qsizetype caret() const;
    qsizetype selectionStart() const;
    /// Puts the caret at the end without scrolling there.
    void setCaretAtEnd();

    bool isFilling() const { return m_filler != nullptr; }
    void finishFilling();

    /// Called with each typed character before it is inserted; true when it was dealt with. The
    /// Tab key is a character, Enter, Backspace and the like are none.
    using KeyPress = std::function<bool(QChar)>;
    void setKeyPress(const KeyPress &handler) { m_keyPress = handler; }
    /// Inserts a character for the selection as one step that can be undone.
    void type(QChar character);
    /// Called instead of the box's own pasting.
    void setPaste(const std::function<void()> &handler) { m_paste = handler; }

    /// Room beside the text, in pixels.
    void setLeftMargin(int width) { setViewportMargins(width, 0, 0, 0); }
    using QPlainTextEdit::blockBoundingGeometry;
    using QPlainTextEdit::contentOffset;
    using QPlainTextEdit::firstVisibleBlock;

    static constexpr int smallestFont = 4;
    static constexpr int largestFont = 72;
    void zoom(int steps);

Q_SIGNALS:
    /// The text changed, by whomever.
    void changed();
    void mouseClicked(Qt::MouseButton button);
    /// The first of the files that were dropped.
    void fileDropped(const QString &file);
    /// Part of a long text came into view; `done` is the whole of it last.
    void fillProgress(qsizetype done, qsizetype whole);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    void setContents(const ColouredText &contents);
    void documentChanged(int from, int removed, int added);
    void insert(QTextCursor cursor, const QString &text);
    void fillSlice();
    void endFilling();
    bool pressCharacter(const QString &text);
    qsizetype toBuffer(int position) const;
    int toPosition(qsizetype at) const;
    void select(qsizetype anchor, qsizetype caret);

    ColouredBuffer m_buffer;
    std::unique_ptr<DocumentFiller> m_filler;
    QBasicTimer m_fillTimer;
    bool m_caretAtEnd = false;
    /// The colour of the next typed text; the neighbouring text's while not set.
    std::optional<int> m_typing;
    bool m_ownChange = false;
    KeyPress m_keyPress;
    std::function<void()> m_paste;
};
