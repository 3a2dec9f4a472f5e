#pragma once

#include <QAbstractButton>

/// A text that acts as a link: clicked by mouse, or by Space or Enter while it has the focus.
class LinkLabel : public QAbstractButton {
    Q_OBJECT

public:
    explicit LinkLabel(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
