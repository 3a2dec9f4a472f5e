#include "TextBoxAccessible.h"

#include "LineEnds.h"
#include "RichTextBox.h"

#include <QAccessible>
#include <QAccessibleWidget>

using namespace Qt::StringLiterals;

namespace {

class BoxInterface : public QAccessibleWidget,
                     public QAccessibleTextInterface,
                     public QAccessibleEditableTextInterface {
public:
    explicit BoxInterface(RichTextBox *box)
        : QAccessibleWidget(box, QAccessible::EditableText)
        , m_box(box)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    QString text(QAccessible::Text part) const override
    {
        return part == QAccessible::Value ? all() : QAccessibleWidget::text(part);
    }
    void setText(QAccessible::Text part, const QString &text) override
    {
        if (part == QAccessible::Value)
            replaceText(0, characterCount(), text);
        else
            QAccessibleWidget::setText(part, text);
    }

    void selection(int index, int *start, int *end) const override
    {
        const bool any = index == 0 && m_box->hasSelection();
        *start = any ? int(m_box->selectionStart()) : 0;
        *end = any ? int(m_box->selectionEnd()) : 0;
    }
    int selectionCount() const override { return m_box->hasSelection() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int index) override
    {
        if (index == 0)
            m_box->select(m_box->caret(), m_box->caret());
    }
    void setSelection(int index, int start, int end) override
    {
        if (index != 0)
            return;
        m_box->select(start, end);
        m_box->ensureCaretVisible();
    }

    int cursorPosition() const override { return int(m_box->caret()); }
    void setCursorPosition(int at) override
    {
        m_box->select(at, at);
        m_box->ensureCaretVisible();
    }
    QString text(int start, int end) const override
    {
        return all().mid(start, qMax(0, end - start));
    }
    int characterCount() const override { return int(all().size()); }
    QRect characterRect(int offset) const override
    {
        if (offset < 0 || offset > characterCount())
            return {};
        QRect area = m_box->caretArea(offset);
        area.setWidth(m_box->fontMetrics().horizontalAdvance(u'0'));
        return area.translated(m_box->viewport()->mapToGlobal(QPoint()));
    }
    int offsetAtPoint(const QPoint &point) const override
    {
        return int(m_box->positionAt(m_box->viewport()->mapFromGlobal(point)));
    }
    void scrollToSubstring(int start, int end) override { setSelection(0, start, end); }
    QString attributes(int offset, int *start, int *end) const override
    {
        *start = offset;
        *end = qMin(offset + 1, characterCount());
        if (offset < 0 || offset >= characterCount())
            return {};
        const int colour = m_box->buffer().colourAt(offset);
        return u"color:rgb(%1,%2,%3);"_s.arg(colour & 0xff)
            .arg(colour >> 8 & 0xff)
            .arg(colour >> 16 & 0xff);
    }

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int offset, const QString &text) override { replaceText(offset, offset, text); }
    void replaceText(int start, int end, const QString &text) override
    {
        start = qBound(0, start, characterCount());
        end = qBound(start, end, characterCount());
        m_box->replace(start, end - start, LineEnds::toLf(text));
    }

private:
    const QString &all() const { return m_box->buffer().text(); }

    RichTextBox *m_box;
};

QAccessibleInterface *create(const QString &, QObject *object)
{
    if (auto *box = qobject_cast<RichTextBox *>(object))
        return new BoxInterface(box);
    return nullptr;
}

}

namespace TextBoxAccessible {

void install()
{
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

void changed(RichTextBox *box, qsizetype at, const QString &removed, const QString &inserted)
{
    if (!QAccessible::isActive())
        return;
    if (!removed.isEmpty()) {
        QAccessibleTextRemoveEvent event(box, int(at), removed);
        QAccessible::updateAccessibility(&event);
    }
    if (!inserted.isEmpty()) {
        QAccessibleTextInsertEvent event(box, int(at), inserted);
        QAccessible::updateAccessibility(&event);
    }
}

void moved(RichTextBox *box)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleTextCursorEvent caret(box, int(box->caret()));
    QAccessible::updateAccessibility(&caret);
    QAccessibleTextSelectionEvent selection(box, int(box->selectionStart()),
                                            int(box->selectionEnd()));
    QAccessible::updateAccessibility(&selection);
}

}
