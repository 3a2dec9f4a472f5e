#pragma once

#include "ToolBar.h"

#include <QBasicTimer>
#include <QToolButton>

/// A button of a ToolBar while it is shown. Its state is the tool bar's; it draws and reports.
class ToolBarButton : public QToolButton {
    Q_OBJECT

public:
    ToolBarButton(ToolBar *bar, int index, ToolBar::Style style);

    int index() const { return m_index; }
    ToolBar::Style buttonStyle() const { return m_style; }
    bool isPressed() const { return m_pressed; }
    void setPressed(bool pressed);
    /// Shows the drop-down, as a press of the arrow does.
    void openDropDown();

    /// Pixels a button of these contents takes.
    static int widthFor(const QWidget *bar, const QIcon &icon, const QString &text,
                        ToolBar::Style style);
    /// Pixels every button is high in a bar of this font.
    static int heightFor(const QWidget *bar);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QRect arrowRect() const;
    void followMenu();
    QString key() const;

    ToolBar *m_bar;
    int m_index;
    ToolBar::Style m_style;
    bool m_pressed = false;
    bool m_dropped = false; // the drop-down is open
    QBasicTimer m_hold;
};
