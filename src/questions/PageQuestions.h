#pragma once

#include "PageQuestion.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>

class PageQuestionBox;

/// The one place where the pages of a window ask their user something: in the window itself, one
/// question at a time, and nothing but the page waits for the answer. A strip has room of its own
/// above the page, a box comes over it. From the second question on the user can shut the page up
/// until he does something with the page himself. Pages that take their own questions back again
/// and again are shut up at once.
class PageQuestions : public QObject {
    Q_OBJECT

public:
    using Answer = PageQuestion::Answer;

    /// For an inner window's client area, over which the questions come up. Becomes its child.
    explicit PageQuestions(QWidget *client);
    ~PageQuestions() override;

    /// Asks when the questions before are answered. False, and nobody is told: the page is shut
    /// up, a question of that kind waits already, or too many do.
    bool ask(const PageQuestion &question);
    /// For an engine that waits for the answer: asks at once, and returns with it. While that
    /// lasts, all pages stand still, so that it ends with `Ended` as soon as the window is no
    /// longer the one in front, and at once where it is not; what only tells something stays there
    /// to be read. May return after the window has gone.
    Answer askAndWait(PageQuestion question);
    /// Whether it would ask: the window is in front, and nothing but the engine waits.
    bool mayWait() const;
    /// A question of that kind is shown or waits.
    bool isAsking(const QString &kind) const;
    /// Whether a page may do unasked what it did not do before since the user did something with
    /// it; it counts as a question.
    bool mayGoAhead();
    bool isSilenced() const { return m_silenced; }
    /// The question that is shown; null: none.
    QWidget *shownQuestion() const;
    /// What the strip takes of the client area at its top, pixels; 0: there is none.
    int stripHeight() const { return m_stripHeight; }
    /// The window is the frame's active one, seen, and no dialog keeps the user from it.
    bool isInFront() const;

    /// The user typed an address, clicked a link, chose a favorite, went back or loaded anew.
    void userActed();
    /// The page at `url` has come. What the page before it asked is no longer of interest.
    void pageChanged(const QUrl &url);
    /// Ends all questions: the page has gone, or the user asked for something else.
    void endAll();
    void end(const QString &kind);
    /// The page asks for something else in its place. It is shut up if that goes on and on.
    void takeBack(const QString &kind);

signals:
    /// A question is being shown, and the window is to be seen.
    void shown();
    /// `stripHeight` is another.
    void stripChanged();
    /// The client area is too small for the question, which needs that size.
    void roomNeeded(const QSize &size);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry {
        PageQuestion question;
        QPointer<PageQuestionBox> box;
        int number = 0;
        bool waits = false;
    };

    /// The number of the new entry.
    int put(qsizetype place, const PageQuestion &question, bool waits);
    void finish(int number, Answer answer);
    void takeBack(const QList<int> &numbers, const QString &page);
    /// Nobody waits any more for the answer.
    void release(int number);
    qsizetype placeOf(int number) const;
    void showFirst();
    void placeBox();
    void setStripHeight(int height);
    /// The keyboard comes to it by itself.
    bool wantsKeyboard() const;
    void giveFocusBack();
    void followFocus(QWidget *old, QWidget *now);
    void takeFocusHere();
    PageQuestionBox *shownBox() const;

    QWidget *m_client;
    /// Keeps the mouse off a page that stands still.
    QPointer<QWidget> m_cover;
    /// Had the keyboard before the question did.
    QPointer<QWidget> m_focusBefore;
    QList<Entry> m_entries;
    int m_stripHeight = 0;
    int m_lastNumber = 0;
    /// Since the user did something himself.
    int m_asked = 0;
    int m_takenBack = 0;
    QSet<QString> m_refused;
    bool m_silenced = false;
    /// The shown question has not had the keyboard yet.
    bool m_owesFocus = false;
};
