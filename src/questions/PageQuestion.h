#pragma once

#include <QString>
#include <QUrl>
#include <functional>

class QWidget;

/// What a page, or the server it comes from, asks the user in its window.
struct PageQuestion {
    /// Ended: the page or its window went away, or the user turned elsewhere.
    enum class Answer { No, Yes, Other, Ended };

    struct Reply {
        Answer answer = Answer::Ended;
        /// The user wants it to hold for the site from now on; never with `Ended`.
        bool isRemembered = false;
    };

    /// Strip: docked above the page, which goes on meanwhile; takes no keyboard by itself.
    /// Box: over the page, for a script that waits for the answer.
    enum class Shape { Strip, Box };

    /// What it is about. A window asks one of a kind at a time.
    QString kind;
    /// Who asks, shown as `shownSite` writes it; empty: the title says it.
    QUrl asker = {};
    /// The page around the frame that asks; empty, or of the asker's site: it is not named.
    QUrl around = {};
    /// The headline; may be left out. Plain text, like all the rest.
    QString title = {};
    QString text = {};
    /// The buttons; without a caption for No there is one button, and Escape presses it.
    QString yes = {};
    QString no = {};
    /// A third one, between them; may be left out.
    QString other = {};
    /// Offers a box to tick, "Remember for this site".
    bool remember = false;
    Shape shape = Shape::Strip;
    /// Makes what is to be filled in between text and buttons, with the first field as its focus
    /// proxy; may be left out.
    std::function<QWidget *(QWidget *parent)> fields = {};
    /// Called once, while the fields are there still; may be left out.
    std::function<void(Reply)> done = {};
    /// It is the program that asks, about the page: at once, however often the page has asked, and
    /// also where it is not heard.
    bool isOurs = false;
    /// No holds for all questions of the kind until the user does something with the page.
    bool noHolds = false;
    /// Where a page comes that leaves the question standing; empty: none.
    QUrl staysAt = {};
};
