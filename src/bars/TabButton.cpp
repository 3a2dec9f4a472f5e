#include "TabButton.h"

#include "Texts.h"
#include "ToolTipText.h"
#include "UseDot.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

namespace {

constexpr int margin = 8;
constexpr int gap = 6;
constexpr int pictureSize = 16;
constexpr int dotSize = 11;
/// Of a picture whose window is asleep.
constexpr qreal dimmed = 0.75;
/// Easier to hit than to see.
constexpr int useWidth = 20;
// A caption of the usual thirteen characters fits; wide scripts get more, nothing gets less.
constexpr int narrowest = 13;
constexpr int widest = 22;

/// A tab as seen by assistive technology: a button that is pressed or not.
class TabAccessible : public QAccessibleWidget {
public:
    explicit TabAccessible(TabButton *tab)
        : QAccessibleWidget(tab, QAccessible::Button)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State result = QAccessibleWidget::state();
        result.checkable = true;
        result.checked = tab()->isPressed();
        result.focusable = true;
        return result;
    }

    QStringList actionNames() const override
    {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction())
            tab()->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    TabButton *tab() const { return static_cast<TabButton *>(object()); }
};

QAccessibleInterface *makeTabAccessible(const QString &, QObject *object)
{
    auto *tab = qobject_cast<TabButton *>(object);
    return tab ? new TabAccessible(tab) : nullptr;
}

}

TabButton::TabButton(const QString &key, const QString &caption, QWidget *parent)
    : QAbstractButton(parent)
    , m_key(key)
{
    static const bool installed = [] {
        QAccessible::installFactory(makeTabAccessible);
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

void TabButton::setAsleep(bool asleep)
{
    if (std::exchange(m_asleep, asleep) != asleep)
        nameIt();
}

/// What is shown of it, in words.
void TabButton::nameIt()
{
    QStringList parts{m_caption};
    if (m_asleep)
        parts.append(Texts<"frmBrowser">::at<"strAsleep", "asleep">());
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
    return 2 * margin + pictureSize + gap
        + std::clamp(text + 1, narrowest * letter, widest * letter);
}

QSize TabButton::sizeHint() const
{
    return {m_width, std::max(pictureSize, fontMetrics().height()) + 10};
}

void TabButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
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
    const QRect use = useRect();
    const QRect inner = rect().adjusted(margin, 0, use.isNull() ? -margin : -useWidth - 2, 0);
    const QRect picture = QStyle::alignedRect(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                                              QSize(pictureSize, pictureSize), inner);
    painter.setOpacity(m_asleep ? dimmed : 1);
    icon().paint(&painter, picture, Qt::AlignCenter, m_asleep ? QIcon::Disabled : QIcon::Normal);
    painter.setOpacity(1);
    const QRect text =
        QStyle::visualRect(layoutDirection(), inner, inner.adjusted(pictureSize + gap, 0, 0, 0));
    painter.setPen(colours.color(m_pressed ? QPalette::Text : QPalette::WindowText));
    painter.drawText(
        text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(m_caption.left(4 * widest), Qt::ElideRight, text.width()));
    if (!use.isNull())
        paintUseDot(
            painter,
            QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, QSize(dotSize, dotSize), use));
}

bool TabButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const bool isOnUse = useRect().contains(static_cast<QHelpEvent *>(event)->pos());
        const QString text = isOnUse
            ? Texts<"Permissions">::at<"strEndUse",
                                       "%1. A click ends it, and loads the page anew.">()
                  .arg(m_use)
            : toolTip();
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
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        emit stepWanted(isRightToLeft() ? 1 : -1);
        return;
    case Qt::Key_Right:
    case Qt::Key_Down:
        emit stepWanted(isRightToLeft() ? -1 : 1);
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
    if (m_useDown)
        return;
    m_middleDown = event->button() == Qt::MiddleButton;
    QAbstractButton::mousePressEvent(event);
    if (m_middleDown)
        event->accept();
}

void TabButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && std::exchange(m_useDown, false)) {
        if (useRect().contains(event->position().toPoint()))
            emit useClicked();
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
