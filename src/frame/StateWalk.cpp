#include "StateWalk.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>

StateWalk::StateWalk(QMdiArea &area, const QList<QMdiSubWindow *> &children)
    : m_viewport(*area.viewport())
    , m_children(children)
{
    if (m_viewport.isAncestorOf(QApplication::focusWidget()))
        area.setFocus();
    m_viewport.setUpdatesEnabled(false);
    m_viewport.setEnabled(false);
    for (QMdiSubWindow *child : m_children) {
        m_captions.append(child->windowTitle());
        child->setWindowTitle({});
    }
}

StateWalk::~StateWalk()
{
    for (qsizetype i = 0; i < m_children.size(); ++i)
        m_children.at(i)->setWindowTitle(m_captions.at(i));
    m_viewport.setEnabled(true);
    m_viewport.setUpdatesEnabled(true);
}
