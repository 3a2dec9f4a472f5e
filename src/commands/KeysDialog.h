#pragma once

#include <QDialog>

class MainWindow;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// The list of all keys, searched as one types. It stays open beside the frame, so that what it
/// shows can be tried, and follows the language.
class KeysDialog : public QDialog {
    Q_OBJECT

public:
    /// There is one at most.
    static void showOver(MainWindow &frame);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    explicit KeysDialog(MainWindow &frame);
    void makeList();
    void translate();
    void fill();
    /// Shows the rows in which each word of what is typed stands, and their groups.
    void search();

    MainWindow &m_frame;
    QLabel *m_label;
    QLineEdit *m_find;
    QTreeWidget *m_list;
    QTreeWidgetItem *m_nothing = nullptr;
    QPushButton *m_close;
};
