#pragma once

#include "TextFinder.h"

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QWebEnginePage;
class Text;

/// Finds text in a page while it is typed, and tells which hit of how many is shown.
class PageFindBar : public QWidget {
    Q_OBJECT

public:
    PageFindBar(QWebEnginePage *page, QWidget *parent);

    /// Shows the bar with the page's selected words, if any, and takes the focus.
    void open();
    /// The next or previous hit of what was looked for last, in whatever window; shows the bar.
    void again(bool backwards);
    /// Hides the bar; the hit stays selected in the page.
    void dismiss();
    /// Takes one row, or two where one of `width` pixels leaves too little to type in, and returns
    /// the height of that.
    int arrangeFor(int width);

signals:
    void opened();
    void dismissed();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPushButton *addButton(const Text &caption);
    void arrange(bool inTwoRows);
    QCheckBox *addSwitch(const Text &caption, bool isOn);
    void find(bool backwards);
    void findAnew();
    void takeLast();
    TextFinder::Query query() const;
    void showResult(int active, int hits, bool isMore);
    void setResult(const QString &text);

    QPointer<QWebEnginePage> m_page;
    QHBoxLayout *m_upper;
    QHBoxLayout *m_lower;
    QLabel *m_label;
    QLineEdit *m_text;
    QCheckBox *m_matchCase;
    QCheckBox *m_wholeWord;
    QLabel *m_result;
    QPushButton *m_previous;
    QPushButton *m_next;
    QPushButton *m_close;
    TextFinder *m_finder;
    bool m_inTwoRows = false;
};
