#pragma once

#include "SitePermissions.h"
#include "SiteZoom.h"

#include <QTreeWidget>
#include <variant>

/// What the user had remembered of sites, a row for each answer and for each size of pages.
class SiteList : public QTreeWidget {
    Q_OBJECT

public:
    using Kept = std::variant<SitePermissions::Answer, SiteZoom::Kept>;

    SiteList();

    QList<Kept> selected() const;
    /// Reads the files anew. What is selected stays so.
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
