#pragma once

#include "ListWindow.h"

#include <QTimer>

class BrowserWindow;
class CostMeter;
class CostModel;
class QLabel;
class QModelIndex;
class QSortFilterProxyModel;
class QTreeView;

/// The inner window that tells what each window takes of memory and processor, measured while it is
/// in sight.
class CostsWindow : public ListWindow {
    Q_OBJECT

public:
    /// The one that is open in `frame`, or a new one.
    static CostsWindow *openIn(Frame &frame);

    void focusContents() override;
    void translate() override;

signals:
    // What the user chose to do with a window.
    void goToWanted(BrowserWindow *window);
    void sleepWanted(BrowserWindow *window);
    void closeWanted(BrowserWindow *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Act = void (CostsWindow::*)(BrowserWindow *);

    explicit CostsWindow(Frame &frame);

    void makeContents();
    QAction *add(const char *name, Act act);
    void perform(Act act);
    BrowserWindow *chosen() const;
    bool takeKey(QKeyEvent &key);
    void widenColumns();
    void measure();
    void showSum();
    void refreshActions();
    void showMenu(const QPoint &place);

    CostMeter *m_meter;
    CostModel *m_model;
    QSortFilterProxyModel *m_sorted;
    QTreeView *m_view;
    QLabel *m_sum;
    QAction *m_goTo;
    QAction *m_sleep;
    QAction *m_close;
    QTimer m_looks{this};
};
