#pragma once

#include "PageQuestion.h"
#include "SteadySight.h"

#include <QFrame>
#include <QPointer>

class QCheckBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class Text;

/// A question at the top of a page, inside its window: a strip across all of it, or a box. Return
/// presses the button with the focus, or, where something is filled in, the first one; Escape gives
/// the answer that changes nothing. Neither they nor the buttons do anything before the question
/// has been in sight for half a second without a break (`SteadySight`), nor while the user types
/// on.
class PageQuestionBox : public QFrame {
    Q_OBJECT

public:
    /// `offersSilence`: with a box to tick against further questions.
    PageQuestionBox(const PageQuestion &question, bool offersSilence, QWidget *parent);

    /// Places itself into a client area of that size, pixels. Not over more than half of it, if
    /// that is enough for all but a long text, which is scrolled. All of it is where there is no
    /// room even for that, from the one who asks on.
    void fitInto(const QSize &room);
    /// The client area that holds all of it, with a line of the text.
    QSize leastRoom() const;
    /// Tells screen readers.
    void announce();
    /// Gives the fields the keyboard, or the first button.
    void takeFocus();
    /// Has fields to be filled in.
    bool hasFields() const { return m_fields != nullptr; }
    /// Answers are taken now.
    bool isAnswerable() { return m_sight.isOver(); }
    bool wantsSilence() const;
    /// "Remember for this site" is ticked.
    bool wantsRemembered() const;
    /// Keeps Tab inside, as nothing beside the box can be used.
    void setKeepsFocus(bool keeps) { m_keepsFocus = keeps; }

signals:
    void answered(PageQuestion::Answer answer);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void nameFor(const PageQuestion &question);
    QLabel *addLabel(const char *name, const QString &text);
    void addHead(const PageQuestion &question);
    void addText(const QString &text);
    void addButtons(const PageQuestion &question);
    void addTicks(const PageQuestion &question, bool offersSilence);
    void placeButtons(bool beside);
    int askerWidth() const;
    int longestWord() const;
    void breakText(int width);
    QSize layOutBody(int width, int most);
    bool isInView(const QWidget *widget) const;
    QRegion vital() const;
    void setAnswerable(bool on);
    void answer(PageQuestion::Answer answer, QWidget *button);
    void pressFocused();

    const PageQuestion::Shape m_shape;
    SteadySight m_sight;
    /// All that is seen, in a view that is smaller where there is no room for it.
    QWidget *m_body = nullptr;
    QScrollArea *m_view = nullptr;
    QGridLayout *m_grid = nullptr;
    /// Or the headline, where nobody is named.
    QLabel *m_asker = nullptr;
    QScrollArea *m_scroll = nullptr;
    QLabel *m_text = nullptr;
    QWidget *m_fields = nullptr;
    QWidget *m_ticks = nullptr;
    QWidget *m_buttons = nullptr;
    QCheckBox *m_silence = nullptr;
    QCheckBox *m_remember = nullptr;
    QPushButton *m_yes = nullptr;
    QPushButton *m_no = nullptr;
    /// Had the keyboard before the buttons were taken out of use.
    QPointer<QWidget> m_focusLater;
    bool m_keepsFocus = false;
    /// There is no room for all of it.
    bool m_isScrolled = false;
};
