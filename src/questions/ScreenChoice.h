#pragma once

#include <QAbstractItemModel>
#include <QComboBox>
#include <QPointer>

/// Which screen or window a page gets to see: the names that the engine lists, which may come and
/// go while the user chooses. None is chosen until he does.
class ScreenChoice : public QComboBox {
    Q_OBJECT

public:
    ScreenChoice(QAbstractItemModel *screens, QAbstractItemModel *windows, QWidget *parent);

    /// What is chosen, in one of the models; not valid: nothing.
    QModelIndex chosen() const;
    bool isScreen() const { return chosen().model() == m_screens; }

private:
    void fill();
    void add(const QAbstractItemModel *model);

    QPointer<QAbstractItemModel> m_screens;
    QPointer<QAbstractItemModel> m_windows;
};
