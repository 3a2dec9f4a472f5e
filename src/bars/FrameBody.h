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
    /// The strip leaves the layout, for its owner to place over everything else; or comes back to
    /// its edge.
    void setBarFloats(bool floats);
    /// Adds a side bar left of the inner windows; its edge can be dragged.
    void addSideBar(QWidget &bar);
    /// Adds a strip below everything else.
    void addStrip(QWidget &strip);

private:
    void dockBar();

    CoolBar &m_bar;
    QVBoxLayout *m_layout;
    QSplitter *m_splitter;
    bool m_barFloats = false;
};
