#pragma once

#include "StripMark.h"

/// Says how large the page is shown where that is not as usual; pressed, it makes it so.
class ZoomMark : public StripMark {
    Q_OBJECT

public:
    explicit ZoomMark(QWidget *parent);

    void setPercent(int percent);
};
