// Questions whose answer the engine waits for.
#include "PageQuestions.h"

#include <QEvent>
#include <QEventLoop>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <memory>

namespace {
bool waiting = false;

/// Tells when the frame's own window is minimized or comes back.
class WindowWatch : public QObject {
public:
    WindowWatch(QWidget *window, const std::function<void()> &changed)
        : m_changed(changed)
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::WindowStateChange || event->type() == QEvent::Hide)
            m_changed();
        return false;
    }

private:
    std::function<void()> m_changed;
};
}

PageQuestions::Answer PageQuestions::askAndWait(PageQuestion question)
{
    // All pages stand still during one, so that a second can only come by way of the first's.
    if (m_silenced || waiting || !isInFront())
        return Answer::Ended;
    const QPointer<PageQuestions> self(this);
    const QString kind = question.kind;
    Answer answer = Answer::Ended;
    QEventLoop loop;
    question.done = [&answer, &loop, done = question.done](Answer given) {
        answer = given;
        if (done)
            done(given);
        loop.quit();
    };
    put(0, question, true);
    auto *window = qobject_cast<QMdiSubWindow *>(m_client->parentWidget());
    const auto look = [self, kind] {
        if (self && !self->isInFront())
            self->end(kind);
    };
    connect(window->mdiArea(), &QMdiArea::subWindowActivated, &loop, look);
    connect(window, &QMdiSubWindow::windowStateChanged, &loop, look);
    const WindowWatch watch(window->window(), look);
    waiting = true;
    loop.exec();
    waiting = false;
    // The program is ending.
    if (self && self->isAsking(kind))
        self->end(kind);
    return answer;
}
