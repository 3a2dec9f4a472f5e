#include "CoolBarDrag.h"

#include "BandMoves.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "CoolBarPaint.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>

namespace {
constexpr int newRowZone = 4; // pixels on each side of the line between two rows, and outside
constexpr int markPixels = 3;

QRect rowRect(const QList<CoolBand *> &row, int width)
{
    const QRect first = row.first()->geometry();
    return QRect(0, first.top(), width, first.height());
}
}

CoolBarDrag::CoolBarDrag(CoolBar *bar)
    : m_bar(bar)
    , m_mark(new QWidget(bar))
{
    m_mark->setBackgroundRole(QPalette::Highlight);
    m_mark->setAutoFillBackground(true);
    m_mark->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_mark->hide();
}

void CoolBarDrag::start(CoolBand *band, QPoint pos)
{
    m_band = band;
    m_press = pos;
    m_grab = pos.x() - band->geometry().left();
    m_moved = false;
    m_before.clear();
    for (CoolBand *each : std::as_const(m_bar->m_bands))
        m_before.append({each, each->m_width, each->m_newRow});
}

void CoolBarDrag::begin()
{
    m_moved = true;
    m_bar->setCursor(Qt::SizeAllCursor);
    m_bar->grabKeyboard(); // Escape, wherever the focus is
}

void CoolBarDrag::end()
{
    if (m_moved) {
        m_bar->releaseKeyboard();
        m_bar->unsetCursor();
    }
    m_band = nullptr;
    m_moved = false;
    m_mark->hide();
}

void CoolBarDrag::move(QPoint pos)
{
    if (!m_moved && (pos - m_press).manhattanLength() < QApplication::startDragDistance())
        return;
    if (m_band->geometry().isNull())
        return end(); // it was hidden meanwhile
    if (!m_moved)
        begin();
    if (isInOwnRow(pos.y()))
        slide(pos.x());
    showMark(markFor(targetAt(pos)));
}

void CoolBarDrag::drop(QPoint pos)
{
    if (!m_band)
        return;
    if (m_moved && !m_band->geometry().isNull()) {
        move(pos);
        apply(targetAt(pos));
    }
    end();
}

void CoolBarDrag::cancel()
{
    if (!m_band)
        return;
    const bool moved = m_moved;
    end();
    if (!moved)
        return;
    for (qsizetype i = 0; i < m_before.size(); ++i) {
        const Before &before = m_before.at(i);
        m_bar->m_bands[i] = before.band;
        before.band->m_width = before.width;
        before.band->m_newRow = before.newRow;
    }
    m_bar->bandsChanged();
}

void CoolBarDrag::showMark(const QRect &place)
{
    m_mark->setGeometry(place);
    m_mark->setVisible(!place.isNull());
    m_mark->raise();
}

bool CoolBarDrag::isInOwnRow(int y) const
{
    const QRect own = m_band->geometry();
    const bool first = own.top() <= CoolBarPaint::edgePixels;
    const bool last = own.bottom() >= m_bar->height() - 1 - CoolBarPaint::edgePixels;
    return y >= own.top() - (first ? newRowZone : 0) && y <= own.bottom() + (last ? newRowZone : 0);
}

CoolBarDrag::Target CoolBarDrag::targetAt(QPoint pos) const
{
    const QList<Row> rows = m_bar->rows();
    if (isInOwnRow(pos.y()))
        return {};
    Target target;
    target.row = newRowAt(pos.y());
    if (target.row >= 0) {
        // A band alone in its row already has a row there.
        const auto own = rows.indexOf(ownRow());
        const bool same = target.row == own || target.row == own + 1;
        return ownRow().size() == 1 && same ? Target() : target;
    }
    for (int i = 0; i < rows.size(); ++i) {
        const QRect rect = rowRect(rows.at(i), m_bar->width());
        if (pos.y() <= rect.bottom() + CoolBarPaint::linePixels)
            return placeInRow(i, pos.x());
    }
    return placeInRow(int(rows.size()) - 1, pos.x());
}

// The row before which a new one would be made, -1 for none.
int CoolBarDrag::newRowAt(int y) const
{
    const QList<Row> rows = m_bar->rows();
    if (y < -newRowZone)
        return 0;
    if (y >= m_bar->height() + newRowZone)
        return int(rows.size());
    for (int i = 1; i < rows.size(); ++i) {
        const int line = rowRect(rows.at(i), m_bar->width()).top();
        if (std::abs(y - line) <= newRowZone)
            return i;
    }
    return -1;
}

CoolBarDrag::Target CoolBarDrag::placeInRow(int row, int x) const
{
    const Row bands = m_bar->rows().at(row);
    Target target{row, 0, 0};
    for (const CoolBand *band : bands) {
        if (x <= band->handle().right())
            break;
        ++target.at;
        target.left = std::max(x - m_grab, band->geometry().left() + band->minimumPixels());
        if (x <= band->geometry().right())
            break;
    }
    if (target.at == 0)
        return target;
    const int end = bands.at(target.at - 1)->geometry().right();
    target.left = std::min(target.left, end);
    return target;
}

QRect CoolBarDrag::markFor(const Target &target) const
{
    if (target.row < 0)
        return {};
    const QList<Row> rows = m_bar->rows();
    if (target.at >= 0) {
        const QRect rect = rowRect(rows.at(target.row), m_bar->width());
        return QRect(target.left, rect.top(), markPixels, rect.height());
    }
    int y = 0;
    if (target.row < rows.size())
        y = rowRect(rows.at(target.row), m_bar->width()).top() - markPixels / 2;
    else
        y = m_bar->height() - markPixels;
    return QRect(0, std::max(0, y), m_bar->width(), markPixels);
}

CoolBarDrag::Row CoolBarDrag::ownRow() const
{
    return BandMoves(*m_bar).rowOf(m_band);
}

void CoolBarDrag::slide(int x)
{
    for (auto swaps = ownRow().size(); swaps > 0 && swapTowards(x); --swaps)
        m_bar->bandsChanged();
    BandMoves(*m_bar).placeLeftEdge(m_band, x - m_grab);
}

// Past a neighbour's handle the two change places.
bool CoolBarDrag::swapTowards(int x)
{
    const Row row = ownRow();
    const auto k = row.indexOf(m_band);
    const bool leftwards = k > 0 && x <= row.at(k - 1)->handle().right();
    const bool rightwards = k + 1 < row.size() && x > row.at(k + 1)->handle().right();
    if (!leftwards && !rightwards)
        return false;
    CoolBand *first = leftwards ? row.at(k - 1) : m_band;
    CoolBand *second = leftwards ? m_band : row.at(k + 1);
    BandMoves(*m_bar).exchange(first, second);
    return true;
}

void CoolBarDrag::apply(const Target &target)
{
    if (target.row < 0)
        return;
    BandMoves moves(*m_bar);
    if (target.at < 0) {
        moves.toOwnRow(m_band, target.row);
    } else {
        const Row row = m_bar->rows().at(target.row);
        if (target.at == 0) {
            moves.toFront(m_band, row);
        } else {
            CoolBand *previous = row.at(target.at - 1);
            moves.behind(m_band, previous, target.left - previous->geometry().left());
        }
    }
    m_bar->bandsChanged();
}
