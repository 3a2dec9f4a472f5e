#include "TabButton.h"

#include "TabButtonAccessible.h"
#include "Texts.h"
#include "ThemedIcon.h"
#include "ToolTipText.h"
#include "UseDot.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 8;
constexpr int gap = 6;
constexpr int pictureSize = 16;
constexpr int dotSize = 11;
constexpr int soundSize = 14;
/// Of a picture whose window is asleep.
constexpr qreal dimmed = 0.75;
/// Easier to hit than to see.
constexpr int useWidth = 20;
// A caption of the usual thirteen characters fits; wide scripts get more, nothing gets less.
constexpr int narrowest = 13;
constexpr int widest = 22;

}

TabButton::TabButton(const QString &key, const QString &caption, QWidget *parent)
    : QAbstractButton(parent)
    , m_key(key)
{
    static const bool installed = [] {
        installTabAccessible();
        return true;
    }();
    Q_UNUSED(installed)
    setObjectName(key);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setIconSize(QSize(pictureSize, pictureSize));
    setCaption(caption);
}

bool TabButton::setCaption(const QString &caption)
{
    if (caption != m_caption) {
        m_caption = caption;
        nameIt();
    }
    const int width = wantedWidth();
    return std::exchange(m_width, width) != width;
}

void TabButton::setUse(const QString &text)
{
    if (text == m_use)
        return;
    m_use = text;
    nameIt();
}

void TabButton::setSound(PageSound sound)
{
    if (std::exchange(m_sound, sound) != sound)
        nameIt();
}

void TabButton::setAsleep(bool asleep)
{
    if (std::exchange(m_asleep, asleep) != asleep)
        nameIt();
}

void TabButton::setPrivate()
{
    m_isPrivate = true;
    m_width = wantedWidth();
    nameIt();
}

/// What is shown of it, in words.
void TabButton::nameIt()
{
    QStringList parts{m_caption};
    if (m_isPrivate)
        parts.append(Texts<"frmBrowser">::at<"strPrivate", "private">());
    if (m_asleep)
        parts.append(Texts<"frmBrowser">::at<"strAsleep", "asleep">());
    if (m_sound == PageSound::Playing)
        parts.append(Texts<"frmBrowser">::at<"strPlaying", "playing sound">());
    else if (m_sound == PageSound::Muted)
        parts.append(Texts<"frmBrowser">::at<"strMuted", "muted">());
    if (!m_use.isEmpty())
        parts.append(m_use);
    setAccessibleName(parts.join(QStringLiteral(", ")));
    update();
}

QRect TabButton::useRect() const
{
    if (m_use.isEmpty())
        return {};
    return QStyle::visualRect(layoutDirection(), rect(),
                              QRect(width() - useWidth - 2, 0, useWidth, height()));
}

QRect TabButton::soundRect() const
{
    if (m_sound == PageSound::None)
        return {};
    const int right = m_use.isEmpty() ? width() - 2 : width() - useWidth - 2;
    return QStyle::visualRect(layoutDirection(), rect(),
                              QRect(right - useWidth, 0, useWidth, height()));
}

void TabButton::setPressed(bool pressed)
{
    if (m_pressed == pressed)
        return;
    m_pressed = pressed;
    update();
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

int TabButton::wantedWidth() const
{
    const QFontMetrics metrics = fontMetrics();
    const int text = metrics.horizontalAdvance(m_caption.left(2 * widest));
    const int letter = metrics.averageCharWidth();
    return 2 * margin + pictureSize + gap + (m_isPrivate ? pictureSize + gap : 0)
        + std::clamp(text + 1, narrowest * letter, widest * letter);
}

QSize TabButton::sizeHint() const
{
    return {m_width, std::max(pictureSize, fontMetrics().height()) + 10};
}

void TabButton::paintFace(QPainter &painter) const
{
    const QPalette colours = palette();
    const QRectF face = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    QColor line = colours.color(QPalette::WindowText);
    line.setAlphaF(m_pressed ? 0.35F : 0.16F);
    QColor fill = colours.color(QPalette::WindowText);
    fill.setAlphaF(isDown() ? 0.14F : (underMouse() ? 0.08F : 0.03F));
    painter.setPen(line);
    painter.setBrush(m_pressed ? colours.color(QPalette::Base) : fill);
    painter.drawRoundedRect(face, 4, 4);
    if (m_pressed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.color(QPalette::Highlight));
        painter.drawRoundedRect(QRectF(face.left() + 4, face.bottom() - 2, face.width() - 8, 2.5),
                                1, 1);
    }
    if (hasFocus()) {
        painter.setPen(QPen(colours.color(QPalette::Highlight), 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(face, 4, 4);
    }
}

void TabButton::paintMarks(QPainter &painter) const
{
    const auto place = [this](const QRect &mark, int size) {
        return QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, QSize(size, size), mark);
    };
    if (m_sound != PageSound::None) {
        const QString name =
            m_sound == PageSound::Muted ? QStringLiteral("muted") : QStringLiteral("sound");
        themedIcon(name).paint(&painter, place(soundRect(), soundSize));
    }
    if (!m_use.isEmpty())
        paintUseDot(painter, place(useRect(), dotSize));
}

void TabButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFace(painter);
    const int marks = int(!m_use.isEmpty()) + int(m_sound != PageSound::None);
    const int end = marks == 0 ? margin : marks * useWidth + 2;
    const QRect inner = rect().adjusted(margin, 0, -end, 0);
    const QRect picture = QStyle::alignedRect(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                                              QSize(pictureSize, pictureSize), inner);
    painter.setOpacity(m_asleep ? dimmed : 1);
    icon().paint(&painter, picture, Qt::AlignCenter, m_asleep ? QIcon::Disabled : QIcon::Normal);
    painter.setOpacity(1);
    int taken = pictureSize + gap;
    if (m_isPrivate) {
        const QRect rest =
            QStyle::visualRect(layoutDirection(), inner, inner.adjusted(taken, 0, 0, 0));
        themedIcon(u"mask"_s).paint(&painter,
                                    QStyle::alignedRect(layoutDirection(),
                                                        Qt::AlignLeft | Qt::AlignVCenter,
                                                        QSize(pictureSize, pictureSize), rest));
        taken += pictureSize + gap;
    }
    const QRect text = QStyle::visualRect(layoutDirection(), inner, inner.adjusted(taken, 0, 0, 0));
    painter.setPen(palette().color(m_pressed ? QPalette::Text : QPalette::WindowText));
    painter.drawText(
        text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(m_caption.left(4 * widest), Qt::ElideRight, text.width()));
    paintMarks(painter);
}

