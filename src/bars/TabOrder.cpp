#include "TabOrder.h"

#include <QWidget>

// Qt moves only widgets that take the Tab key at that moment.
void putInTabOrder(QWidget *first, QWidget *second)
{
    const Qt::FocusPolicy firstPolicy = first->focusPolicy();
    const Qt::FocusPolicy secondPolicy = second->focusPolicy();
    first->setFocusPolicy(Qt::TabFocus);
    second->setFocusPolicy(Qt::TabFocus);
    QWidget::setTabOrder(first, second);
    first->setFocusPolicy(firstPolicy);
    second->setFocusPolicy(secondPolicy);
}
