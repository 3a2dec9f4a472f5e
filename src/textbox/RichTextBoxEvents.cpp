#include "Clipboard.h"
#include "LineEnds.h"
#include "RichTextBox.h"
#include "TextMoves.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMimeData>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array editKeys = {
    QKeySequence::Undo,
    QKeySequence::Redo,
    QKeySequence::Cut,
    QKeySequence::Copy,
    QKeySequence::Paste,
    QKeySequence::Backspace,
    QKeySequence::Delete,
    QKeySequence::DeleteStartOfWord,
    QKeySequence::DeleteEndOfWord,
    QKeySequence::DeleteEndOfLine,
    QKeySequence::DeleteCompleteLine,
    QKeySequence::InsertParagraphSeparator,
    QKeySequence::InsertLineSeparator,
};

bool isEditKey(const QKeyEvent *event)
{
    return std::any_of(editKeys.begin(), editKeys.end(),
                       [event](QKeySequence::StandardKey key) { return event->matches(key); });
}

bool isCommand(const QKeyEvent *event)
{
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return (event->modifiers() & commands) && !(event->modifiers() & Qt::GroupSwitchModifier);
}

bool isPrintable(const QString &text)
{
    return !text.isEmpty() && (text.front() >= u' ' || text.front() == u'\t')
        && text.front() != QChar(0x7f);
}

}

bool RichTextBox::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        const bool types = !isCommand(key) && isPrintable(key->text());
        if (types || isMoveKey(key) || isEditKey(key)) {
            event->accept();
            return true;
        }
    }
    return TextView::event(event);
}

bool RichTextBox::pressCharacter(const QString &text)
{
    if (text.size() != 1 || !isPrintable(text))
        return false;
    if (!m_keyPress || !m_keyPress(text.front()))
        type(text);
    return true;
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    // Shift+Tab leaves the box, as it does everywhere.
    const bool leaves = event->key() == Qt::Key_Backtab;
    if (moveByKey(event) || editByKey(event) || deleteByKey(event)) {
        event->accept();
    } else if (!leaves && !isCommand(event) && isPrintable(event->text())) {
        if (!pressCharacter(event->text()))
            type(event->text());
        event->accept();
    } else {
        event->ignore();
    }
}

bool RichTextBox::editByKey(const QKeyEvent *event)
{
    if (event->matches(QKeySequence::Undo))
        undo();
    else if (event->matches(QKeySequence::Redo))
        redo();
    else if (event->matches(QKeySequence::Paste))
        paste();
    else if (event->matches(QKeySequence::InsertParagraphSeparator)
             || event->matches(QKeySequence::InsertLineSeparator))
        startLine();
    else if (event->matches(QKeySequence::Copy) || event->matches(QKeySequence::Cut)) {
        if (!hasSelection())
            return true;
        QGuiApplication::clipboard()->setMimeData(selectedData());
        if (event->matches(QKeySequence::Cut))
            insert({});
    } else {
        return false;
    }
    return true;
}

/// A line begins a step, and what is typed into it is part of that.
void RichTextBox::startLine()
{
    m_run = Run::None;
    type(u"\n"_s);
}

bool RichTextBox::deleteByKey(const QKeyEvent *event)
{
    using namespace TextMoves;
    const QStringView text = buffer().text();
    const qsizetype at = caret();
    qsizetype from = at;
    qsizetype to = at;
    Run run = Run::None;
    // Backspace does the same with Shift: it is easily still held.
    const bool back = event->key() == Qt::Key_Backspace
        && !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    if (back || event->matches(QKeySequence::Backspace)) {
        from = previousCodePoint(text, at);
        run = Run::Erasing;
    } else if (event->matches(QKeySequence::Delete)) {
        to = nextCharacter(text, at);
        run = Run::Deleting;
    } else if (event->matches(QKeySequence::DeleteStartOfWord))
        from = previousWord(text, at);
    else if (event->matches(QKeySequence::DeleteEndOfWord))
        to = nextWord(text, at);
    else if (event->matches(QKeySequence::DeleteEndOfLine))
        to = lineEnd(text, at) == at ? nextCharacter(text, at) : lineEnd(text, at);
    else if (event->matches(QKeySequence::DeleteCompleteLine)) {
        from = lineStart(text, at);
        to = qMin(lineEnd(text, at) + 1, text.size());
    } else {
        return false;
    }
    if (hasSelection())
        insert({});
    else
        edit(from, to - from, {}, run);
    return true;
}

void RichTextBox::paste()
{
    if (m_paste)
        m_paste();
    else
        setSelText(clipboardText());
}

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    const QString committed = event->commitString();
    if (event->replacementLength() > 0) {
        const qsizetype from =
            qBound(qsizetype(0), caret() + event->replacementStart(), buffer().size());
        replace(from, qMin(qsizetype(event->replacementLength()), buffer().size() - from),
                committed);
    } else if (!committed.isEmpty()) {
        layouts().setComposed(0, {}, {});
        if (!pressCharacter(committed))
            type(LineEnds::toLf(committed));
    } else if (!event->preeditString().isEmpty() && hasSelection()) {
        insert({});
    }
    QList<QTextLayout::FormatRange> look;
    for (const QInputMethodEvent::Attribute &one : event->attributes()) {
        const QTextFormat format = one.value.value<QTextFormat>();
        if (one.type == QInputMethodEvent::TextFormat && format.isCharFormat()) {
            const int start = int(caret() - rows().start(rows().rowAt(caret())));
            look.append({start + one.start, one.length, format.toCharFormat()});
        }
    }
    layouts().setComposed(caret(), event->preeditString(), look);
    ensureCaretVisible();
    viewport()->update();
    event->accept();
}

QVariant RichTextBox::inputMethodQuery(Qt::InputMethodQuery query) const
{
    // The text around the caret is its row: a line may be as long as a file.
    const int row = rows().rowAt(caret());
    const qsizetype start = rows().start(row);
    switch (query) {
    case Qt::ImEnabled:
        return isEnabled();
    case Qt::ImCursorRectangle:
        return caretArea(caret()).translated(viewport()->pos());
    case Qt::ImFont:
        return font();
    case Qt::ImCursorPosition:
        return int(caret() - start);
    case Qt::ImAnchorPosition:
        return int(qBound(start, anchor(), rows().end(row)) - start);
    case Qt::ImSurroundingText:
        return buffer().text().mid(start, rows().end(row) - start);
    case Qt::ImCurrentSelection:
        return plainSelection();
    default:
        return TextView::inputMethodQuery(query);
    }
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    QGuiApplication::inputMethod()->commit();
    TextView::mousePressEvent(event);
    Q_EMIT mouseClicked(event->button());
}

void RichTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    TextView::mouseReleaseEvent(event);
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!clipboard->supportsSelection())
        return;
    if (event->button() == Qt::LeftButton && hasSelection()) {
        clipboard->setMimeData(selectedData(), QClipboard::Selection);
    } else if (event->button() == Qt::MiddleButton) {
        const QString text = clipboard->text(QClipboard::Selection);
        const qsizetype at = positionAt(event->pos());
        select(at, at);
        setSelText(text);
    }
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    // The right button is told by its click; this is the menu key.
    if (event->reason() == QContextMenuEvent::Keyboard)
        Q_EMIT mouseClicked(Qt::RightButton);
    event->accept();
}
