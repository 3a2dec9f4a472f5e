#include "FocusedFavorites.h"

#include <QVariant>
#include <QWidget>

#include "Frame.h"

using namespace Qt::StringLiterals;

namespace FocusedFavorites {

QObject *bar(Frame &frame)
{
    QWidget *control = frame.window()->focusWidget();
    while (control && control->objectName() != "FavoritesBar1"_L1)
        control = control->parentWidget();
    return control && control->property("Initialised").toBool() ? control : nullptr;
}

void refresh(QObject &bar)
{
    QMetaObject::invokeMethod(&bar, "Refresh", Qt::DirectConnection);
}

}
