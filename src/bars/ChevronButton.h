#pragma once

#include <QToolButton>

class QMenu;

/// The ">>" at the end of a band whose child does not fit: a menu of what is hidden, filled anew at
/// each opening. Very many entries stand in submenus, each named by its first and its last one.
class ChevronButton : public QToolButton {
    Q_OBJECT

public:
    /// `child` must implement Overflow for the menu to have entries.
    ChevronButton(QWidget *child, QWidget *parent);

    static constexpr int pixels = 18;

    QSize sizeHint() const override { return {pixels, pixels}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void open();
    void selectFirst();
    void fill();
    void addGroup(const QString &from, const QString &to, qsizetype first, qsizetype count);

    QWidget *m_child;
    QMenu *m_menu;
};
