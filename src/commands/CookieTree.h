#pragma once

#include <QTimer>
#include <QTreeWidget>

class EngineData;
struct StoredCookie;

/// The cookies the engine keeps, by site; a site that is selected stands for all its cookies.
class CookieTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit CookieTree(EngineData &engine);

    /// Without those of a site twice.
    QList<StoredCookie> selectedCookies() const;
    /// Deletes what is selected.
    void deleteSelected();

signals:
    /// The tree shows other cookies than before.
    void refreshed();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void setColumnWidths();
    void refresh();
    void fill(const QList<StoredCookie> &cookies);

    EngineData &m_data;
    /// A page load changes many cookies.
    QTimer m_refresh;
};
