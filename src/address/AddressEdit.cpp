#include "AddressEdit.h"

#include "AddressBox.h"
#include "DraggedUrls.h"
#include "ElidedAddress.h"
#include "FieldKeys.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleOptionFrame>
#include <QUrl>

namespace {
bool holdsUrls(const QDropEvent &event)
{
    return !event.mimeData()->urls().isEmpty();
}

// Where text longer than this is laid out in one line, every key would be felt.
constexpr int longestText = 32767;
// What a line of text keeps between its frame and its text.
constexpr int textMargin = 2;
}

AddressEdit::AddressEdit(AddressBox &owner, QWidget *parent)
    : QLineEdit(parent)
    , m_owner(owner)
{
    setMaxLength(longestText);
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (!m_composing)
            m_owner.edited(m_inserting);
    });
}

bool AddressEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto key = static_cast<QKeyEvent *>(event);
        if (!isFieldKey(*key)) {
            event->ignore();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void AddressEdit::keyPressEvent(QKeyEvent *event)
{
    m_owner.keyPressed(event);
}

void AddressEdit::keyReleaseEvent(QKeyEvent *event)
{
    m_owner.keyReleased(event);
}

// Keys with control alone are commands, whatever text comes with them.
bool AddressEdit::isInsertion(const QKeyEvent &event) const
{
    const Qt::KeyboardModifiers command = event.modifiers() & ~Qt::ShiftModifier;
    return event.matches(QKeySequence::Paste)
        || (command != Qt::ControlModifier && !event.text().isEmpty()
            && event.text().at(0).isPrint() && event.key() != Qt::Key_Delete);
}

void AddressEdit::applyKey(QKeyEvent *event)
{
    const bool forward = event->matches(QKeySequence::MoveToNextChar);
    if (hasSelectedText() && (forward || event->matches(QKeySequence::MoveToPreviousChar))) {
        const bool toEnd = forward != text().isRightToLeft();
        setCursorPosition(toEnd ? selectionEnd() : selectionStart());
        return;
    }
    const QScopedValueRollback inserting(m_inserting, isInsertion(*event));
    QLineEdit::keyPressEvent(event);
}

void AddressEdit::insertAsUser(const QString &text)
{
    const QScopedValueRollback inserting(m_inserting, !text.isEmpty());
    insert(text);
}

// A commit that comes with more text being composed is not completed: that would end the
// composition.
void AddressEdit::inputMethodEvent(QInputMethodEvent *event)
{
    const QString before = text();
    m_composing = true;
    QLineEdit::inputMethodEvent(event);
    m_composing = !event->preeditString().isEmpty();
    if (text() != before)
        m_owner.edited(!m_composing && !event->commitString().isEmpty());
}

void AddressEdit::mouseReleaseEvent(QMouseEvent *event)
{
    const QScopedValueRollback inserting(m_inserting, event->button() == Qt::MiddleButton);
    QLineEdit::mouseReleaseEvent(event);
    if (m_selectAllOnRelease && event->button() == Qt::LeftButton && !hasSelectedText())
        selectAll();
    m_selectAllOnRelease = false;
}

// A profile file is the frame's, and a folder is nobody's.
void AddressEdit::dragEnterEvent(QDragEnterEvent *event)
{
    if (isProfileDragged(*event->mimeData()) || isFolderDragged(*event->mimeData()))
        event->ignore();
    else
        dragMoveEvent(event);
}

void AddressEdit::dragMoveEvent(QDragMoveEvent *event)
{
    if (holdsUrls(*event))
        acceptAsCopy(*event);
    else
        QLineEdit::dragMoveEvent(event);
}

// A file or a link takes the place of the whole text, and waits for Enter there; other text goes in
// where it is let go.
void AddressEdit::dropEvent(QDropEvent *event)
{
    if (holdsUrls(*event)) {
        acceptAsCopy(*event);
        window()->activateWindow();
        setFocus();
        selectAll();
        insert(QString::fromLatin1(event->mimeData()->urls().first().toEncoded()));
        return;
    }
    const QScopedValueRollback inserting(m_inserting, true);
    QLineEdit::dropEvent(event);
}

// The menu tells of a choice before the line carries it out.
void AddressEdit::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu, &QMenu::triggered, this, [this](QAction *action) {
        m_inserting = action->text().startsWith(QLineEdit::tr("&Paste"));
    });
    connect(menu, &QObject::destroyed, this, [this] { m_inserting = false; });
    menu->popup(event->globalPos());
}

// The menu bar taking the keyboard for a moment leaves the selection as it is.
void AddressEdit::focusOutEvent(QFocusEvent *event)
{
    if (event->reason() == Qt::MenuBarFocusReason) {
        QFocusEvent popup(QEvent::FocusOut, Qt::PopupFocusReason);
        QLineEdit::focusOutEvent(&popup);
        return;
    }
    QLineEdit::focusOutEvent(event);
}

bool AddressEdit::showsStart() const
{
    return !hasFocus() && !hasSelectedText() && !text().isRightToLeft()
        && fontMetrics().horizontalAdvance(text()) > width() - 2 * textMargin;
}

// A long address that nobody edits shows its host, though the caret stands at its end.
void AddressEdit::paintEvent(QPaintEvent *event)
{
    if (!showsStart()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QPainter painter(this);
    QStyleOptionFrame option;
    initStyleOption(&option);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
    const QRect line = style()
                           ->subElementRect(QStyle::SE_LineEditContents, &option, this)
                           .adjusted(textMargin, 0, -textMargin, 0);
    painter.setPen(palette().color(QPalette::Text));
    const QString shown = elidedAddress(text(), fontMetrics(), line.width(), Qt::ElideRight);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}
