#include "SideBarControls.h"
#include "ThemedIcon.h"

#include <QToolButton>

using namespace Qt::StringLiterals;

QToolButton *makeCloseButton(QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName("cmdExit"_L1);
    button->setIcon(themedIcon(u"close"_s));
    button->setIconSize({16, 16});
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolTip(u"Close"_s);
    button->setAccessibleName(u"Close"_s);
    return button;
}
