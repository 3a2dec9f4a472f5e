#include "StatusStrip.h"

#include "ElidedAddress.h"
#include "Texts.h"
#include "UseMark.h"
#include "ZoomMark.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {
constexpr int usualHeight = 17;
constexpr int indicatorSize = 13;
constexpr int indicatorGap = 5;
/// Longer texts are cut for painting only: measuring a megabyte would hold the frame.
constexpr int longestPainted = 500;

/// A padlock.
void paintLock(QPainter &painter, const QRectF &box, bool isOpen)
{
    const qreal unit = box.width() / 13;
    const qreal turned = isOpen ? 5 * unit : 0;
    const QRectF body(box.left() + 2 * unit, box.top() + 6 * unit, 9 * unit, 6 * unit);
    const qreal left = box.left() + 4 * unit + turned;
    QPainterPath shackle;
    shackle.moveTo(left, body.top());
    shackle.lineTo(left, box.top() + 4 * unit);
    shackle.arcTo(QRectF(left, box.top() + 1.2 * unit, 5 * unit, 5 * unit), 180, -180);
    if (!isOpen)
        shackle.lineTo(left + 5 * unit, body.top());
    painter.strokePath(shackle, QPen(painter.pen().color(), 1.5 * unit));
    painter.fillRect(body, painter.pen().color());
}

/// An eye with a stroke through it.
void paintEye(QPainter &painter, const QRectF &box)
{
    const qreal unit = box.width() / 13;
    QPainterPath lid;
    lid.moveTo(box.left() + 0.5 * unit, box.center().y());
    lid.quadTo(box.center().x(), box.top(), box.right() - 0.5 * unit, box.center().y());
    lid.quadTo(box.center().x(), box.bottom(), box.left() + 0.5 * unit, box.center().y());
    painter.strokePath(lid, QPen(painter.pen().color(), 1.2 * unit));
    painter.setBrush(painter.pen().color());
    painter.drawEllipse(box.center(), 1.6 * unit, 1.6 * unit);
    painter.setPen(QPen(painter.pen().color(), 1.4 * unit, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(box.bottomLeft() + QPointF(2 * unit, -1.5 * unit),
                     box.topRight() + QPointF(-2 * unit, 1.5 * unit));
}

constexpr Texts<"frmBrowser"> texts;
const Text &privacyTip =
    texts.at<"strPrivacyTip", "Cookies of other sites were refused on this page">;
const Text &secureTip = texts.at<"strSecureTip", "The connection to this page is secure">;
const Text &unproven = texts.at<"strUnproven", "Not secure">;
const Text &unprovenTip =
    texts.at<"strUnprovenTip",
             "Not secure: this page, or a part of it, comes from a server that could not prove who "
             "it is">;
}

StatusStrip::StatusStrip(QWidget *parent)
    : QWidget(parent)
    , m_use(new UseMark(this))
    , m_zoom(new ZoomMark(this))
{
    setObjectName(u"StatusBar1"_s);
    setAttribute(Qt::WA_OpaquePaintEvent);
    refreshAccessibleText();
    connect(m_use, &UseMark::clicked, this, &StatusStrip::endOfUseWanted);
    connect(m_zoom, &ZoomMark::clicked, this, &StatusStrip::usualZoomWanted);
}

int StatusStrip::stripHeight() const
{
    return qMax(usualHeight, fontMetrics().height() + 2);
}

void StatusStrip::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    refreshAccessibleText();
    update();
}

void StatusStrip::setPrivacyShown(bool shown)
{
    if (shown == m_privacy)
        return;
    m_privacy = shown;
    refreshAccessibleText();
    update();
}

void StatusStrip::setSecureShown(bool shown)
{
    if (shown == m_secure)
        return;
    m_secure = shown;
    refreshAccessibleText();
    update();
}

void StatusStrip::setUnprovenShown(bool shown)
{
    if (shown == m_unproven)
        return;
    m_unproven = shown;
    placeMarks();
    refreshAccessibleText();
    update();
}

int StatusStrip::wordsWidth() const
{
    const int words = m_unproven ? fontMetrics().horizontalAdvance(unproven()) : 0;
    constexpr int leastForText = 120;
    return words + leastForText < width() ? words : 0;
}

