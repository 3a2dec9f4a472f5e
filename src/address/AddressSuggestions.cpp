#include "AddressSuggestions.h"

#include "ElidedAddress.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"AddressBar"> texts;

enum Role { AddressRole = Qt::UserRole };

/// Pixels: around the text of a row, between title and address, and of a bar too narrow to read in.
constexpr int rowSpace = 6;
constexpr int gap = 12;
constexpr int leastWidth = 320;

bool isHeading(const QModelIndex &index)
{
    return index.row() == 0;
}

/// Title and address side by side, the latter paler; a title takes 3/5 of the room at most.
class SuggestionRows : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return {0, QStyledItemDelegate::sizeHint(option, index).height() + rowSpace};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &given,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem option = given;
        initStyleOption(&option, index);
        option.text.clear();
        const QStyle *style = option.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
        const bool isChosen = option.state & QStyle::State_Selected;
        // The heading's too, though it cannot be chosen.
        const QColor ink = option.palette.color(
            QPalette::Active, isChosen ? QPalette::HighlightedText : QPalette::Text);
        QColor pale = ink;
        pale.setAlphaF(0.7F);
        QRect room = option.rect.adjusted(rowSpace, 0, -rowSpace, 0);
        const QString title = index.data(Qt::DisplayRole).toString();
        painter->setPen(isHeading(index) ? pale : ink);
        const int most = isHeading(index) ? room.width() : room.width() * 3 / 5;
        const QString shown = option.fontMetrics.elidedText(title, Qt::ElideRight, most);
        drawText(*painter, room, shown);
        room.setLeft(room.left() + option.fontMetrics.horizontalAdvance(shown)
                     + (shown.isEmpty() ? 0 : gap));
        painter->setPen(pale);
        const QString address = shownAddress(index.data(AddressRole).toString());
        drawText(*painter, room,
                 elidedAddress(address, option.fontMetrics, room.width(), Qt::ElideRight));
    }

private:
    /// From the left, whichever way its letters run: it is followed by the address.
    static void drawText(QPainter &painter, const QRect &room, const QString &text)
    {
        painter.drawText(room,
                         Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine
                             | Qt::TextForceLeftToRight,
                         text);
    }
};

QStandardItem *rowOf(const AddressSuggestion &suggestion)
{
    const QString title = shownText(suggestion.title);
    auto *item = new QStandardItem(title);
    item->setData(suggestion.address, AddressRole);
    const QString address = shownAddress(suggestion.address);
    item->setData(title.isEmpty() ? address : title + u", "_s + address, Qt::AccessibleTextRole);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}
}

AddressSuggestions::AddressSuggestions(QWidget &bar)
    : QListView(bar.window())
    , m_bar(bar)
    , m_rows(new QStandardItemModel(this))
{
    setObjectName("lstSuggestions"_L1);
    hide();
    setModel(m_rows);
    setItemDelegate(new SuggestionRows(this));
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setAutoFillBackground(true);
    connect(this, &QAbstractItemView::pressed, this, [this](const QModelIndex &index) {
        if (!isHeading(index))
            emit clicked(index.data(AddressRole).toString());
    });
}

void AddressSuggestions::propose(const QList<AddressSuggestion> &suggestions)
{
    m_rows->clear();
    if (suggestions.isEmpty()) {
        hide();
        return;
    }
    const QString heading = texts.at<"lblVisited", "Pages you have visited">();
    auto *top = new QStandardItem(heading);
    top->setFlags(Qt::NoItemFlags);
    m_rows->appendRow(top);
    for (const AddressSuggestion &suggestion : suggestions)
        m_rows->appendRow(rowOf(suggestion));
    setAccessibleName(heading);
    place();
    if (!isVisible()) {
        show();
        qApp->installEventFilter(this);
    }
    raise();
}

void AddressSuggestions::step(int by)
{
    // None stands where the heading is.
    const int count = m_rows->rowCount();
    const int row = (std::max(0, currentIndex().row()) + by + count) % count;
    setCurrentIndex(row == 0 ? QModelIndex() : m_rows->index(row, 0));
    if (row == 0)
        clearSelection();
}

QString AddressSuggestions::current() const
{
    return currentIndex().data(AddressRole).toString();
}

/// Below the bar, or above it where there is more room.
void AddressSuggestions::place()
{
    const QWidget &window = *m_bar.window();
    const QRect bar(m_bar.mapTo(&window, QPoint(0, 0)), m_bar.size());
    const int rowHeight = std::max(1, sizeHintForRow(1));
    const int wanted = m_rows->rowCount() * rowHeight + 2 * frameWidth();
    const int below = window.height() - bar.bottom() - 1;
    const bool isAbove = below < wanted && bar.top() > below;
    const int height = std::min(wanted, isAbove ? bar.top() : below);
    const int width = std::min(std::max(bar.width(), leastWidth), window.width());
    const int left = std::clamp(bar.left(), 0, window.width() - width);
    setGeometry(left, isAbove ? bar.top() - height : bar.bottom() + 1, width, height);
}

void AddressSuggestions::hideEvent(QHideEvent *event)
{
    qApp->removeEventFilter(this);
    QListView::hideEvent(event);
}

bool AddressSuggestions::eventFilter(QObject *watched, QEvent *event)
{
    const bool isOfWindow = watched == window();
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        const auto *widget = static_cast<QWidget *>(watched);
        if (widget != this && !isAncestorOf(widget) && !m_bar.isAncestorOf(widget))
            hide();
    } else if (isOfWindow
               && (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Resize)) {
        hide();
    }
    return QListView::eventFilter(watched, event);
}
