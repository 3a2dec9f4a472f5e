#pragma once

#include <QObject>

class QWidget;

/// Sees to it that hints in fields and empty lists can be read. The palettes of some desktops leave
/// their colour out: it is that of a light palette then, dark on dark.
class LegibleHints : public QObject {
    Q_OBJECT

public:
    /// From now on for the whole program, as long as `window` is there.
    explicit LegibleHints(QWidget &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static void mend();
};
