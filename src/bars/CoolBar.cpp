#include "CoolBar.h"

#include "ChevronButton.h"
#include "CoolBand.h"
#include "CoolBarDrag.h"
#include "CoolBarLayout.h"
#include "CoolBarPaint.h"
#include "Log.h"
#include "TabOrder.h"
#include "Texts.h"
#include "Twips.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"CoolBar"> texts;
}

CoolBar::CoolBar(QWidget *parent)
    : QWidget(parent)
    , m_drag(std::make_unique<CoolBarDrag>(this))
    , m_chevronName(texts.at<"strMore", "More Buttons">.inEnglish())
{
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

CoolBar::~CoolBar() = default;

CoolBand *CoolBar::addBand(const QString &key, QWidget *child, const QString &caption,
                           double designWidthTwips, bool newRow)
{
    if (band(key))
        qCWarning(lcFrame) << "two bands have the key" << key;
    auto *band = new CoolBand(this, key, child, designWidthTwips, newRow);
    band->m_chevron->setAccessibleName(m_chevronName);
    band->m_chevron->setToolTip(m_chevronName);
    m_bands.append(band);
    m_tabOrder.append(band);
    band->setCaption(caption);
    bandsChanged();
    return band;
}

CoolBand *CoolBar::band(int position) const
{
    return position >= 1 && position <= bandCount() ? m_bands.at(position - 1) : nullptr;
}

CoolBand *CoolBar::band(const QString &key) const
{
    for (CoolBand *band : m_bands) {
        if (band->key() == key)
            return band;
    }
    return nullptr;
}

void CoolBar::setDock(Dock dock)
{
    if (dock == m_dock)
        return;
    m_dock = dock;
    bandsChanged();
}

void CoolBar::translate()
{
    m_chevronName = texts.at<"strMore", "More Buttons">(m_chevronName);
    for (CoolBand *band : std::as_const(m_bands)) {
        band->setName(texts.named("str"_L1 + band->key(), band->name()));
        band->m_chevron->setAccessibleName(m_chevronName);
        band->m_chevron->setToolTip(m_chevronName);
    }
}

QList<CoolBar::Row> CoolBar::rows() const
{
    QList<Row> rows;
    for (CoolBand *band : m_bands) {
        if (!band->isVisible())
            continue;
        if (rows.isEmpty() || band->newRow())
            rows.append(Row());
        rows.last().append(band);
    }
    return rows;
}

namespace {
int rowHeight(const QList<int> &heights)
{
    return heights.isEmpty() ? 0 : *std::max_element(heights.begin(), heights.end());
}
}

QSize CoolBar::sizeHint() const
{
    int height = CoolBarPaint::edgePixels;
    const QList<Row> all = rows();
    for (const Row &row : all) {
        QList<int> heights;
        for (const CoolBand *band : row)
            heights.append(band->heightPixels());
        height += rowHeight(heights);
    }
    height += int(std::max<qsizetype>(0, all.size() - 1)) * CoolBarPaint::linePixels;
    return QSize(400, height);
}

QSize CoolBar::minimumSizeHint() const
{
    return QSize(60, sizeHint().height());
}

void CoolBar::bandsChanged()
{
    updateGeometry();
    if (m_tabOrder != m_bands)
        followOrder();
    layOut();
}

// Every band's widgets stand together and keep their order: gripper, child, chevron.
void CoolBar::followOrder()
{
    m_tabOrder = m_bands;
    QWidget *last = nullptr;
    for (CoolBand *band : std::as_const(m_bands)) {
        const QList<QWidget *> stops = band->tabStops();
        for (QWidget *stop : stops) {
            if (last)
                putInTabOrder(last, stop);
            last = stop;
        }
    }
}

void CoolBar::layOut()
{
    int top = m_dock == Dock::Bottom ? CoolBarPaint::edgePixels : 0;
    const QList<Row> all = rows();
    for (const Row &row : all) {
        QList<int> heights;
        for (const CoolBand *band : row)
            heights.append(band->heightPixels());
        layOutRow(row, top, rowHeight(heights));
        top += rowHeight(heights) + CoolBarPaint::linePixels;
    }
    for (CoolBand *band : std::as_const(m_bands)) {
        if (!band->isVisible())
            band->place({});
    }
    update();
    emit laidOut();
}

void CoolBar::layOutRow(const Row &row, int top, int height)
{
    QList<CoolBarLayout::Wish> wishes;
    for (const CoolBand *band : row)
        wishes.append({band->width() / Twips::perPixel, band->minimumPixels()});
    const QList<int> widths = CoolBarLayout::fit(wishes, width());
    int left = 0;
    for (qsizetype i = 0; i < row.size(); ++i) {
        row.at(i)->place(QRect(left, top, widths.at(i), height));
        left += widths.at(i);
    }
}

CoolBand *CoolBar::bandWithHandleAt(QPoint pos) const
{
    for (CoolBand *band : m_bands) {
        if (band->handle().contains(pos))
            return band;
    }
    return nullptr;
}

bool CoolBar::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::LayoutRequest: // a child needs another size
    case QEvent::StyleChange:
    case QEvent::FontChange:
        bandsChanged();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void CoolBar::resizeEvent(QResizeEvent *)
{
    layOut();
}

void CoolBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    CoolBarPaint::edge(painter, rect(), palette(), m_dock == Dock::Bottom);
    for (const CoolBand *band : std::as_const(m_bands)) {
        if (!band->geometry().isNull())
            CoolBarPaint::band(painter, rect(), band->geometry(), palette());
    }
}

