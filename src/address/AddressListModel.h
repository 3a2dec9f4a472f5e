#pragma once

#include <QAbstractListModel>

class AddressList;

/// The entries of an address list as rows for its drop-down, and the only one who changes them.
///
/// Changes are announced as a new layout, not as rows that come and go: an editable combo box
/// answers the latter by putting an entry into the field (the first of an empty list, the
/// neighbour of a removed one), which is never wanted here.
class AddressListModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit AddressListModel(AddressList &list, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    /// Makes `text` row 0, from wherever it was.
    void putOnTop(const QString &text);
    void clear();

private:
    AddressList &m_list;
};
