#pragma once

#include "ListWindow.h"
#include "VisitActions.h"

#include <QTimer>

class QLabel;
class QLineEdit;
class VisitHistory;
class VisitModel;
class VisitView;

/// The inner window with the pages visited, searched as one types. There is one at most; its tab
/// is like a page's.
class VisitsWindow : public ListWindow {
    Q_OBJECT

public:
    /// The one that is open in `frame`, or a new one.
    static VisitsWindow *openIn(Frame &frame, VisitHistory &history);

    void focusContents() override;
    void translate() override;

signals:
    /// The user chose a page.
    void openWanted(const QString &address);
    void newWindowWanted(const QString &address);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void onActivated() override;

private:
    VisitsWindow(Frame &frame, VisitHistory &history);

    void makeContents();
    void connectParts();
    /// The rows anew, with the same pages chosen.
    void fill();
    /// Chooses these, or, where they are gone, what stands in the place of `currentRow` now.
    void restore(const QList<QPair<QByteArray, QDate>> &chosen, int currentRow);
    void showMenu(const QPoint &place);
    VisitActions::Chosen chosen() const;
    QString emptyText() const;

    VisitHistory &m_history;
    QLineEdit *m_search;
    VisitModel *m_model;
    VisitView *m_view;
    QLabel *m_more;
    VisitActions *m_actions;
    /// What the rows were searched by.
    QString m_searched;
    /// Many changes come together.
    QTimer m_fills;
};
