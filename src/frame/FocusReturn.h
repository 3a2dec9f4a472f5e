#pragma once

#include <QObject>
#include <functional>

class QWidget;

/// Sees to it that the keyboard of a window is where the user would look for it: when what has it
/// is hidden, disabled or deleted, the toolkit takes it on to the next control in the row, where
/// the next arrow key may rearrange the bars, or to none; and it gives it to what nobody sees.
class FocusReturn : public QObject {
    Q_OBJECT

public:
    /// `giveBack` gives the keyboard to what the window is about.
    FocusReturn(QWidget &window, const std::function<void()> &giveBack);

private:
    void watch(const QWidget *old, const QWidget *now);
    bool isOutOfReach(const QWidget *widget) const;
    void returnFromNowhere();

    QWidget &m_window;
    std::function<void()> m_giveBack;
};
