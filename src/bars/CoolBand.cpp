#include "CoolBand.h"

#include "BandGrip.h"
#include "ChevronButton.h"
#include "CoolBar.h"
#include "Overflow.h"

#include <QLabel>
#include <algorithm>
#include <cmath>

namespace {
constexpr int captionGap = 5;
constexpr int endGap = 3;
constexpr int leastChildPixels = 44;
constexpr int rowPadding = 2;
}

CoolBand::CoolBand(CoolBar *bar, const QString &key, QWidget *child, double width, bool newRow)
    : QObject(bar)
    , m_bar(bar)
    , m_key(key)
    , m_child(child)
    , m_name(key)
    , m_grip(new BandGrip(*bar, *this))
    , m_label(new QLabel(bar))
    , m_width(std::isfinite(width) ? width : 0)
    , m_newRow(newRow)
{
    child->setParent(bar); // after the gripper and before the chevron: so the Tab key goes
    child->show();
    // Else it would show the bar's own shape, which changes over the handles.
    if (!child->testAttribute(Qt::WA_SetCursor))
        child->setCursor(Qt::ArrowCursor);
    m_chevron = new ChevronButton(child, bar);
    m_chevron->setCursor(Qt::ArrowCursor);
    // Mouse events on the caption are the bar's: it is part of the handle.
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_label->setBuddy(child);
    m_label->hide();
    m_chevron->hide();
    connect(child, &QObject::destroyed, this, [this] { m_child = nullptr; });
}

void CoolBand::setName(const QString &name)
{
    m_name = name;
    m_grip->translate();
    if (m_child && m_label->text().isEmpty())
        m_child->setAccessibleName(name);
}

QString CoolBand::caption() const
{
    return m_label->text();
}

void CoolBand::setCaption(const QString &caption)
{
    if (caption == m_label->text())
        return;
    m_label->setText(caption);
    m_bar->bandsChanged();
}

void CoolBand::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    m_bar->bandsChanged();
}

void CoolBand::setNewRow(bool newRow)
{
    if (newRow == m_newRow)
        return;
    m_newRow = newRow;
    m_bar->bandsChanged();
}

void CoolBand::setWidth(double twips)
{
    if (!std::isfinite(twips) || twips == m_width)
        return;
    m_width = twips;
    m_bar->bandsChanged();
}

QRect CoolBand::handle() const
{
    if (m_geometry.isNull())
        return {};
    int width = BandGrip::pixels;
    if (!m_label->text().isEmpty())
        width += m_label->sizeHint().width() + captionGap;
    return QRect(m_geometry.topLeft(),
                 QSize(std::min(width, m_geometry.width()), m_geometry.height()));
}

QRect CoolBand::childArea() const
{
    if (m_geometry.isNull())
        return {};
    QRect area = m_geometry.adjusted(handle().width(), 0, 0, 0);
    const int end = hasChevron() ? ChevronButton::pixels + 1 : endGap;
    area.setWidth(std::max(0, area.width() - end));
    return area;
}

bool CoolBand::hasChevron() const
{
    return !m_chevron->isHidden();
}

QList<QWidget *> CoolBand::tabStops() const
{
    QList<QWidget *> stops{m_grip};
    if (m_child) {
        QWidget *each = m_child;
        do {
            // One with a proxy goes with it.
            if ((each == m_child || m_child->isAncestorOf(each)) && !each->focusProxy())
                stops.append(each);
            each = each->nextInFocusChain();
        } while (each != m_child);
    }
    stops.append(m_chevron);
    return stops;
}

int CoolBand::minimumPixels() const
{
    const int child = m_child ? m_child->minimumSizeHint().width() : 0;
    return BandGrip::pixels + std::clamp(child, ChevronButton::pixels, leastChildPixels) + endGap;
}

int CoolBand::heightPixels() const
{
    int height = m_label->text().isEmpty() ? 0 : m_label->sizeHint().height();
    if (m_child) {
        const int wanted = std::max(m_child->sizeHint().height(), m_child->minimumHeight());
        height = std::max(height, std::min(wanted, m_child->maximumHeight()));
    }
    return std::max(height, int(ChevronButton::pixels)) + 2 * rowPadding;
}

void CoolBand::place(const QRect &geometry)
{
    m_geometry = geometry;
    m_grip->setVisible(!geometry.isNull());
    m_grip->setGeometry(QRect(geometry.topLeft(), QSize(BandGrip::pixels, geometry.height())));
    if (!m_child)
        return;
    if (geometry.isNull()) {
        m_child->hide();
        m_label->hide();
        m_chevron->hide();
        return;
    }
    QRect label = handle().adjusted(BandGrip::pixels, 0, 0, 0);
    label.setWidth(std::min(label.width(), m_label->sizeHint().width()));
    m_label->setGeometry(label);
    m_label->setVisible(!m_label->text().isEmpty() && label.width() > 0);

    const auto *overflow = dynamic_cast<Overflow *>(m_child);
    const int space = geometry.width() - handle().width() - endGap;
    placeChild(overflow && overflow->fullWidth() > space);
}

void CoolBand::placeChild(bool chevron)
{
    if (chevron) {
        QRect area(m_geometry);
        area.setLeft(std::max(area.left(), area.right() + 1 - ChevronButton::pixels));
        m_chevron->setGeometry(area.adjusted(0, rowPadding, 0, -rowPadding));
    }
    m_chevron->setVisible(chevron);

    const QRect area = childArea();
    QRect place = area.adjusted(0, rowPadding, 0, -rowPadding);
    if (!(m_child->sizePolicy().verticalPolicy() & QSizePolicy::ExpandFlag)) {
        const int height = std::min(place.height(), m_child->sizeHint().height());
        place.setTop(area.top() + (area.height() - height) / 2);
        place.setHeight(height);
    }
    m_child->setGeometry(place);
    m_child->setVisible(area.width() > 0);
}
