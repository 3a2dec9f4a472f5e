#include "FrameBody.h"

#include <QSplitter>
#include <QVBoxLayout>

FrameBody::FrameBody(CoolBar &bar, QWidget &windows, QWidget *parent)
    : QWidget(parent)
    , m_bar(bar)
    , m_layout(new QVBoxLayout(this))
    , m_splitter(new QSplitter(Qt::Horizontal))
{
    m_layout->setContentsMargins({});
    m_layout->setSpacing(0);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(&windows);
    m_layout->addWidget(&bar);
    m_layout->addWidget(m_splitter, 1);
}

void FrameBody::addSideBar(QWidget &bar)
{
    const int windows = m_splitter->count() - 1;
    m_splitter->insertWidget(windows, &bar);
    m_splitter->setStretchFactor(windows, 0);
    m_splitter->setStretchFactor(windows + 1, 1);
}

void FrameBody::addStrip(QWidget &strip)
{
    m_layout->addWidget(&strip);
}

void FrameBody::dockCoolBar(CoolBar::Dock side)
{
    m_bar.setDock(side);
    if (!m_barFloats)
        dockBar();
}

void FrameBody::dockBar()
{
    const int index = m_bar.dock() == CoolBar::Dock::Top ? 0 : 1;
    if (m_layout->indexOf(&m_bar) == index)
        return;
    m_layout->removeWidget(&m_bar);
    m_layout->insertWidget(index, &m_bar);
}

void FrameBody::setBarFloats(bool floats)
{
    m_barFloats = floats;
    if (floats)
        m_layout->removeWidget(&m_bar);
    else
        dockBar();
}
