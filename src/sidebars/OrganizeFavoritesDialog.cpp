#include "OrganizeFavoritesDialog.h"
#include "Captioned.h"
#include "FavoriteFile.h"
#include "Forms.h"
#include "OrganizeTree.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize comfortableSize(620, 440);

constexpr Texts<"frmOrganizeFavorites"> texts;
}

OrganizeFavoritesDialog::OrganizeFavoritesDialog(const QString &root, QWidget *owner)
    : QDialog(owner)
    , m_tree(new OrganizeTree(root))
{
    setObjectName("frmOrganizeFavorites"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowTitle(texts.at<"Caption", "Organize Favorites">());
    makeForm();
    resize(comfortableSize);
    m_tree->setFocus();
}

QPushButton *OrganizeFavoritesDialog::makeButton(const Text &caption)
{
    auto *button = captioned<QPushButton>(caption);
    button->setAutoDefault(false);
    return button;
}

void OrganizeFavoritesDialog::makeForm()
{
    m_tree->setObjectName("tvOrganize"_L1);
    m_tree->setAccessibleName(texts.at<"strFavorites", "Favorites">());
    auto *hint = captioned<QLabel>(
        texts.at<"lblHint", "Drag favorites into another &folder, or cut and paste them:">);
    hint->setBuddy(m_tree);
    hint->setWordWrap(true);
    QPushButton *newFolder = makeButton(texts.at<"cmdNewFolder", "&New Folder">);
    QPushButton *rename = makeButton(texts.at<"cmdRename", "&Rename">);
    QPushButton *remove = makeButton(texts.at<"cmdDelete", "&Delete">);
    QPushButton *close = makeButton(texts.at<"cmdClose", "&Close">);
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
    const QString name =
        FavoriteFile::name(texts.at<"strNewFolder", "New Folder">(), u"New Folder"_s);
    if (!m_tree->addFolder(name))
        QApplication::beep();
}
