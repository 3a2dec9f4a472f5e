#pragma once

#include <QTreeView>

/// The list itself: rows with their columns, and the keys that act on those chosen.
class DownloadView : public QTreeView {
    Q_OBJECT

public:
    explicit DownloadView(QWidget *parent = nullptr);

    /// What stands in its place while there are no rows.
    void setEmptyText(const QString &text);

signals:
    /// Enter, or a double click.
    void openWanted();
    void pauseWanted();
    void copyWanted();
    void removeWanted();

protected:
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    using Signal = void (DownloadView::*)();
    /// Null for a key that is not one of the list's own.
    static Signal signalOf(const QKeyEvent &key);

    QString m_emptyText;
};
