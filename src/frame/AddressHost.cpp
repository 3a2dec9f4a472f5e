#include "AddressHost.h"

#include "AddressBox.h"

namespace {
constexpr int rightMargin = 13;
constexpr int usableWidth = 80;
}

AddressHost::AddressHost(AddressBox &bar, QWidget *parent)
    : QWidget(parent)
    , m_bar(bar)
{
    m_bar.setParent(this);
    setFocusProxy(&m_bar);
}

QSize AddressHost::sizeHint() const
{
    return m_bar.sizeHint();
}

QSize AddressHost::minimumSizeHint() const
{
    return {usableWidth, m_bar.sizeHint().height()};
}

void AddressHost::resizeEvent(QResizeEvent *)
{
    place();
}

void AddressHost::moveEvent(QMoveEvent *)
{
    place();
}

void AddressHost::place()
{
    const int left = mapTo(window(), QPoint(0, 0)).x();
    const int room = window()->width() - left - rightMargin;
    const int height = std::min(m_bar.sizeHint().height(), this->height());
    m_bar.setGeometry(0, (this->height() - height) / 2, std::max(0, std::min(width(), room)),
                      height);
}
