#include "LeavingFocus.h"

#include <QWidget>

void giveUpFocus(const QWidget &leaving)
{
    QWidget *focus = leaving.window()->focusWidget();
    if (focus && (focus == &leaving || leaving.isAncestorOf(focus)))
        focus->clearFocus();
}
