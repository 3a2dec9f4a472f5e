#include "TypingKept.h"

#include <QComboBox>
#include <QLineEdit>

namespace {
QLineEdit *fieldOf(QWidget *focus)
{
    if (const auto *combo = qobject_cast<QComboBox *>(focus))
        return combo->lineEdit();
    return qobject_cast<QLineEdit *>(focus);
}
}

TypingKept::TypingKept(const QWidget &windows)
{
    QWidget *focus = windows.window()->focusWidget();
    if (!focus || windows.isAncestorOf(focus))
        return;
    m_field = fieldOf(focus);
    if (!m_field)
        return;
    m_focus = focus;
    m_caret = m_field->cursorPosition();
    m_anchor = m_caret;
    if (m_field->hasSelectedText()) {
        const int start = m_field->selectionStart();
        m_anchor = m_caret == start ? m_field->selectionEnd() : start;
    }
}

TypingKept::~TypingKept()
{
    if (!m_focus || !m_field || m_focus->window()->focusWidget() == m_focus)
        return;
    m_focus->setFocus();
    m_field->setSelection(m_anchor, m_caret - m_anchor);
}
