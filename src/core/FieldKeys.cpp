#include "FieldKeys.h"

#include <QKeyEvent>

bool isFieldKey(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Delete && event.modifiers() == Qt::ShiftModifier)
        return false;
    if (!(event.modifiers() & Qt::ControlModifier) || event.modifiers() & Qt::AltModifier)
        return true;
    switch (event.key()) {
    case Qt::Key_A:
    case Qt::Key_C:
    case Qt::Key_V:
    case Qt::Key_X:
    case Qt::Key_Y:
    case Qt::Key_Z:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return true;
    default:
        return false;
    }
}
