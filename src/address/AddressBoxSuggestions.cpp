// What an address bar does with the pages that it proposes.
#include "AddressBox.h"
#include "AddressEdit.h"
#include "AddressSuggestions.h"
#include "ShownAddress.h"

#include <QKeyEvent>
#include <QScopedValueRollback>

void AddressBox::suggest(const QString &typed)
{
    m_typed = typed;
    const QList<AddressSuggestion> pages =
        m_suggester && m_focused ? m_suggester(typed) : QList<AddressSuggestion>();
    if (!m_suggestions && pages.isEmpty())
        return;
    if (!m_suggestions) {
        m_suggestions = new AddressSuggestions(*this);
        connect(m_suggestions, &AddressSuggestions::clicked, this, [this](const QString &address) {
            setText(address);
            emit clicked();
        });
    }
    m_suggestions->propose(pages);
}

void AddressBox::hideSuggestions()
{
    if (m_suggestions)
        m_suggestions->hide();
}

/// What a key does while pages are proposed; false where it does what it always does.
bool AddressBox::suggestionKey(const QKeyEvent &event)
{
    if (!m_suggestions || !m_suggestions->isVisible())
        return false;
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const int key = event.key();
    const bool isStep = (key == Qt::Key_Up || key == Qt::Key_Down) && held == Qt::NoModifier;
    if (isStep)
        m_suggestions->step(key == Qt::Key_Down ? 1 : -1);
    const bool isGivenUp = key == Qt::Key_Escape && !m_suggestions->current().isEmpty();
    if (isStep || isGivenUp)
        showSuggested(isStep ? m_suggestions->current() : QString());
    if (isGivenUp || key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter)
        hideSuggestions();
    return isStep || isGivenUp;
}

/// In the field, as if typed; what the user typed himself where it is none.
void AddressBox::showSuggested(const QString &address)
{
    const QString text = address.isEmpty() ? m_typed : address;
    const QString shown = editableAddress(text);
    const QScopedValueRollback guard(m_completing, true);
    replaceText(shown);
    m_exactText = shown != text ? text : QString();
    m_edit->end(false);
    m_unsent = true;
}
