#pragma once

#include <QDeadlineTimer>
#include <QObject>

class QDialog;

/// Keeps from a dialog what was not meant for it: keys and presses of the mouse until half a second
/// has passed without any, from when it came into sight; where the desktop's double click takes
/// longer, that is the time. The dialog comes while the user is at something else, and a letter
/// would be enough for an answer.
class TypedAhead : public QObject {
    Q_OBJECT

public:
    /// Becomes the dialog's child; its buttons are there already.
    explicit TypedAhead(QDialog &dialog);

    bool isOver() const { return m_pause.hasExpired(); }

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QDeadlineTimer m_pause{QDeadlineTimer::Forever};
};
