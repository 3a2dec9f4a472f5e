#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class RichTextBox;
class Text;

/// Finds text in a box, whatever its case, and says how often it is there.
class FindBar : public QWidget {
    Q_OBJECT

public:
    FindBar(RichTextBox *box, QWidget *parent);

    /// Shows the bar with the selected word, if any, and takes the focus.
    void open();
    /// Hides the bar and gives the focus back to the text.
    void dismiss();
    void findNext();
    void findPrevious();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void find(bool backwards, bool fromSelectionStart);
    void count();
    void countSlice();
    void addButton(const Text &caption, void (FindBar::*action)());
    void select(qsizetype at, qsizetype length);

    RichTextBox *m_box;
    QLineEdit *m_text;
    QLabel *m_count;
    QTimer m_recount;
    QTimer m_counting;
    int m_hits = 0;
    qsizetype m_countedTo = 0;
};
