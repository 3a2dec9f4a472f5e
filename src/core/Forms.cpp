#include "Forms.h"

#include <QWidget>

namespace {
QList<QWidget *> loaded;
}

namespace Forms {

void add(QWidget *form)
{
    if (loaded.contains(form))
        return;
    loaded.append(form);
    QObject::connect(form, &QObject::destroyed, form, [form] { loaded.removeOne(form); });
}

void remove(QWidget *form)
{
    loaded.removeOne(form);
}

QList<QWidget *> all()
{
    return loaded;
}

QList<QWidget *> named(const char *name)
{
    QList<QWidget *> result;
    const QLatin1String wanted(name);
    for (QWidget *form : loaded) {
        if (form->objectName() == wanted)
            result.append(form);
    }
    return result;
}

}
