#include "BlockedListDialog.h"

#include "BlockedList.h"
#include "Captioned.h"
#include "Forms.h"
#include "Frame.h"
#include "MsgBox.h"
#include "NotSaved.h"

#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize comfortableSize(520, 380);
/// Characters of one pattern. Many may come together: they are parted before this cuts them.
constexpr qsizetype longestPattern = 32767;
/// For one part of what is put in, in which nothing else can be done; milliseconds.
constexpr int longestPart = 30;
/// Patterns that one message names.
constexpr qsizetype mostNamed = 10;

constexpr Texts<"frmBlockedURLs"> texts;

bool isLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r';
}

/// The lines that hold something. A file would take a break within a pattern for the end of it.
QStringList linesOf(const QString &text)
{
    QString lines = text;
    lines.replace(u'\r', u'\n');
    return lines.split(u'\n', Qt::SkipEmptyParts);
}

QPushButton *makeButton(const Text &caption)
{
    auto *button = captioned<QPushButton>(caption);
    button->setEnabled(false);
    return button;
}

}

BlockedListDialog::BlockedListDialog(Frame &frame)
    : QDialog(frame.window())
    , m_pattern(new QLineEdit)
    , m_list(new QListWidget)
    , m_block(makeButton(texts.at<"cmdBlock", "&Block">))
    , m_remove(makeButton(texts.at<"cmdRemove", "&Remove">))
    , m_save(makeButton(texts.at<"cmdSaveList", "&Save List">))
{
    setObjectName("frmBlockedURLs"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texts.at<"Caption", "Smart Popup Blocker URLs">());
    arrange();
    m_nextSome.setInterval(0);
    m_nextSome.setSingleShot(true);
    connect(&m_nextSome, &QTimer::timeout, this, &BlockedListDialog::takeSome);
    connect(m_pattern, &QLineEdit::textChanged, this, &BlockedListDialog::enableBlock);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &BlockedListDialog::showSelected);
    connect(m_block, &QPushButton::clicked, this, &BlockedListDialog::block);
    connect(m_remove, &QPushButton::clicked, this, &BlockedListDialog::removeSelected);
    connect(m_save, &QPushButton::clicked, this, &BlockedListDialog::saveList);
    load();
}

void BlockedListDialog::arrange()
{
    m_pattern->setObjectName("txtBlockURL"_L1);
    m_pattern->setMaxLength(std::numeric_limits<int>::max());
    m_pattern->setAccessibleName(texts.at<"txtBlockURL", "Pattern to block">());
    m_pattern->setPlaceholderText(texts.at<"strPattern", "Pattern, such as *//ads.*">());
    m_list->setObjectName("lstBlockedURLs"_L1);
    m_list->setAccessibleName(texts.at<"lstBlockedURLs", "Blocked patterns">());
    m_list->setUniformItemSizes(true);
    m_list->installEventFilter(this);
    // Enter in the text box presses it.
    m_block->setDefault(true);

    auto *top = new QHBoxLayout;
    top->addWidget(m_pattern);
    top->addWidget(m_block);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_remove);
    bottom->addStretch();
    bottom->addWidget(m_save);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_list);
    layout->addLayout(bottom);
    setSizeGripEnabled(true);
    resize(comfortableSize);
    m_pattern->setFocus();
}

void BlockedListDialog::load()
{
    Forms::add(this);
    QStringList entries = blockedList();
    entries.removeAll(QString());
    append(entries);
}

void BlockedListDialog::append(const QStringList &patterns)
{
    for (const QString &pattern : patterns)
        m_entries.append(pattern);
    m_list->addItems(patterns);
}

void BlockedListDialog::enableBlock()
{
    const QString typed = m_pattern->text();
    if (std::any_of(typed.cbegin(), typed.cend(), isLineBreak))
        takeLines(linesOf(typed));
    else if (typed.size() > longestPattern)
        m_pattern->setText(typed.left(longestPattern));
    m_block->setEnabled(!m_pattern->text().isEmpty());
}

