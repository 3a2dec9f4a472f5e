#include "AddFavoriteDialog.h"
#include "Captioned.h"
#include "FavoriteFile.h"
#include "FolderTree.h"
#include "Forms.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize comfortableSize(380, 360);
// Longer than any file name.
constexpr int longestName = 255;

constexpr Texts<"frmAddFavorite"> texts;

QLabel *makeLabel(const Text &caption, QWidget *buddy)
{
    auto *label = captioned<QLabel>(caption);
    label->setBuddy(buddy);
    // A tree takes no name from its label.
    buddy->setAccessibleName(label->text().remove(u'&').remove(u':'));
    return label;
}
}

AddFavoriteDialog::AddFavoriteDialog(const Page &page, QWidget *owner)
    : QDialog(owner)
    , m_page(page)
    , m_name(new QLineEdit)
    , m_tree(new FolderTree(page.root, texts.at<"strFavorites", "Favorites">()))
{
    setObjectName("frmAddFavorite"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowTitle(texts.at<"Caption", "Add Favorite">());
    makeForm();
    resize(comfortableSize);
    m_name->setText(page.title.simplified());
    m_name->selectAll();
    m_name->setFocus();
    connect(m_tree, &FolderTree::folderChanged, this, [this] { m_changed = true; });
    connect(this, &QDialog::finished, this, [this] {
        if (m_changed)
            emit changed();
    });
}

void AddFavoriteDialog::makeForm()
{
    m_name->setObjectName("txtName"_L1);
    m_name->setMaxLength(longestName);
    m_tree->setObjectName("tvFolders"_L1);
    auto *newFolder = captioned<QPushButton>(texts.at<"cmdNewFolder", "New &Folder">);
    newFolder->setAutoDefault(false);
    auto *buttons = new QDialogButtonBox;
    QPushButton *ok = addCaptioned(*buttons, texts.at<"cmdOK", "OK">, QDialogButtonBox::AcceptRole);
    QPushButton *cancel =
        addCaptioned(*buttons, texts.at<"cmdCancel", "Cancel">, QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    connect(newFolder, &QPushButton::clicked, this, &AddFavoriteDialog::makeFolder);
    connect(ok, &QPushButton::clicked, this, &AddFavoriteDialog::addFavorite);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeLabel(texts.at<"lblName", "&Name:">, m_name));
    layout->addWidget(m_name);
    layout->addWidget(makeLabel(texts.at<"lblFolder", "Create &in:">, m_tree));
    layout->addWidget(m_tree, 1);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(newFolder);
    bottom->addWidget(buttons, 1);
    layout->addLayout(bottom);
}

void AddFavoriteDialog::addFavorite()
{
    const QString host = QUrl(m_page.url).host();
    const QString fallback = FavoriteFile::name(host, u"Favorite"_s);
    const QString name = FavoriteFile::name(m_name->text(), fallback);
    if (!FavoriteFile::create(m_tree->folder(), name, m_page.url, title())) {
        QApplication::beep();
        return;
    }
    m_changed = true;
    accept();
}

/// As typed, or the page's in full where the field is too short for it.
QString AddFavoriteDialog::title() const
{
    const QString whole = m_page.title.simplified();
    const QString typed = m_name->text();
    return typed == whole.left(typed.size()) && typed.size() == longestName ? whole
                                                                            : typed.simplified();
}

void AddFavoriteDialog::makeFolder()
{
    m_tree->setFocus();
    const QString name =
        FavoriteFile::name(texts.at<"strNewFolder", "New Folder">(), u"New Folder"_s);
    if (!m_tree->addFolder(name))
        QApplication::beep();
}
