#include "PopupBudget.h"

#include "PageQuestions.h"
#include "Texts.h"

#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

bool PopupBudget::mayOpen(const QString &url, const QUrl &asker, PageQuestions &questions,
                          const Open &open)
{
    if (m_answer == Answer::Yes && m_waiting.isEmpty())
        return true;
    if (m_answer == Answer::No)
        return false;
    if (m_answer == Answer::None && m_opened < unaskedWindows) {
        ++m_opened;
        return true;
    }
    if (m_waiting.size() < waitingWindows)
        m_waiting.append(url);
    if (m_answer == Answer::None) {
        m_questions = &questions;
        m_open = open;
        ask(asker);
    }
    return false;
}

void PopupBudget::giveBack()
{
    if (m_opened > 0)
        --m_opened;
}

void PopupBudget::ask(const QUrl &asker)
{
    m_answer = Answer::Asked;
    PageQuestion question;
    question.kind = u"windows"_s;
    question.asker = asker;
    question.text = Texts<"frmBrowser">::at<
        "strManyWindows",
        "This page has opened many windows by itself and wants to open more. "
        "Do you want to allow this?">();
    question.yes = Texts<"PageQuestions">::at<"cmdYes", "Yes">();
    question.no = Texts<"PageQuestions">::at<"cmdNo", "No">();
    question.done = [self = weak_from_this()](PageQuestion::Reply reply) {
        const std::shared_ptr<PopupBudget> budget = self.lock();
        if (!budget)
            return;
        // A page that has gone was not answered; the next one may ask.
        const bool ended = reply.answer == PageQuestion::Answer::Ended;
        const bool yes = reply.answer == PageQuestion::Answer::Yes;
        budget->take(ended ? Answer::None : yes ? Answer::Yes : Answer::No);
    };
    if (!m_questions->ask(question))
        take(Answer::No);
}

void PopupBudget::take(Answer answer)
{
    m_answer = answer;
    if (answer == Answer::Yes)
        openNext();
    else
        m_waiting.clear();
}

void PopupBudget::openNext()
{
    if (!m_questions)
        m_waiting.clear();
    if (m_waiting.isEmpty())
        return;
    m_open(m_waiting.takeFirst());
    QTimer::singleShot(0, m_questions.data(), [self = weak_from_this()] {
        if (const std::shared_ptr<PopupBudget> budget = self.lock())
            budget->openNext();
    });
}
