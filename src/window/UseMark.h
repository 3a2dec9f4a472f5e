#pragma once

#include <QAbstractButton>

/// Says that a page uses the camera, the microphone or the screen; pressed, it ends that.
class UseMark : public QAbstractButton {
    Q_OBJECT

public:
    explicit UseMark(QWidget *parent);

    /// What is in use, in words; empty hides the mark.
    void setUse(const QString &text);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
