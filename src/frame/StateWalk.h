#pragma once

#include <QList>
#include <QStringList>

class QMdiArea;
class QMdiSubWindow;
class QWidget;

/// While it lives, the states of many children of one area are changed without what each change
/// brings for itself, which among a hundred takes longer than the changes. None becomes active:
/// it would be raised and given the focus. Nothing is painted. And the children have no captions,
/// which the toolkit would lay out eight times for each.
class StateWalk {
public:
    StateWalk(QMdiArea &area, const QList<QMdiSubWindow *> &children);
    ~StateWalk();
    Q_DISABLE_COPY_MOVE(StateWalk)

private:
    QWidget &m_viewport;
    const QList<QMdiSubWindow *> &m_children;
    QStringList m_captions;
};
