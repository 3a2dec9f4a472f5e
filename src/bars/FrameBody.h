#pragma once

#include <QWidget>

#include "CoolBar.h"

class QSplitter;
class QVBoxLayout;

/// The inside of the frame: the tool bar strip along one edge, and beside the inner windows the
/// place of the side bars.
class FrameBody : public QWidget {
    Q_OBJECT

public:
    FrameBody(CoolBar &bar, QWidget &windows, QWidget *parent);

    /// Moves the strip above or below everything else.
    void dockCoolBar(CoolBar::Dock side);
    /// Adds a side bar left of the inner windows; its edge can be dragged.
    void addSideBar(QWidget &bar);
    /// Adds a strip below everything else.
    void addStrip(QWidget &strip);

private:
    CoolBar &m_bar;
    QVBoxLayout *m_layout;
    QSplitter *m_splitter;
};
