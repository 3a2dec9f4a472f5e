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

void arrange(const QList<QWidget *> &forms)
{
    QList<QWidget *> ordered;
    for (QWidget *form : forms) {
        if (loaded.contains(form) && !ordered.contains(form))
            ordered.append(form);
    }
    qsizetype next = 0;
    // Each place is looked at before it is filled, and none of those behind has changed yet.
    for (QWidget *&place : loaded) {
        if (ordered.contains(place))
            place = ordered.at(next++);
    }
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
