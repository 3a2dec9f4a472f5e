#pragma once

#include <QDialog>
#include <QString>

class FolderTree;
class QLineEdit;

/// Asks for the name of a new favorite and the folder to put it in, and writes it there. It stays
/// open, with a beep, when the favorite cannot be written.
class AddFavoriteDialog : public QDialog {
    Q_OBJECT

public:
    struct Page {
        QString url;
        QString title;
        /// The Favorites folder.
        QString root;
    };

    AddFavoriteDialog(const Page &page, QWidget *owner);

signals:
    /// The dialog is over, and the favorites are not what they were before.
    void changed();

private:
    void makeForm();
    QString title() const;
    void addFavorite();
    void makeFolder();

    Page m_page;
    QLineEdit *m_name;
    FolderTree *m_tree;
    bool m_changed = false;
};
