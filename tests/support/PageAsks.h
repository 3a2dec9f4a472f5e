#pragma once

#include "BrowserWindow.h"
#include "PageQuestionBox.h"

#include <QCheckBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

/// What a user sees and does when the page of a window asks something.
namespace PageAsks {

/// The question that the window shows; null: none.
inline PageQuestionBox *shownIn(const QWidget *form)
{
    const QList<PageQuestionBox *> all =
        form ? form->findChildren<PageQuestionBox *>() : QList<PageQuestionBox *>();
    for (PageQuestionBox *each : all) {
        if (each->isVisible())
            return each;
    }
    return nullptr;
}

inline int countIn(const QWidget *form)
{
    int count = 0;
    for (const PageQuestionBox *each : form->findChildren<PageQuestionBox *>())
        count += each->isVisible() ? 1 : 0;
    return count;
}

inline QString textOf(const PageQuestionBox *box)
{
    return box->findChild<QLabel *>(QStringLiteral("lblText"))->accessibleName();
}

inline QString titleOf(const PageQuestionBox *box)
{
    return box->findChild<QLabel *>(QStringLiteral("lblTitle"))->accessibleName();
}

/// The site that asks, as it is written.
inline QString askerOf(const PageQuestionBox *box)
{
    return box->findChild<QLabel *>(QStringLiteral("lblAsker"))->accessibleName();
}

inline QPushButton *yes(const PageQuestionBox *box)
{
    return box->findChild<QPushButton *>(QStringLiteral("cmdYes"));
}

inline QPushButton *no(const PageQuestionBox *box)
{
    return box->findChild<QPushButton *>(QStringLiteral("cmdNo"));
}

inline QPushButton *other(const PageQuestionBox *box)
{
    return box->findChild<QPushButton *>(QStringLiteral("cmdOther"));
}

/// Waits until the question has been in sight for long enough to be answered.
inline void waitUntilAnswerable(PageQuestionBox *box)
{
    const QPointer<PageQuestionBox> question(box);
    QTRY_VERIFY(!question || question->isAnswerable());
}

/// Presses a button of a question as soon as that takes an answer, in the window in front.
inline void press(QPushButton *button)
{
    const QPointer<QPushButton> pressed(button);
    QWidget *around = button;
    while (around && !qobject_cast<QMdiSubWindow *>(around))
        around = around->parentWidget();
    if (auto *window = qobject_cast<QMdiSubWindow *>(around))
        window->mdiArea()->setActiveSubWindow(window);
    QTRY_VERIFY(!pressed || pressed->isEnabled());
    if (pressed)
        pressed->click();
}

inline QCheckBox *noMore(const PageQuestionBox *box)
{
    return box->findChild<QCheckBox *>(QStringLiteral("chkNoMore"));
}

}

/// Does something each time a window shows a new question, as soon as it takes an answer, also
/// while the engine waits inside the test's own waiting.
class WhenAsked : public QObject {

public:
    using Act = std::function<void(PageQuestionBox *box)>;

    WhenAsked(QWidget *form, const Act &act)
        : m_form(form)
    {
        connect(&m_look, &QTimer::timeout, this, [this, act] {
            PageQuestionBox *box = PageAsks::shownIn(m_form);
            if (!box || box == m_last || !box->isAnswerable())
                return;
            m_last = box;
            ++m_count;
            act(box);
        });
        m_look.start(10);
    }
    int count() const { return m_count; }

private:
    QPointer<QWidget> m_form;
    QPointer<PageQuestionBox> m_last;
    QTimer m_look;
    int m_count = 0;
};
