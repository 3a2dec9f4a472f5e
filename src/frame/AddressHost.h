#pragma once

#include <QWidget>

class AddressBox;

/// Holds the address bar in its band. The bar's right edge stays 13 pixels short of the frame's
/// width, or ends with the band where the band ends earlier.
class AddressHost : public QWidget {
    Q_OBJECT

public:
    AddressHost(AddressBox &bar, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    void place();

    AddressBox &m_bar;
};