void CoolBar::mousePressEvent(QMouseEvent *event)
{
    CoolBand *band = bandWithHandleAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !band)
        return m_drag->cancel();
    m_drag->start(band, event->position().toPoint());
}

void CoolBar::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint pos = event->position().toPoint();
    if (m_drag->isActive())
        m_drag->move(pos);
    else if (bandWithHandleAt(pos))
        setCursor(Qt::SizeHorCursor);
    else
        unsetCursor();
}

void CoolBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_drag->drop(event->position().toPoint());
}

void CoolBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    CoolBand *band = bandWithHandleAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && band)
        toggleMaximized(band);
}

void CoolBar::keyPressEvent(QKeyEvent *event)
{
    // The bar has the keyboard only while a band is dragged.
    if (event->key() == Qt::Key_Escape && m_drag->isActive())
        m_drag->cancel();
    else
        QWidget::keyPressEvent(event);
}

void CoolBar::toggleMaximized(CoolBand *band)
{
    const QList<Row> all = rows();
    const auto found =
        std::find_if(all.begin(), all.end(), [band](const Row &row) { return row.contains(band); });
    if (found == all.end() || found->size() < 2)
        return;
    const Row &row = *found;
    int most = width();
    for (const CoolBand *other : row)
        most -= other == band ? 0 : other->minimumPixels();
    if (band->geometry().width() < most)
        maximize(band, row, most);
    else
        minimize(band, row);
    bandsChanged();
}

void CoolBar::maximize(CoolBand *band, const Row &row, int pixels)
{
    for (CoolBand *other : row.first(row.size() - 1))
        other->m_width = Twips::fromPixels(other == band ? pixels : other->minimumPixels());
}

// The room goes to the band before it, or after it where it is the first.
void CoolBar::minimize(CoolBand *band, const Row &row)
{
    const int freed = band->geometry().width() - band->minimumPixels();
    const auto k = row.indexOf(band);
    CoolBand *heir = row.at(k > 0 ? k - 1 : 1);
    for (CoolBand *other : row.first(row.size() - 1)) {
        int pixels = other->geometry().width();
        if (other == band)
            pixels -= freed;
        else if (other == heir)
            pixels += freed;
        other->m_width = Twips::fromPixels(pixels);
    }
}
