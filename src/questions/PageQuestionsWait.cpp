// Questions whose answer the engine waits for.
#include "PageQuestionBox.h"
#include "PageQuestions.h"
#include "Yield.h"

#include <QEvent>
#include <QEventLoop>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <functional>

namespace {
bool waiting = false;

/// Tells when the frame's own window is minimized or comes back, and when a dialog opens before it.
class WindowWatch : public QObject {
public:
    WindowWatch(QWidget *window, const std::function<void()> &changed)
        : m_changed(changed)
    {
        window->installEventFilter(this);
        if (window->windowHandle())
            window->windowHandle()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::WindowStateChange || event->type() == QEvent::Hide)
            m_changed();
        else if (event->type() == QEvent::WindowBlocked)
            QTimer::singleShot(0, this, m_changed);
        return false;
    }

private:
    std::function<void()> m_changed;
};
}

/// It is not kept twice: a page that says something each time the user comes would heap it up.
void PageQuestions::release(int number)
{
    const qsizetype place = placeOf(number);
    if (place < 0 || !m_entries.at(place).waits)
        return;
    const PageQuestion asked = m_entries.at(place).question;
    const auto saysTheSame = [&](const Entry &each) {
        return each.number != number && each.question.kind == asked.kind;
    };
    if (!asked.no.isEmpty() || std::any_of(m_entries.begin(), m_entries.end(), saysTheSame)) {
        finish(number, Answer::Ended);
        return;
    }
    Entry &entry = m_entries[place];
    entry.waits = false;
    entry.question.done = {};
    if (entry.box)
        entry.box->setKeepsFocus(false);
    showFirst();
    asked.done({});
}

/// All pages stand still during one, so that a second can only come by way of the first's. Windows
/// that are being opened, one after the other, would all have to wait as well.
bool PageQuestions::mayWait() const
{
    return !waiting && !arePendingEventsRunning() && isInFront();
}

PageQuestions::Answer PageQuestions::askAndWait(PageQuestion question)
{
    if (m_silenced || !mayWait())
        return Answer::Ended;
    const QPointer<PageQuestions> self(this);
    Answer answer = Answer::Ended;
    QEventLoop loop;
    question.done = [&answer, &loop, done = question.done](PageQuestion::Reply given) {
        answer = given.answer;
        if (done)
            done(given);
        loop.quit();
    };
    const int number = put(0, question, true);
    auto *window = qobject_cast<QMdiSubWindow *>(m_client->parentWidget());
    const auto look = [self, number] {
        if (self && !self->isInFront())
            self->release(number);
    };
    connect(window->mdiArea(), &QMdiArea::subWindowActivated, &loop, look);
    connect(window, &QMdiSubWindow::windowStateChanged, &loop, look);
    const WindowWatch watch(window->window(), look);
    waiting = true;
    loop.exec();
    waiting = false;
    // The program is ending.
    const qsizetype left = self ? self->placeOf(number) : -1;
    if (left >= 0 && self->m_entries.at(left).waits)
        self->finish(number, Answer::Ended);
    return answer;
}
