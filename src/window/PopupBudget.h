#pragma once

#include <QPointer>
#include <QStringList>
#include <functional>
#include <memory>

class PageQuestions;
class QUrl;

/// How many windows the pages of one family have opened without the user's doing: a window's
/// pages, and those of the windows that these opened by themselves. Beyond a number that no honest
/// page needs, the rest wait until the user has answered one question for all of them.
class PopupBudget : public std::enable_shared_from_this<PopupBudget> {
public:
    static constexpr int unaskedWindows = 50;
    /// How many addresses wait at most; further ones are refused.
    static constexpr int waitingWindows = 50;

    /// Opens a window that has waited.
    using Open = std::function<void(const QString &url)>;

    /// Whether a window may open now for the page at `asker`. False: it is refused, or waits for
    /// the answer; then `open` is called later, for one address in each turn of the event loop,
    /// while `questions` live.
    bool mayOpen(const QString &url, const QUrl &asker, PageQuestions &questions, const Open &open);
    /// No further window opens or waits.
    bool isClosed() const { return m_answer == Answer::No || m_waiting.size() >= waitingWindows; }
    /// A window that was counted has closed itself before it showed anything.
    void giveBack();

private:
    enum class Answer { None, Asked, Yes, No };

    void ask(const QUrl &asker);
    void take(Answer answer);
    void openNext();

    QStringList m_waiting;
    QPointer<PageQuestions> m_questions;
    Open m_open;
    Answer m_answer = Answer::None;
    int m_opened = 0;
};
