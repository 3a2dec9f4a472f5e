#pragma once

#include "WriteResult.h"

#include <QGroupBox>

class QSpinBox;

/// When windows that nobody looks at give their pages up.
class SleepOptions : public QGroupBox {
    Q_OBJECT

public:
    SleepOptions();

    void fill();
    WriteResult write() const;

private:
    QSpinBox *m_after;
    QSpinBox *m_memory;
};
