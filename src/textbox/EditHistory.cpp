#include "EditHistory.h"

namespace {

/// Characters that all steps together hold at most, the latest step apart.
constexpr qsizetype mostCharacters = 50'000'000;

qsizetype charactersOf(const EditHistory::Edit &edit)
{
    return edit.removed.size() + edit.inserted.size();
}

qsizetype charactersOf(const EditHistory::Step &step)
{
    qsizetype sum = 0;
    for (const EditHistory::Edit &edit : step.edits)
        sum += charactersOf(edit);
    return sum;
}

}

void EditHistory::clear()
{
    m_steps.clear();
    m_done = 0;
    m_characters = 0;
}

void EditHistory::add(const Step &step)
{
    while (canRedo())
        m_characters -= charactersOf(m_steps.takeLast());
    m_steps.append(step);
    m_characters += charactersOf(step);
    while (m_characters > mostCharacters && m_steps.size() > 1)
        m_characters -= charactersOf(m_steps.takeFirst());
    m_done = m_steps.size();
}

bool EditHistory::extend(const Edit &edit)
{
    if (!canUndo() || canRedo())
        return false;
    Edit &last = m_steps.last().edits.last();
    const bool onlyRemoves = last.inserted.isEmpty() && edit.inserted.isEmpty();
    if (edit.removed.isEmpty() && edit.at == last.at + last.inserted.size()) {
        last.inserted += edit.inserted;
        last.insertedColours += edit.insertedColours;
    } else if (onlyRemoves && edit.at + edit.removed.size() == last.at) {
        last.at = edit.at;
        last.removed.prepend(edit.removed);
        last.removedColours.prepend(edit.removedColours);
    } else if (onlyRemoves && edit.at == last.at) {
        last.removed += edit.removed;
        last.removedColours += edit.removedColours;
    } else {
        return false;
    }
    m_characters += charactersOf(edit);
    return true;
}

void EditHistory::join(const Edit &edit)
{
    m_steps.last().edits.append(edit);
    m_characters += charactersOf(edit);
}
