#include "AddressListModel.h"
#include "AddressList.h"

AddressListModel::AddressListModel(AddressList &list, QObject *parent)
    : QAbstractListModel(parent)
    , m_list(list)
{
}

int AddressListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_list.count();
}

QVariant AddressListModel::data(const QModelIndex &index, int role) const
{
    // An empty combo box asks for the item at no index.
    if (!index.isValid() || index.row() >= m_list.count())
        return {};
    if (role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole)
        return m_list.at(index.row());
    return {};
}

void AddressListModel::putOnTop(const QString &text)
{
    const int old = m_list.find(text);
    if (old == 0)
        return;
    emit layoutAboutToBeChanged();
    if (old > 0)
        m_list.takeForTop(old);
    m_list.addOnTop(text);
    const QModelIndexList before = persistentIndexList();
    for (const QModelIndex &index : before) {
        int row = index.row() + 1;
        if (old == index.row())
            row = 0;
        else if (old >= 0 && index.row() > old)
            row = index.row();
        changePersistentIndex(index, this->index(row));
    }
    emit layoutChanged();
}

void AddressListModel::clear()
{
    emit layoutAboutToBeChanged();
    m_list.clear();
    const QModelIndexList before = persistentIndexList();
    for (const QModelIndex &index : before)
        changePersistentIndex(index, {});
    emit layoutChanged();
}
