#pragma once

#include <QList>
#include <QObject>
#include <functional>

class CoolBar;
class QWidget;

/// The keys F6 and Shift+F6 of a window: they take the keyboard on to the next, or back to the
/// previous, of its places. These are the bands of the strip in the order shown, then other
/// widgets, such as side bars, then what the page asks, then the page. What is not shown, or takes
/// no focus, is passed over.
class BandFocus : public QObject {
    Q_OBJECT

public:
    static constexpr auto nextKey = "F6";
    static constexpr auto previousKey = "Shift+F6";

    struct Page {
        /// What it asks, as it is shown now; null: nothing.
        std::function<QWidget *()> question;
        /// Gives it the focus; false when none is seen.
        std::function<bool()> focus;
    };

    BandFocus(QWidget &window, CoolBar &bar, const QList<QWidget *> &others, const Page &page);

private:
    void moveOn(int by);
    /// By position; a band may have lost its child.
    QList<QWidget *> places() const;
    /// The place that has `focus`; -1 for the page and everything else.
    int placeOf(const QWidget *focus) const;

    CoolBar &m_bar;
    QList<QWidget *> m_others;
    Page m_page;
};
