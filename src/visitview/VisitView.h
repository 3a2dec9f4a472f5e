#pragma once

#include <QTreeView>

/// The list of visits: the keys that act on its rows, and headings over all columns.
class VisitView : public QTreeView {
    Q_OBJECT

public:
    explicit VisitView(QWidget *parent = nullptr);

    /// What stands in its place while there are no rows.
    void setEmptyText(const QString &text);

signals:
    /// Enter, or a double click.
    void openWanted();
    /// Ctrl+Enter.
    void newWindowWanted();
    void copyWanted();
    void deleteWanted();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    using Signal = void (VisitView::*)();
    /// Null for a key that is not one of the list's own.
    static Signal signalOf(const QKeyEvent &key);

    QString m_emptyText;
};
