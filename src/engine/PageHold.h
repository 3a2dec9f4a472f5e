#pragma once

#include <QPointer>

class QWebEnginePage;
class QWidget;

/// While one lives, the engine does something with the page that the user asked for, or waits for
/// his answer: the page is not to be deleted. One whose window closes meanwhile lives on, unseen
/// and silent, until the last of its holds goes.
class PageHold {
public:
    /// What becomes of the work when the program ends and it takes too long.
    enum class AtExit {
        /// Deleting the page during it would end the program.
        Stays,
        GoesWithPage
    };

    explicit PageHold(QWebEnginePage *page, AtExit atExit);
    ~PageHold();
    PageHold(const PageHold &) = delete;
    PageHold &operator=(const PageHold &) = delete;

    /// Takes a held page, and its view, over from the window that goes; both are deleted after the
    /// last hold. False when nothing holds the page: it may be deleted now.
    static bool takeOver(QWidget *view, QWebEnginePage *page);
    /// Waits until no page taken over is left, half a minute at most; before the engine's profile
    /// goes.
    static void finishAll();

private:
    /// Also names it when it is gone.
    QWebEnginePage *m_key;
    QPointer<QWebEnginePage> m_page;
    AtExit m_atExit;
};
