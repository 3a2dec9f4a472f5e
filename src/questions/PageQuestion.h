#pragma once

#include <QString>
#include <QUrl>
#include <functional>

class QWidget;

/// What a page, or the server it comes from, asks the user in its window.
struct PageQuestion {
    /// Ended: the page or its window went away, or the user turned elsewhere.
    enum class Answer { No, Yes, Ended };

    /// What it is about. A window asks one of a kind at a time.
    QString kind;
    /// Who asks, or the headline. Plain text, like all the rest.
    QString title;
    QString text;
    /// The buttons; without a caption for No there is one button, and Escape presses it.
    QString yes;
    QString no;
    /// Makes what is to be filled in between text and buttons, with the first field as its focus
    /// proxy; may be left out.
    std::function<QWidget *(QWidget *parent)> fields = {};
    /// Called once, while the fields are there still; may be left out.
    std::function<void(Answer)> done = {};
    /// No holds for all questions of the kind until the user does something with the page.
    bool noHolds = false;
    /// Where a page comes that leaves the question standing; empty: none.
    QUrl staysAt = {};
};