QString TabButton::tipAt(const QPoint &at) const
{
    if (useRect().contains(at)) {
        return Texts<"Permissions">::at<"strEndUse",
                                        "%1. A click ends it, and loads the page anew.">()
            .arg(m_use);
    }
    if (!soundRect().contains(at))
        return toolTip();
    constexpr Texts<"frmBrowser"> texts;
    return m_sound == PageSound::Muted
        ? texts.at<"strUnmuteTip", "Muted. A click lets it be heard again.">()
        : texts.at<"strMuteTip", "Playing sound. A click mutes it.">();
}

bool TabButton::event(QEvent *event)
{
    // Its button is let go where nobody hears of it.
    if (event->type() == QEvent::Hide || event->type() == QEvent::WindowDeactivate)
        endDrag(false);
    if (event->type() == QEvent::ToolTip) {
        const QString text = tipAt(static_cast<QHelpEvent *>(event)->pos());
        if (text.isEmpty())
            return QAbstractButton::event(event);
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), wrappedToolTip(text),
                           this, rect());
        return true;
    }
    return QAbstractButton::event(event);
}

void TabButton::keyPressEvent(QKeyEvent *event)
{
    // It has the keyboard while it is dragged.
    if (m_dragged) {
        if (event->key() == Qt::Key_Escape)
            endDrag(false);
        return;
    }
    const int ahead = isRightToLeft() ? -1 : 1;
    const auto step = [&](int count) {
        event->modifiers() == Qt::ShiftModifier ? emit moveWanted(count) : emit stepWanted(count);
    };
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        step(-ahead);
        return;
    case Qt::Key_Right:
    case Qt::Key_Down:
        step(ahead);
        return;
    case Qt::Key_Home:
        emit stepWanted(-1000000);
        return;
    case Qt::Key_End:
        emit stepWanted(1000000);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void TabButton::mousePressEvent(QMouseEvent *event)
{
    const QPoint at = event->position().toPoint();
    m_useDown = event->button() == Qt::LeftButton && useRect().contains(at);
    m_soundDown = event->button() == Qt::LeftButton && soundRect().contains(at);
    if (m_useDown || m_soundDown)
        return;
    m_middleDown = event->button() == Qt::MiddleButton;
    if (event->button() == Qt::LeftButton)
        m_pressedAt = at;
    QAbstractButton::mousePressEvent(event);
    if (m_middleDown)
        event->accept();
}

void TabButton::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint at = event->position().toPoint();
    if (!m_dragged) {
        const bool isFar =
            (at - m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
        if (!isDown() || !event->buttons().testFlag(Qt::LeftButton) || !isFar) {
            QAbstractButton::mouseMoveEvent(event);
            return;
        }
        m_dragged = true;
        setDown(false);
        grabKeyboard();
    }
    emit dragged(at.x());
}

void TabButton::endDrag(bool isDropped)
{
    if (!std::exchange(m_dragged, false))
        return;
    releaseKeyboard();
    emit dragEnded(isDropped);
}

void TabButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_dragged) {
        endDrag(true);
        return;
    }
    if (event->button() == Qt::LeftButton && std::exchange(m_useDown, false)) {
        if (useRect().contains(event->position().toPoint()))
            emit useClicked();
        return;
    }
    if (event->button() == Qt::LeftButton && std::exchange(m_soundDown, false)) {
        if (soundRect().contains(event->position().toPoint()))
            emit soundClicked();
        return;
    }
    if (event->button() == Qt::MiddleButton) {
        if (std::exchange(m_middleDown, false) && rect().contains(event->position().toPoint()))
            emit middleClicked();
        return;
    }
    QAbstractButton::mouseReleaseEvent(event);
}

void TabButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        m_width = wantedWidth();
    QAbstractButton::changeEvent(event);
}

void TabButton::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    emit focused();
}
