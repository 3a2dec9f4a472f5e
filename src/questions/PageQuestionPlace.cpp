// Where the parts of a question stand, and how much room it takes.
#include "PageQuestionBox.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

namespace {
/// Pixels.
constexpr int widestBox = 520;
/// Of the text, average letters: where a strip has less room for it, its buttons go below.
constexpr int leastLine = 32;
constexpr int rowOfButtonsBelow = 4;
/// Of the text, always seen.
constexpr int leastLines = 3;
}

void PageQuestionBox::placeButtons(bool beside)
{
    m_grid->removeWidget(m_buttons);
    if (beside)
        m_grid->addWidget(m_buttons, 0, 1, rowOfButtonsBelow, 1, Qt::AlignTop);
    else
        m_grid->addWidget(m_buttons, rowOfButtonsBelow, 0);
}

void PageQuestionBox::fitInto(const QSize &room)
{
    const bool isStrip = m_shape == PageQuestion::Shape::Strip;
    const int width = isStrip ? room.width() : qMin(room.width(), widestBox);
    const int line = m_text->fontMetrics().averageCharWidth() * leastLine;
    const int buttons = m_buttons->sizeHint().width() + m_grid->horizontalSpacing();
    const QMargins around = m_grid->contentsMargins();
    const int inside = width - around.left() - around.right() - 2 * frameWidth();
    const bool beside = isStrip && inside >= line + buttons;
    placeButtons(beside);
    // Without a text it is negative.
    const int wanted = qMax(0, m_text->heightForWidth(qMax(1, beside ? inside - buttons : inside)));
    m_scroll->setFixedHeight(0);
    m_grid->activate();
    const int others = m_grid->totalHeightForWidth(width);
    const int most = isStrip ? room.height() / 2 : room.height();
    const int least = qMin(wanted, leastLines * m_text->fontMetrics().lineSpacing());
    m_scroll->setFixedHeight(qMax(least, qMin(most - others, wanted)));
    m_scroll->setVerticalScrollBarPolicy(wanted > m_scroll->height() ? Qt::ScrollBarAsNeeded
                                                                     : Qt::ScrollBarAlwaysOff);
    m_grid->activate();
    setGeometry((room.width() - width) / 2, 0, width, m_grid->totalHeightForWidth(width));
}

QSize PageQuestionBox::leastRoom() const
{
    const QSize least = m_grid->totalMinimumSize();
    return {least.width(), m_grid->totalHeightForWidth(qMax(width(), least.width()))};
}

/// Who asks, and what is pressed.
QRegion PageQuestionBox::vital() const
{
    QRegion region;
    const QList<QPushButton *> buttons = m_buttons->findChildren<QPushButton *>();
    for (const QPushButton *each : buttons)
        region += QRect(each->mapTo(this, QPoint()), each->size());
    if (m_asker) {
        const int width = m_asker->fontMetrics().horizontalAdvance(m_asker->text());
        region += QRect(m_asker->mapTo(this, QPoint()),
                        QSize(qMin(width, m_asker->width()), m_asker->height()));
    }
    return region;
}

void PageQuestionBox::announce()
{
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void PageQuestionBox::takeFocus()
{
    QWidget *first = m_fields ? m_fields : m_yes;
    (first->isEnabled() ? first : this)->setFocus(Qt::OtherFocusReason);
}
