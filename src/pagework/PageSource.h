#pragma once

#include <QString>
#include <functional>

class QWidget;
class WebPage;

/// The text that a page was made from, as its server sent it.
struct PageSource {
    enum class Outcome {
        Came,
        /// The page is gone, or the user does not want to wait.
        Nothing,
        /// It may be the answer to a form, which is not sent again.
        AnswerToForm,
        /// A picture or the like.
        NoText,
        /// Its server, or whoever else it is from, does not give it again.
        Missing
    };

    Outcome outcome = Outcome::Nothing;
    /// In the encoding that the engine found the page to be in.
    QString text;

    /// Hands the source of `page` to `done`, later, unless the page goes first. What takes a while
    /// shows so over `owner`.
    static void read(WebPage &page, QWidget *owner,
                     const std::function<void(const PageSource &)> &done);
};
