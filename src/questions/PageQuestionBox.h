#pragma once

#include "PageQuestion.h"

#include <QFrame>

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollArea;
class Text;

/// A question at the top of a page, inside its window. Return presses the button with the focus,
/// or the first one; Escape gives the answer that changes nothing.
class PageQuestionBox : public QFrame {
    Q_OBJECT

public:
    /// `offersSilence`: with a box to tick against further questions.
    PageQuestionBox(const PageQuestion &question, bool offersSilence, QWidget *parent);

    /// Places the box into a client area of that size, pixels; a long text is scrolled.
    void fitInto(const QSize &room);
    /// Gives the fields the keyboard, or the first button.
    void takeFocus();
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
    QLabel *addLabel(const char *name, const QString &text);
    void addHead(const PageQuestion &question);
    void addText(const QString &text);
    QCheckBox *addTick(const Text &caption);
    void addButtons(const PageQuestion &question);
    void pressFocused();

    QScrollArea *m_scroll = nullptr;
    QLabel *m_text = nullptr;
    QWidget *m_fields = nullptr;
    QCheckBox *m_silence = nullptr;
    QCheckBox *m_remember = nullptr;
    QPushButton *m_yes = nullptr;
    QPushButton *m_no = nullptr;
    bool m_keepsFocus = false;
};
