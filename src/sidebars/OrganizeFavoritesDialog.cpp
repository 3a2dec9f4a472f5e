#include "OrganizeFavoritesDialog.h"
#include "FavoriteFile.h"
#include "Forms.h"
#include "Language.h"
#include "OrganizeTree.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize comfortableSize(620, 440);

QString text(const QString &key, const QString &english)
{
    return languageText(u"frmOrganizeFavorites"_s, key, english);
}
}

OrganizeFavoritesDialog::OrganizeFavoritesDialog(const QString &root, QWidget *owner)
    : QDialog(owner)
    , m_tree(new OrganizeTree(root))
{
    setObjectName("frmOrganizeFavorites"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowTitle(text(u"Caption"_s, u"Organize Favorites"_s));
    makeForm();
    resize(comfortableSize);
    m_tree->setFocus();
}

QPushButton *OrganizeFavoritesDialog::makeButton(const QString &name, const QString &english)
{
    auto *button = new QPushButton(text(name, english));
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

void OrganizeFavoritesDialog::makeForm()
{
    m_tree->setObjectName("tvOrganize"_L1);
    m_tree->setAccessibleName(text(u"strFavorites"_s, u"Favorites"_s));
    auto *hint = new QLabel(
        text(u"lblHint"_s, u"Drag favorites into another &folder, or cut and paste them:"_s));
    hint->setObjectName("lblHint"_L1);
    hint->setBuddy(m_tree);
    hint->setWordWrap(true);
    QPushButton *newFolder = makeButton(u"cmdNewFolder"_s, u"&New Folder"_s);
    QPushButton *rename = makeButton(u"cmdRename"_s, u"&Rename"_s);
    QPushButton *remove = makeButton(u"cmdDelete"_s, u"&Delete"_s);
    QPushButton *close = makeButton(u"cmdClose"_s, u"&Close"_s);
    connect(newFolder, &QPushButton::clicked, this, &OrganizeFavoritesDialog::makeFolder);
    connect(rename, &QPushButton::clicked, m_tree, &OrganizeTree::renameCurrent);
    connect(remove, &QPushButton::clicked, m_tree, &OrganizeTree::deleteSelected);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    const auto enable = [this, rename, remove] {
        const qsizetype selected = m_tree->selectedItems().size();
        rename->setEnabled(selected == 1);
        remove->setEnabled(selected > 0);
    };
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, enable);
    enable();

    auto *buttons = new QVBoxLayout;
    for (QPushButton *button : {newFolder, rename, remove})
        buttons->addWidget(button);
    buttons->addStretch(1);
    buttons->addWidget(close);
    auto *body = new QHBoxLayout;
    body->addWidget(m_tree, 1);
    body->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addLayout(body, 1);
}

void OrganizeFavoritesDialog::makeFolder()
{
    const QString english = u"New Folder"_s;
    if (!m_tree->addFolder(FavoriteFile::name(text(u"strNewFolder"_s, english), english)))
        QApplication::beep();
}
