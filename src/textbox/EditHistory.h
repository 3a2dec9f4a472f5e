#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The edits of a text that can be undone and done again.
class EditHistory {
public:
    /// At one place, one piece of text that became another, with the colours of both.
    struct Edit {
        qsizetype at;
        QString removed;
        QByteArray removedColours;
        QString inserted;
        QByteArray insertedColours;
    };
    /// Edits that are one to the user, and the selection before them.
    struct Step {
        QList<Edit> edits;
        qsizetype anchor;
        qsizetype caret;
    };

    void clear();
    /// Keeps a step; what was undone can no longer be done again. The oldest steps go when all of
    /// them hold too much text.
    void add(const Step &step);
    /// One more edit of the step added last.
    void join(const Edit &edit);
    /// Makes the step added last go on with an edit right after what it put in, or right beside
    /// what it took out. False, and nothing done, when the edit is elsewhere.
    bool extend(const Edit &edit);

    bool canUndo() const { return m_done > 0; }
    bool canRedo() const { return m_done < m_steps.size(); }
    /// The step to be undone or done again, which counts as such from now on.
    Step &undo() { return m_steps[--m_done]; }
    Step &redo() { return m_steps[m_done++]; }

private:
    QList<Step> m_steps;
    qsizetype m_done = 0;
    qsizetype m_characters = 0;
};
