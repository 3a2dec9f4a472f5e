#pragma once

#include <QWidget>

class RichTextBox;

/// The column of line numbers beside a box's text. Rows that only go on with a long line have dots
/// for a number.
class LineNumbers : public QWidget {
    Q_OBJECT

public:
    explicit LineNumbers(RichTextBox *box);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    RichTextBox *m_box;
};
