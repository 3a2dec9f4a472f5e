// What does not fit in a tool bar, as its band's chevron offers it.
#include "MenuText.h"
#include "ToolBar.h"
#include "ToolBarButton.h"

#include <QAction>

QList<int> ToolBar::overflowIndexes()
{
    if (m_layoutPending)
        layOut();
    QList<int> indexes;
    for (int i = 0; i < buttonCount(); ++i) {
        if (!m_items.at(i).separator && !m_items.at(i).button)
            indexes.append(i);
    }
    return indexes;
}

QStringList ToolBar::overflowNames()
{
    QStringList names;
    const QList<int> indexes = overflowIndexes();
    for (const int index : indexes)
        names.append(nameOf(m_items.at(index)));
    return names;
}

QList<QAction *> ToolBar::overflowActions(QObject *parent, qsizetype first, qsizetype count)
{
    QList<QAction *> actions;
    const QList<int> indexes = overflowIndexes().mid(first, count);
    for (const int index : indexes)
        actions += actionsFor(index, parent);
    return actions;
}

QList<QAction *> ToolBar::actionsFor(int index, QObject *parent)
{
    const Item &item = m_items.at(index);
    const QString name = menuText(nameOf(item), 80); // one as wide as the screen helps nobody
    auto *action = new QAction(item.icon, name, parent);
    action->setToolTip(item.toolTip);
    action->setCheckable(item.pressed);
    action->setChecked(item.pressed);
    const QString key = item.key;
    connect(action, &QAction::triggered, this,
            [this, key, index] { emit buttonClicked(key, index + 1); });
    if (item.style != Style::DropDown)
        return {action};
    auto *more = new QAction(name + QChar(0x2026), parent);
    connect(more, &QAction::triggered, this,
            [this, key] { emit dropDown(key, mapToGlobal(QPoint(width(), height()))); });
    return {action, more};
}