void StatusStrip::setUse(const QString &text)
{
    m_use->setUse(text);
    placeMarks();
    update();
}

void StatusStrip::setZoom(int percent)
{
    m_zoom->setPercent(percent);
    placeMarks();
    update();
}

/// Beside the indicators, what is in use never wider than the half of the strip.
void StatusStrip::placeMarks()
{
    const int room = indicatorRect(1).left() - indicatorGap;
    const int use = qMin(m_use->sizeHint().width(), room / 2);
    m_use->setGeometry(room - use, 1, use, height() - 1);
    const int right = m_use->isHidden() ? room : m_use->x() - indicatorGap;
    const int zoom = qMin(m_zoom->sizeHint().width(), qMax(0, right));
    m_zoom->setGeometry(right - zoom, 1, zoom, height() - 1);
    m_marksLeft = (m_zoom->isHidden() ? right : m_zoom->x()) - indicatorGap;
}

void StatusStrip::resizeEvent(QResizeEvent *)
{
    placeMarks();
}

QRect StatusStrip::indicatorRect(int fromRight) const
{
    const int words = wordsWidth();
    const int right = width() - (words > 0 ? words + indicatorGap : 0);
    const int left = right - (fromRight + 1) * (indicatorSize + indicatorGap);
    return QRect(left, (height() - indicatorSize + 1) / 2, indicatorSize, indicatorSize);
}

QRect StatusStrip::secureRect() const
{
    return m_secure ? indicatorRect(0) : QRect();
}

QRect StatusStrip::unprovenRect() const
{
    if (!m_unproven)
        return {};
    const int words = wordsWidth();
    return indicatorRect(0).adjusted(0, 0, words > 0 ? words + indicatorGap : 0, 0);
}

QRect StatusStrip::privacyRect() const
{
    return m_privacy ? indicatorRect(1) : QRect();
}

void StatusStrip::refreshAccessibleText()
{
    QStringList indicators;
    if (m_privacy)
        indicators.append(privacyTip());
    if (m_secure)
        indicators.append(secureTip());
    if (m_unproven)
        indicators.append(unprovenTip());
    setAccessibleName(m_text.left(longestPainted).trimmed());
    setAccessibleDescription(indicators.join(u". "_s));
}

bool StatusStrip::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QString tip;
        if (privacyRect().contains(help->pos()))
            tip = privacyTip();
        else if (secureRect().contains(help->pos()))
            tip = secureTip();
        else if (unprovenRect().contains(help->pos()))
            tip = unprovenTip();
        QToolTip::showText(help->globalPos(), tip, this);
        return true;
    }
    return QWidget::event(event);
}

void StatusStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().window());
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(QPointF(0, 0.5), QPointF(width(), 0.5));

    const QRect textRect(2, 1, m_marksLeft - 2, height() - 1);
    painter.setPen(palette().color(QPalette::WindowText));
    // The text begins with a blank.
    const QString text = m_text.left(longestPainted);
    const QString blank = text.startsWith(u' ') ? u" "_s : QString();
    const int room = textRect.width() - fontMetrics().horizontalAdvance(blank);
    const QString shown =
        blank + elidedAddress(text.sliced(blank.size()), fontMetrics(), room, Qt::ElideRight);
    painter.drawText(textRect, int(Qt::AlignVCenter | Qt::AlignLeft) | Qt::TextSingleLine, shown);
    paintIndicators(painter);
}

void StatusStrip::paintIndicators(QPainter &painter) const
{
    if (m_secure)
        paintLock(painter, secureRect(), false);
    if (m_unproven) {
        paintLock(painter, indicatorRect(0), true);
        const QRect words = unprovenRect().adjusted(indicatorSize + indicatorGap, 0, 0, 0);
        if (wordsWidth() > 0)
            painter.drawText(QRect(words.left(), 1, words.width(), height() - 1),
                             int(Qt::AlignVCenter | Qt::AlignLeft) | Qt::TextSingleLine,
                             unproven());
    }
    if (m_privacy)
        paintEye(painter, privacyRect());
}

void StatusStrip::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    const bool isOnConnection =
        secureRect().contains(event->pos()) || unprovenRect().contains(event->pos());
    if (event->button() == Qt::LeftButton && isOnConnection)
        emit connectionPressed();
}
