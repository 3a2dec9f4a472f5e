#pragma once

#include <QAbstractButton>

/// Words in the status strip that can be pressed, by mouse and keyboard, perhaps behind a sign.
/// There is none while it has no words.
class StripMark : public QAbstractButton {
    Q_OBJECT

public:
    explicit StripMark(QWidget *parent);

    /// `tip` says what a press does; empty words hide the mark.
    void setWords(const QString &words, const QString &tip);

    QSize sizeHint() const override;

protected:
    /// Pixels that the sign is wide; 0: there is none.
    virtual int signWidth() const { return 0; }
    virtual void paintSign(QPainter &, const QRect &) { }

    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
