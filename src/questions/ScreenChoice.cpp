#include "ScreenChoice.h"

#include "ShownText.h"
#include "Texts.h"

namespace {
/// Characters; other programs give their windows any title.
constexpr int longestName = 80;
}

ScreenChoice::ScreenChoice(QAbstractItemModel *screens, QAbstractItemModel *windows,
                           QWidget *parent)
    : QComboBox(parent)
    , m_screens(screens)
    , m_windows(windows)
{
    setObjectName(QStringLiteral("cboScreen"));
    setAccessibleName(Texts<"Permissions">::at<"cboScreen", "Screen or window to show">());
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setPlaceholderText(accessibleName());
    for (QAbstractItemModel *model : {screens, windows}) {
        if (!model)
            continue;
        for (const auto change :
             {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
            connect(model, change, this, &ScreenChoice::fill);
        connect(model, &QAbstractItemModel::dataChanged, this, &ScreenChoice::fill);
        connect(model, &QAbstractItemModel::modelReset, this, &ScreenChoice::fill);
    }
    fill();
}

void ScreenChoice::fill()
{
    const QPersistentModelIndex old(chosen());
    clear();
    add(m_screens);
    add(m_windows);
    setCurrentIndex(-1);
    for (int row = 0; old.isValid() && row < count(); ++row) {
        if (itemData(row).value<QPersistentModelIndex>() == old)
            setCurrentIndex(row);
    }
}

void ScreenChoice::add(const QAbstractItemModel *model)
{
    for (int row = 0; model && row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        addItem(shownText(index.data().toString().left(longestName)),
                QVariant::fromValue(QPersistentModelIndex(index)));
    }
}

QModelIndex ScreenChoice::chosen() const
{
    return currentData().value<QPersistentModelIndex>();
}
