#include "AddFavoriteDialog.h"
#include "FavoriteFile.h"
#include "FolderTree.h"
#include "Forms.h"
#include "Language.h"

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

QString text(const QString &key, const QString &english)
{
    return languageText(u"frmAddFavorite"_s, key, english);
}

QLabel *makeLabel(const QString &name, const QString &english, QWidget *buddy)
{
    auto *label = new QLabel(text(name, english));
    label->setObjectName(name);
    label->setBuddy(buddy);
    // A tree takes no name from its label.
    buddy->setAccessibleName(label->text().remove(u'&').remove(u':'));
    return label;
}

QPushButton *addButton(QDialogButtonBox &box, const QString &name, const QString &english,
                       QDialogButtonBox::ButtonRole role)
{
    QPushButton *button = box.addButton(text(name, english), role);
    button->setObjectName(name);
    return button;
}
}

AddFavoriteDialog::AddFavoriteDialog(const Page &page, QWidget *owner)
    : QDialog(owner)
    , m_page(page)
    , m_name(new QLineEdit)
    , m_tree(new FolderTree(page.root, text(u"strFavorites"_s, u"Favorites"_s)))
{
    setObjectName("frmAddFavorite"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowTitle(text(u"Caption"_s, u"Add Favorite"_s));
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
    auto *newFolder = new QPushButton(text(u"cmdNewFolder"_s, u"New &Folder"_s));
    newFolder->setObjectName("cmdNewFolder"_L1);
    newFolder->setAutoDefault(false);
    auto *buttons = new QDialogButtonBox;
    QPushButton *ok = addButton(*buttons, u"cmdOK"_s, u"OK"_s, QDialogButtonBox::AcceptRole);
    QPushButton *cancel =
        addButton(*buttons, u"cmdCancel"_s, u"Cancel"_s, QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    connect(newFolder, &QPushButton::clicked, this, &AddFavoriteDialog::makeFolder);
    connect(ok, &QPushButton::clicked, this, &AddFavoriteDialog::addFavorite);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeLabel(u"lblName"_s, u"&Name:"_s, m_name));
    layout->addWidget(m_name);
    layout->addWidget(makeLabel(u"lblFolder"_s, u"Create &in:"_s, m_tree));
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
    const QString english = u"New Folder"_s;
    if (!m_tree->addFolder(FavoriteFile::name(text(u"strNewFolder"_s, english), english)))
        QApplication::beep();
}
