#pragma once

#include <QDialog>

class OrganizeTree;
class QPushButton;
class Text;

/// Organize Favorites: the favorites as a tree, with buttons that make folders, rename and delete.
class OrganizeFavoritesDialog : public QDialog {
    Q_OBJECT

public:
    /// `root` is the Favorites folder without a trailing slash.
    OrganizeFavoritesDialog(const QString &root, QWidget *owner);

private:
    void makeForm();
    QPushButton *makeButton(const Text &caption);
    void makeFolder();

    OrganizeTree *m_tree;
};
