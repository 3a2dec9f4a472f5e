#pragma once

#include <QWidget>

class QPushButton;
class SiteList;
class WriteResult;

/// The third page of the internet options: what the user had remembered when pages of a site asked
/// for something, and how large he wants them. What is removed is gone at once.
class InternetSitesPage : public QWidget {
    Q_OBJECT

public:
    InternetSitesPage();
    ~InternetSitesPage() override;

private:
    void enable();
    void removeSelected();
    void askToRemoveAll();
    void removeAll();
    /// Of what was removed from that file.
    void finish(const QString &file, const WriteResult &result);

    SiteList *m_list;
    QPushButton *m_remove;
    QPushButton *m_removeAll;
};
