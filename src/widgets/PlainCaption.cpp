#include "PlainCaption.h"

#include <QEvent>
#include <QWidget>
#include <QWindow>

using namespace Qt::StringLiterals;

PlainCaption::PlainCaption(QWidget &window)
    : QObject(&window)
    , m_window(window)
{
    window.installEventFilter(this);
}

bool PlainCaption::isNeededFor(const QString &text)
{
    return text.contains("[*]"_L1);
}

/// Both events come when Qt has handed on its own version of the caption.
bool PlainCaption::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_window
        && (event->type() == QEvent::WindowTitleChange || event->type() == QEvent::Show)) {
        QWindow *handle = m_window.windowHandle();
        if (handle && isNeededFor(m_window.windowTitle()))
            handle->setTitle(m_window.windowTitle());
    }
    return QObject::eventFilter(watched, event);
}
