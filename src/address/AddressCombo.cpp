#include "AddressCombo.h"
#include "AddressBox.h"
#include "AddressEdit.h"
#include "ElidedAddress.h"
#include "ShownAddress.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

namespace {
constexpr int rowsShown = 14;
constexpr int leastCharacters = 8;
// Room above and below the text of a row; pixels, together.
constexpr int rowSpace = 6;

class RoomyRows : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &) const override
    {
        return editableAddress(value.toString());
    }

    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QStyle *style = option->widget ? option->widget->style() : QApplication::style();
        const QRect room =
            style->subElementRect(QStyle::SE_ItemViewItemText, option, option->widget);
        const int margins =
            2 * (style->pixelMetric(QStyle::PM_FocusFrameHMargin, option, option->widget) + 1);
        option->text = elidedAddress(option->text, option->fontMetrics, room.width() - margins,
                                     Qt::ElideMiddle);
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, rowSpace);
    }
};
}

AddressCombo::AddressCombo(AddressBox &owner)
    : QComboBox(&owner)
    , m_owner(owner)
    , m_edit(new AddressEdit(owner, this))
{
    setLineEdit(m_edit);
    // The base class chooses the entry that the field's text equals when the focus leaves it, for
    // its own list too: what is only typed or completed would be opened.
    disconnect(m_edit, &QLineEdit::editingFinished, this, nullptr);
    setCompleter(nullptr);
    setInsertPolicy(NoInsert);
    setMaxVisibleItems(rowsShown);
    // Neither the field's size nor the drop-down's asks every entry for its width.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(leastCharacters);
}

// The list costs more to make than the field itself, and many fields are never dropped down.
void AddressCombo::prepareList()
{
    if (m_list)
        return;
    m_list = view();
    m_list->installEventFilter(this);
    if (auto *list = qobject_cast<QListView *>(m_list)) {
        list->setItemDelegate(new RoomyRows(list));
        list->setUniformItemSizes(true);
        list->setTextElideMode(Qt::ElideMiddle);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
}

void AddressCombo::showPopup()
{
    m_owner.hideSuggestions();
    if (count() == 0)
        return;
    prepareList();
    {
        const QScopedValueRollback dropping(m_dropping, true);
        QComboBox::showPopup();
    }
    const int row = m_owner.rowOfText();
    m_list->setCurrentIndex(model()->index(row, 0));
    if (row >= 0)
        m_list->scrollTo(m_list->currentIndex());
    else
        m_list->scrollToTop();
}

void AddressCombo::keyPressEvent(QKeyEvent *event)
{
    m_owner.keyPressed(event);
}

void AddressCombo::keyReleaseEvent(QKeyEvent *event)
{
    m_owner.keyReleased(event);
}

void AddressCombo::focusInEvent(QFocusEvent *event)
{
    QComboBox::focusInEvent(event);
    m_edit->selectAllOnRelease(event->reason() == Qt::MouseFocusReason);
    m_owner.focusEntered();
}

// The list takes the focus as another control would; it is part of the field all the same.
void AddressCombo::focusOutEvent(QFocusEvent *event)
{
    QFocusEvent toTheList(QEvent::FocusOut, Qt::PopupFocusReason);
    if (m_dropping)
        event = &toTheList;
    QComboBox::focusOutEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason
        && reason != Qt::ActiveWindowFocusReason)
        m_owner.focusLeft();
}

void AddressCombo::mousePressEvent(QMouseEvent *event)
{
    m_edit->selectAllOnRelease(false);
    QComboBox::mousePressEvent(event);
}

// Turning the wheel over the field would choose, that is open, one entry after the other.
void AddressCombo::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

bool AddressCombo::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_list && event->type() == QEvent::KeyPress
        && popupKey(static_cast<QKeyEvent *>(event)))
        return true;
    return QComboBox::eventFilter(watched, event);
}

// Keys the dropped list has no use for are typed into the field, and Enter without a choice is
// the field's.
bool AddressCombo::popupKey(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool edits = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete
        || event->key() == Qt::Key_Left || event->key() == Qt::Key_Right
        || (!event->text().isEmpty() && event->text().at(0).isPrint());
    if (!edits && !(enter && !m_list->currentIndex().isValid()))
        return false;
    hidePopup();
    m_owner.keyPressed(event);
    return true;
}
