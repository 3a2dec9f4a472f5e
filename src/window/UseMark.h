#pragma once

#include "StripMark.h"

/// Says that a page uses the camera, the microphone or the screen; pressed, it ends that.
class UseMark : public StripMark {
    Q_OBJECT

public:
    explicit UseMark(QWidget *parent);

    /// What is in use, in words; empty hides the mark.
    void setUse(const QString &text);

protected:
    int signWidth() const override;
    void paintSign(QPainter &painter, const QRect &place) override;
};