/// Several lines put in are a pattern each; a single one is left to be looked at.
void BlockedListDialog::takeLines(const QStringList &lines)
{
    if (lines.size() < 2) {
        m_pattern->setText(lines.value(0));
        return;
    }
    m_incoming = lines;
    m_taken = 0;
    m_pattern->clear();
    // Until all are in, there is nothing whole to be saved.
    m_pattern->setReadOnly(true);
    takeSome();
}

/// The first part at once, the others as the program has time.
void BlockedListDialog::takeSome()
{
    QElapsedTimer time;
    time.start();
    QStringList taken;
    while (m_taken < m_incoming.size() && !time.hasExpired(longestPart)) {
        const QString &line = m_incoming.at(m_taken++);
        if (m_entries.isAnyCoveredBy(line)) {
            m_refused.append(line);
        } else {
            m_entries.append(line);
            taken.append(line);
        }
    }
    m_list->addItems(taken);
    m_isChanged |= !taken.isEmpty();
    if (m_taken < m_incoming.size()) {
        m_save->setEnabled(false);
        m_nextSome.start();
    } else {
        endTaking();
    }
}

void BlockedListDialog::endTaking()
{
    m_pattern->setReadOnly(false);
    if (m_refused.size() < m_incoming.size())
        m_list->setCurrentRow(m_list->count() - 1);
    m_incoming.clear();
    m_save->setEnabled(m_isChanged);
    if (const QStringList refused = std::exchange(m_refused, {}); !refused.isEmpty())
        tellRefused(refused);
}

QString BlockedListDialog::selectedEntry() const
{
    const QList<QListWidgetItem *> selected = m_list->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

void BlockedListDialog::showSelected()
{
    m_remove->setEnabled(!selectedEntry().isEmpty());
}

void BlockedListDialog::block()
{
    const QString typed = m_pattern->text();
    if (typed.isEmpty())
        return;
    if (m_entries.isAnyCoveredBy(typed)) {
        tellRefused({typed});
        return;
    }
    append({typed});
    m_list->setCurrentRow(m_list->count() - 1);
    m_isChanged = true;
    m_save->setEnabled(true);
    m_pattern->clear();
}

/// One pattern stays in the box; of several, which ones is told.
void BlockedListDialog::tellRefused(const QStringList &patterns)
{
    QString message =
        texts.at<"sPatternMatch", "There is already a pattern match for this url in the list!">();
    if (m_pattern->text().isEmpty()) {
        message += "\n\n"_L1 + patterns.first(qMin(mostNamed, patterns.size())).join(u'\n');
        if (patterns.size() > mostNamed)
            message += u"\n\u2026"_s;
    }
    MsgBox::inform(this, message);
}

void BlockedListDialog::removeSelected()
{
    if (m_list->selectedItems().isEmpty())
        return;
    const int row = m_list->row(m_list->selectedItems().first());
    delete m_list->takeItem(row);
    m_entries.removeAt(row);
    // Nothing is selected now; the keyboard goes on from the entry that moved up.
    const int next = std::min(row, m_list->count() - 1);
    m_list->setCurrentRow(next, QItemSelectionModel::Clear);
    m_isChanged = true;
    m_save->setEnabled(m_incoming.isEmpty());
    m_list->setFocus();
}

void BlockedListDialog::saveList()
{
    QStringList entries;
    entries.reserve(m_list->count());
    for (int row = 0; row < m_list->count(); ++row)
        entries.append(m_list->item(row)->text());
    if (const WriteResult result = saveBlockedList(entries); !result) {
        NotSaved::tell(this, popupURLsFile(), result);
        return;
    }
    loadBlockedList();
    m_isChanged = false;
    m_save->setEnabled(false);
    m_list->clearSelection();
    m_pattern->setFocus();
}

bool BlockedListDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_list && event->type() == QEvent::KeyPress
        && listKey(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QDialog::eventFilter(watched, event);
}

/// True for a key that the list leaves to the dialog.
bool BlockedListDialog::listKey(int key)
{
    switch (key) {
    case Qt::Key_Delete:
        removeSelected();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Would press the button that belongs to the text box.
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (!m_list->selectedItems().isEmpty() || !m_list->currentItem())
            return false;
        m_list->currentItem()->setSelected(true);
        return true;
    default:
        return false;
    }
}
