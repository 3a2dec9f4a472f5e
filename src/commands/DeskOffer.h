#pragma once

#include "Desk.h"

#include <QFrame>
#include <QStringList>

class QLabel;
class QPushButton;
class QTreeWidget;

/// A strip of the frame with the windows that were open when the program was ended in between: a
/// list with title and address of each and a tick, and what to do with them. It takes no focus by
/// itself and holds up nothing.
class DeskOffer : public QFrame {
    Q_OBJECT

public:
    /// Windows of the addresses in `unticked` come without their tick.
    explicit DeskOffer(const Desk &desk, const QStringList &unticked = {},
                       QWidget *parent = nullptr);

    void translate();

signals:
    /// The windows of these indices.
    void accepted(const QList<qsizetype> &windows);
    void declined();

private:
    void fill(const Desk &desk, const QStringList &unticked);
    QList<qsizetype> ticked() const;
    void noteTicks();

    QLabel *m_title;
    /// Why some have no tick.
    QLabel *m_reason;
    QTreeWidget *m_list;
    QPushButton *m_open;
    QPushButton *m_later;
};
