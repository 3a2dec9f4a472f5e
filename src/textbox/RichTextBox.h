#pragma once

#include "EditHistory.h"
#include "TextView.h"

#include <functional>
#include <optional>

class QMimeData;

/// A box of plain lines in which each character has a colour of its own. Every character a text
/// may hold is kept as it is; only line ends are made CR LF.
///
/// Where nothing else is said, positions and lengths count a line break as two, CR and LF; a
/// position between them is taken as the one before. Colours are 0x00BBGGRR. Colouring never
/// alters the text, and is nothing that an undo takes back.
class RichTextBox : public TextView {
    Q_OBJECT

public:
    explicit RichTextBox(QWidget *parent = nullptr);

    QString text() const;
    void setText(const QString &text);
    int textLength() const;

    int selStart() const;
    /// Puts the caret there, nothing selected.
    void setSelStart(int position);
    int selLength() const;
    void setSelLength(int length);
    /// Selects without scrolling there.
    void selectUnseen(int start, int length);
    QString selText() const;
    /// The same as other programs take it: a line break is one line feed.
    QString plainSelection() const;
    /// Replaces the selection; the caret is after what was put in.
    void setSelText(const QString &text);

    /// The colour of the selection's first character, or the one that typed text will have.
    int selColor() const;
    void setSelColor(int colour);
    QString selRtf() const;
    QString textRtf() const;
    /// Takes rich text, or plain text where it is none. When only colours differ, the caret and
    /// what can be undone stay.
    void setTextRtf(const QString &document);
    /// All text in the colour of text that was given none.
    void clearColours();

    char colourIndex(int colour) { return colouring().indexOf(colour); }
    /// Colours, as indexes, by position in the buffer.
    void setColours(qsizetype from, QByteArrayView colours);
    /// Replaces `length` characters of the buffer, as a step that can be undone.
    void replace(qsizetype at, qsizetype length, const QString &text);

    bool canUndo() const { return m_history.canUndo(); }
    bool canRedo() const { return m_history.canRedo(); }
    void undo();
    void redo();

    /// Called with each typed character before it is inserted; true when it was dealt with. The
    /// Tab key is a character, Enter, Backspace and the like are none.
    using KeyPress = std::function<bool(QChar)>;
    void setKeyPress(const KeyPress &handler) { m_keyPress = handler; }
    /// Inserts text for the selection as typed text is: what is typed in one go is one step that
    /// can be undone.
    void type(const QString &text);
    /// Called instead of the box's own pasting.
    void setPaste(const std::function<void()> &handler) { m_paste = handler; }

Q_SIGNALS:
    /// The text changed, by whomever.
    void changed();
    void mouseClicked(Qt::MouseButton button);
    /// The first of the files that were dropped.
    void fileDropped(const QString &file);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void dragSelection() override;

private:
    void setContents(const ColouredText &contents);
    EditHistory::Edit put(qsizetype at, qsizetype length, const QString &text,
                          const QByteArray &colours);
    EditHistory::Edit put(qsizetype at, qsizetype length, const QString &text);
    /// Edits of one kind, one right after the other, are one step.
    enum class Run { None, Typing, Erasing, Deleting };
    void edit(qsizetype at, qsizetype length, const QString &text, Run run);
    void setCaret(qsizetype at);
    void insert(const QString &text);
    bool editByKey(const QKeyEvent *event);
    bool deleteByKey(const QKeyEvent *event);
    void startLine();
    bool pressCharacter(const QString &text);
    void paste();
    void moveText(qsizetype to);
    QMimeData *selectedData() const;
    qsizetype toBuffer(int position) const;
    int toPosition(qsizetype at) const;

    EditHistory m_history;
    /// What the last step goes on with as long as the caret is left where that put it.
    Run m_run = Run::None;
    /// The colour of the next typed text; the neighbouring text's while not set.
    std::optional<int> m_typing;
    /// The selection being dragged was dropped in this box.
    bool m_droppedHere = false;
    KeyPress m_keyPress;
    std::function<void()> m_paste;
};
