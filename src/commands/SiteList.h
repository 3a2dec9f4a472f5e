#pragma once

#include "SitePermissions.h"

#include <QTreeWidget>

/// What the user had remembered of sites, a row for each answer.
class SiteList : public QTreeWidget {
    Q_OBJECT

public:
    SiteList();

    QList<SitePermissions::Answer> selected() const;
    /// Reads the file anew. What is selected stays so.
    void refresh();

signals:
    /// The user pressed Del.
    void removeRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitColumns();
};
