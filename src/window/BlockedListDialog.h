#pragma once

#include <QDialog>

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
    bool add(const QString &pattern);
    void tellRefused(const QStringList &patterns);
    QString selectedEntry() const;
    bool listKey(int key);

    QLineEdit *m_txtBlockURL;
    QListWidget *m_lstBlockedURLs;
    QPushButton *m_cmdBlock;
    QPushButton *m_cmdRemove;
    QPushButton *m_cmdSaveList;
};
