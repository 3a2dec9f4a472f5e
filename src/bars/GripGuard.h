#pragma once

#include <QObject>
#include <functional>

class CoolBar;
class QWidget;

/// Keeps the keyboard from the grippers of a strip unless it comes to them by the Tab key, by the
/// mouse or from a screen reader. The toolkit walks along the Tab order for other reasons, too:
/// when what has the keyboard goes, and with the arrow keys in plain buttons. Whoever types on
/// would rearrange the bands.
class GripGuard : public QObject {
    Q_OBJECT

public:
    /// For the grippers that `bar` has by now. Where the keyboard cannot stay with what had it,
    /// `giveBack` gives it to what the window is about.
    GripGuard(QWidget &window, CoolBar &bar, const std::function<void()> &giveBack);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(QWidget *old, QWidget *now);

    QWidget &m_window;
    std::function<void()> m_giveBack;
    /// The key pressed last in the window was Tab.
    bool m_tabbed = false;
    /// The keyboard has just come to a gripper along the Tab order, without that key.
    bool m_strayed = false;
};
