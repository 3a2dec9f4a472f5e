#include "KeysDialog.h"

#include "Captioned.h"
#include "Forms.h"
#include "KeyList.h"
#include "MainWindow.h"
#include "ScreenFit.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmKeys"> texts;
constexpr QSize comfortableSize(760, 640);
constexpr int whatColumn = 0;
constexpr int keysColumn = 1;
/// What is searched: group, command and keys, as shown and as they are written everywhere.
constexpr int searchedRole = Qt::UserRole;

QString keysText(const QList<QKeySequence> &keys, QKeySequence::SequenceFormat format)
{
    QStringList names;
    for (const QKeySequence &key : keys)
        names.append(key.toString(format));
    return names.join(u", "_s);
}

bool holdsAll(const QString &text, const QStringList &words)
{
    return std::ranges::all_of(
        words, [&text](const QString &word) { return text.contains(word, Qt::CaseInsensitive); });
}

}

KeysDialog::KeysDialog(MainWindow &frame)
    : QDialog(&frame)
    , m_frame(frame)
    , m_label(captioned<QLabel>(texts.at<"lblFind", "&Search:">))
    , m_find(new QLineEdit)
    , m_list(new QTreeWidget)
{
    setObjectName("frmKeys"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    m_find->setObjectName("txtFind"_L1);
    m_find->setClearButtonEnabled(true);
    m_label->setBuddy(m_find);
    makeList();
    auto *buttons = new QDialogButtonBox;
    m_close = addCaptioned(*buttons, texts.at<"cmdClose", "&Close">, QDialogButtonBox::RejectRole);
    m_close->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(m_find, &QLineEdit::textChanged, this, &KeysDialog::search);
    connect(&frame, &MainWindow::translated, this, &KeysDialog::translate);

    auto *row = new QHBoxLayout;
    row->addWidget(m_label);
    row->addWidget(m_find, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resizeToScreen(*this, comfortableSize);
    translate();
    m_find->setFocus();
}

void KeysDialog::makeList()
{
    m_list->setObjectName("lstKeys"_L1);
    m_list->setColumnCount(2);
    m_list->setRootIsDecorated(false);
    m_list->setItemsExpandable(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    QHeaderView &header = *m_list->header();
    header.setStretchLastSection(false);
    header.setSectionsMovable(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
}

void KeysDialog::translate()
{
    setWindowTitle(texts.at<"Caption", "Keys">());
    m_label->setText(texts.at<"lblFind", "&Search:">());
    m_close->setText(texts.at<"cmdClose", "&Close">());
    m_find->setAccessibleName(m_label->text().remove(u'&').remove(u':'));
    m_list->setAccessibleName(windowTitle());
    m_list->setHeaderLabels({texts.at<"colCommand", "Command">(), texts.at<"colKeys", "Keys">()});
    fill();
    search();
}

void KeysDialog::fill()
{
    m_list->clear();
    QTreeWidgetItem *group = nullptr;
    const QList<KeyRow> rows = allKeys(m_frame);
    for (const KeyRow &row : rows) {
        if (!group || group->text(whatColumn) != row.group) {
            group = new QTreeWidgetItem(m_list, {row.group});
            QFont bold = group->font(whatColumn);
            bold.setBold(true);
            group->setFont(whatColumn, bold);
            group->setFirstColumnSpanned(true);
            group->setExpanded(true);
        }
        const QString keys = keysText(row.keys, QKeySequence::NativeText);
        auto *item = new QTreeWidgetItem(group, {row.what, keys});
        item->setData(
            whatColumn, searchedRole,
            QStringList{row.group, row.what, keys, keysText(row.keys, QKeySequence::PortableText)}
                .join(u'\n'));
    }
    m_nothing = new QTreeWidgetItem(m_list, {texts.at<"strNothing", "No key is found">()});
    m_nothing->setFirstColumnSpanned(true);
}

void KeysDialog::search()
{
    const QStringList words = m_find->text().split(u' ', Qt::SkipEmptyParts);
    bool isAnySeen = false;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem *group = m_list->topLevelItem(i);
        bool isSeen = false;
        for (int j = 0; j < group->childCount(); ++j) {
            QTreeWidgetItem *item = group->child(j);
            const bool fits = holdsAll(item->data(whatColumn, searchedRole).toString(), words);
            item->setHidden(!fits);
            isSeen = isSeen || fits;
        }
        group->setHidden(!isSeen);
        isAnySeen = isAnySeen || isSeen;
    }
    m_nothing->setHidden(isAnySeen);
    m_list->scrollToTop();
}

/// From what is typed on into the list.
void KeysDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Down && m_find->hasFocus())
        m_list->setFocus(Qt::TabFocusReason);
    else
        QDialog::keyPressEvent(event);
}

void KeysDialog::showOver(MainWindow &frame)
{
    const QList<QWidget *> open = Forms::named("frmKeys");
    QWidget *dialog = open.isEmpty() ? new KeysDialog(frame) : open.first();
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}
