#include "TypedAhead.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <algorithm>

namespace {
/// In milliseconds.
int leastPause()
{
    return std::max(500, QApplication::doubleClickInterval());
}
}

TypedAhead::TypedAhead(QDialog &dialog)
    : QObject(&dialog)
{
    dialog.installEventFilter(this);
    for (QWidget *part : dialog.findChildren<QWidget *>())
        part->installEventFilter(this);
}

bool TypedAhead::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (object == parent())
            m_pause.setRemainingTime(leastPause());
        return false;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (isOver())
            return false;
        m_pause.setRemainingTime(leastPause());
        return true;
    default:
        return false;
    }
}
