// Where the parts of a question stand, and how much room it takes.
#include "PageQuestionBox.h"

#include "ShownText.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace {
/// Pixels.
constexpr int widestBox = 520;
/// Of the text, average letters: where a strip has less room for it, its buttons go below.
constexpr int leastLine = 32;
constexpr int rowOfButtonsBelow = 4;
/// Of the text, always seen.
constexpr int leastLines = 3;
/// Letters of a strip's text that is always seen whole: what matters in it may come last.
constexpr qsizetype longestSeenWhole = 1000;
}

void PageQuestionBox::placeButtons(bool beside)
{
    m_grid->removeWidget(m_buttons);
    if (beside)
        m_grid->addWidget(m_buttons, 0, 1, rowOfButtonsBelow, 1, Qt::AlignTop);
    else
        m_grid->addWidget(m_buttons, rowOfButtonsBelow, 0);
}

/// What the one who asks takes in one line.
int PageQuestionBox::askerWidth() const
{
    if (!m_asker)
        return 0;
    const auto *icon = m_body->findChild<QLabel *>("lblIcon"_L1);
    const int before = icon ? icon->sizeHint().width() + m_grid->horizontalSpacing() : 0;
    return before + m_asker->fontMetrics().horizontalAdvance(m_asker->accessibleName());
}

/// What the longest word of the text takes in one line, which is a host or an address, if any is.
int PageQuestionBox::longestWord() const
{
    const QString text = m_text->accessibleName().left(longestSeenWhole);
    int longest = 0;
    for (const QStringView word : QStringView(text).tokenize(u' '))
        longest = qMax(longest, m_text->fontMetrics().horizontalAdvance(word.toString()));
    return longest + m_scroll->verticalScrollBar()->sizeHint().width();
}

/// A host is broken in two only where no line of `width` holds it, as one part alone reads like
/// another host.
void PageQuestionBox::breakText(int width)
{
    const int line = width - m_scroll->verticalScrollBar()->sizeHint().width();
    const QString text = breakableText(m_text->accessibleName(), [this, line](const QString &word) {
        return m_text->fontMetrics().horizontalAdvance(word) <= line;
    });
    if (text != m_text->text())
        m_text->setText(text);
}

/// Gives the parts their places in `width`, the text so much room that all of it takes no more than
/// `most`, and returns what it takes; all without the frame.
QSize PageQuestionBox::layOutBody(int width, int most)
{
    const bool isStrip = m_shape == PageQuestion::Shape::Strip;
    const int buttons = m_buttons->sizeHint().width() + m_grid->horizontalSpacing();
    const QMargins around = m_grid->contentsMargins();
    const int margins = around.left() + around.right();
    const int line = m_text->fontMetrics().averageCharWidth() * leastLine;
    // Broken in two, a site is harder to read.
    int inOneLine = line;
    for (const int whole : {askerWidth(), isStrip ? longestWord() : 0})
        inOneLine = whole <= width - margins ? qMax(inOneLine, whole) : inOneLine;
    const bool beside = isStrip && width - margins >= inOneLine + buttons;
    placeButtons(beside);
    const int taken = qMax(width, m_grid->totalMinimumSize().width());
    const int inside = taken - margins - (beside ? buttons : 0);
    breakText(inside);
    // Without a text it is negative.
    const int wanted = qMax(0, m_text->heightForWidth(qMax(1, inside)));
    m_scroll->setFixedHeight(0);
    m_grid->activate();
    const int others = m_grid->totalHeightForWidth(taken);
    const bool isSeenWhole = isStrip && m_text->text().size() <= longestSeenWhole;
    const int least =
        isSeenWhole ? wanted : qMin(wanted, leastLines * m_text->fontMetrics().lineSpacing());
    m_scroll->setFixedHeight(qMax(least, qMin(most - others, wanted)));
    m_scroll->setVerticalScrollBarPolicy(wanted > m_scroll->height() ? Qt::ScrollBarAsNeeded
                                                                     : Qt::ScrollBarAlwaysOff);
    m_grid->activate();
    return {taken, m_grid->totalHeightForWidth(taken)};
}

void PageQuestionBox::fitInto(const QSize &room)
{
    const bool isStrip = m_shape == PageQuestion::Shape::Strip;
    const int frame = 2 * frameWidth();
    const int width = isStrip ? room.width() : qMin(room.width(), widestBox);
    const int most = (isStrip ? room.height() / 2 : room.height()) - frame;
    QSize body = layOutBody(width - frame, most);
    const int bar = m_view->verticalScrollBar()->sizeHint().width();
    const bool isTooWide = body.width() + frame > width;
    const bool isTooHigh = body.height() + frame + (isTooWide ? bar : 0) > room.height();
    if (isTooHigh)
        body = layOutBody(width - frame - bar, most);
    const bool hasBarBelow = body.width() + frame + (isTooHigh ? bar : 0) > width;
    m_isScrolled = isTooHigh || hasBarBelow;
    const int height = qMin(room.height(), body.height() + frame + (hasBarBelow ? bar : 0));
    m_view->setVerticalScrollBarPolicy(isTooHigh ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_view->setHorizontalScrollBarPolicy(hasBarBelow ? Qt::ScrollBarAlwaysOn
                                                     : Qt::ScrollBarAlwaysOff);
    m_body->resize(body);
    setGeometry((room.width() - width) / 2, 0, width, height);
    m_view->setGeometry(contentsRect());
    m_view->verticalScrollBar()->setValue(0);
    m_view->horizontalScrollBar()->setValue(0);
}

QSize PageQuestionBox::leastRoom() const
{
    const int frame = 2 * frameWidth();
    const int width = qMax(m_body->width(), m_grid->totalMinimumSize().width());
    return {m_grid->totalMinimumSize().width() + frame, m_grid->totalHeightForWidth(width) + frame};
}

/// As much of it as there is room for.
bool PageQuestionBox::isInView(const QWidget *widget) const
{
    const QWidget *view = m_view->viewport();
    const QRect place(widget->mapTo(view, QPoint()), widget->size());
    return (place & view->rect()).size() == place.size().boundedTo(view->size());
}

/// Who asks, and what is pressed. Where that does not go together, the user himself goes from the
/// one to the other, and all that is seen of it counts.
QRegion PageQuestionBox::vital() const
{
    if (m_isScrolled)
        return rect();
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
