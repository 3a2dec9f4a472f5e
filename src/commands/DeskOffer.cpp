#include "DeskOffer.h"

#include "Captioned.h"
#include "ElidedAddress.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"
#include "TickDelegate.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
enum Column { TitleColumn, AddressColumn };

/// More are scrolled to.
constexpr int mostRows = 6;

constexpr Texts<"DeskOffer"> texts;

/// What has no room is not the end of the host.
class AddressDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const int margins = 4 * option->fontMetrics.averageCharWidth();
        option->text = elidedAddress(option->text, option->fontMetrics,
                                     option->rect.width() - margins, Qt::ElideRight);
    }
};

QTreeWidgetItem *makeItem(const DeskWindow &window)
{
    const QString address = shownAddress(window.address);
    const QString title = shownText(window.title);
    auto *item = new QTreeWidgetItem({title.isEmpty() ? address : title, address});
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                   | Qt::ItemNeverHasChildren);
    return item;
}

QTreeWidget *makeList()
{
    auto *list = new QTreeWidget;
    list->setObjectName("lstDesk"_L1);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setItemDelegateForColumn(TitleColumn, new TickDelegate(list));
    list->setItemDelegateForColumn(AddressColumn, new AddressDelegate(list));
    list->setColumnCount(AddressColumn + 1);
    list->header()->setSectionResizeMode(QHeaderView::Stretch);
    list->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return list;
}
}

DeskOffer::DeskOffer(const Desk &desk, const QStringList &unticked, QWidget *parent)
    : QFrame(parent)
    , m_title(new QLabel)
    , m_reason(new QLabel)
    , m_list(makeList())
    , m_open(captioned<QPushButton>(texts.at<"cmdOpen", "Open these">))
    , m_later(captioned<QPushButton>(texts.at<"cmdLater", "Not now">))
{
    setObjectName("deskOffer"_L1);
    setFrameShape(QFrame::StyledPanel);
    m_title->setWordWrap(true);
    m_title->setTextFormat(Qt::PlainText);
    m_reason->setWordWrap(true);
    m_reason->setTextFormat(Qt::PlainText);
    auto *buttons = new QHBoxLayout;
    // Most of the room is for the words, where there are any.
    constexpr int most = 1000;
    buttons->addWidget(m_reason, most);
    buttons->addStretch(1);
    buttons->addWidget(m_open);
    buttons->addWidget(m_later);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addWidget(m_list);
    layout->addLayout(buttons);
    fill(desk, unticked);
    translate();
    connect(m_list, &QTreeWidget::itemChanged, this, &DeskOffer::noteTicks);
    connect(m_open, &QPushButton::clicked, this, [this] { emit accepted(ticked()); });
    connect(m_later, &QPushButton::clicked, this, &DeskOffer::declined);
}

void DeskOffer::fill(const Desk &desk, const QStringList &unticked)
{
    QList<QTreeWidgetItem *> items;
    bool isAnyWithout = false;
    for (const DeskWindow &window : desk.windows) {
        const bool isWithout = unticked.contains(window.address);
        items.append(makeItem(window));
        items.last()->setCheckState(TitleColumn, isWithout ? Qt::Unchecked : Qt::Checked);
        isAnyWithout = isAnyWithout || isWithout;
    }
    m_list->addTopLevelItems(items);
    m_list->setCurrentItem(items.value(0));
    m_reason->setVisible(isAnyWithout);
    const int rows = std::clamp(int(items.size()), 1, mostRows);
    m_list->setFixedHeight(m_list->header()->sizeHint().height() + 2 * m_list->frameWidth()
                           + rows * std::max(m_list->sizeHintForRow(0), 1));
    noteTicks();
}

void DeskOffer::translate()
{
    const QString title =
        texts.at<"lblTitle", "Orvane was ended without being closed. These windows were open:">();
    m_title->setText(title);
    m_reason->setText(
        texts.at<"lblReason", "Pages that were loading when Orvane ended have no tick.">());
    m_open->setText(texts.at<"cmdOpen", "Open these">());
    m_later->setText(texts.at<"cmdLater", "Not now">());
    m_list->setHeaderLabels(
        {texts.at<"colTitle", "Window">(), texts.at<"colAddress", "Address">()});
    m_list->setAccessibleName(title);
    setAccessibleName(title);
}

QList<qsizetype> DeskOffer::ticked() const
{
    QList<qsizetype> windows;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        if (m_list->topLevelItem(i)->checkState(TitleColumn) == Qt::Checked)
            windows.append(i);
    }
    return windows;
}

void DeskOffer::noteTicks()
{
    m_open->setEnabled(!ticked().isEmpty());
}
