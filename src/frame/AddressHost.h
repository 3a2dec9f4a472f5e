#pragma once

#include <QWidget>

class brwURL;

/// Holds the address bar in its band. The bar's right edge stays 200 twips short of the frame's
/// width, or ends with the band where the band ends earlier.
class AddressHost : public QWidget {
    Q_OBJECT

public:
    AddressHost(brwURL &bar, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    void place();

    brwURL &m_bar;
};
