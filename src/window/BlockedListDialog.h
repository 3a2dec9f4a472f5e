#pragma once

#include <QDialog>
#include <QStringList>
#include <QTimer>

#include "PatternEntries.h"

class Frame;
class QLineEdit;
class QListWidget;
class QPushButton;

/// The dialog in which the list of blocked popup addresses is edited. What is changed takes effect
/// when it is saved; closing the dialog throws unsaved changes away.
class BlockedListDialog : public QDialog {
    Q_OBJECT

public:
    explicit BlockedListDialog(Frame &frame);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void arrange();
    void load();
    void enableBlock();
    void showSelected();
    void block();
    void removeSelected();
    void saveList();

    void takeLines(const QStringList &lines);
    void takeSome();
    void endTaking();
    void append(const QStringList &patterns);
    void tellRefused(const QStringList &patterns);
    QString selectedEntry() const;
    bool listKey(int key);

    PatternEntries m_entries;
    /// Put in and not yet looked at, and those of them that the list covers already.
    QStringList m_incoming;
    QStringList m_refused;
    qsizetype m_taken = 0;
    /// Since the list was read or saved.
    bool m_isChanged = false;
    QTimer m_nextSome;

    QLineEdit *m_pattern;
    QListWidget *m_list;
    QPushButton *m_block;
    QPushButton *m_remove;
    QPushButton *m_save;
};
