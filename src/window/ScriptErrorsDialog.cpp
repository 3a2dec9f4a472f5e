#include "ScriptErrorsDialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "Forms.h"
#include "ShownAddress.h"
#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int comfortableWidth = 460;
/// A page that fails without end redraws the window this often at most, milliseconds.
constexpr int refreshInterval = 100;
constexpr int longestMessage = 5000;

constexpr Texts<"frmScriptErrors"> texts;

QPushButton *makeButton(const char *name)
{
    auto *button = new QPushButton;
    button->setObjectName(QLatin1StringView(name));
    button->setAutoDefault(false);
    return button;
}

}

ScriptErrorsDialog::ScriptErrorsDialog(QWidget *owner, const std::function<QString()> &page)
    : QDialog(owner)
    , m_page(page)
{
    setObjectName("frmScriptErrors"_L1);
    setAttribute(Qt::WA_ShowWithoutActivating);
    Forms::add(this);
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(refreshInterval);
    connect(&m_refresh, &QTimer::timeout, this, &ScriptErrorsDialog::refresh);
    buildControls();
}

void ScriptErrorsDialog::buildControls()
{
    m_position = new QLabel;
    m_position->setObjectName("lblPosition"_L1);
    m_message = new QPlainTextEdit;
    m_message->setObjectName("txtError"_L1);
    m_message->setReadOnly(true);
    m_message->setTabChangesFocus(true);
    m_message->setMinimumWidth(comfortableWidth);
    m_ignorePage = new QCheckBox;
    m_ignorePage->setObjectName("chkIgnorePage"_L1);
    auto *row = new QHBoxLayout;
    row->addWidget(m_previous = makeButton("cmdPrevious"));
    row->addWidget(m_next = makeButton("cmdNext"));
    row->addStretch();
    row->addWidget(m_copy = makeButton("cmdCopy"));
    row->addWidget(m_close = makeButton("cmdClose"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_position);
    layout->addWidget(m_message, 1);
    layout->addWidget(m_ignorePage);
    layout->addLayout(row);
    connect(m_previous, &QPushButton::clicked, this, [this] { step(-1); });
    connect(m_next, &QPushButton::clicked, this, [this] { step(1); });
    connect(m_copy, &QPushButton::clicked, this, &ScriptErrorsDialog::copy);
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);
    connect(m_ignorePage, &QCheckBox::clicked, this, &ScriptErrorsDialog::ignorePage);
}

void ScriptErrorsDialog::translate()
{
    setWindowTitle(texts.at<"Caption", "Script Errors">());
    m_message->setAccessibleName(texts.at<"txtError", "Script error">());
    m_ignorePage->setText(texts.at<"chkIgnorePage", "&Do not show errors of this page">());
    m_previous->setText(texts.at<"cmdPrevious", "&Previous">());
    m_next->setText(texts.at<"cmdNext", "&Next">());
    m_copy->setText(texts.at<"cmdCopy", "&Copy">());
    m_close->setText(texts.at<"cmdClose", "Close">());
}

void ScriptErrorsDialog::add(const ScriptError &error)
{
    if (m_ignored.contains(m_page()))
        return;
    Entry entry{error, {}};
    entry.error.message.truncate(longestMessage);
    const bool isKnown =
        std::any_of(m_entries.cbegin(), m_entries.cend(),
                    [&entry](const Entry &each) { return each.error == entry.error; });
    if (isKnown || m_entries.size() == most)
        return;
    m_entries.append(entry);
    if (!m_dismissed && !m_refresh.isActive())
        m_refresh.start();
}

void ScriptErrorsDialog::pageChanged()
{
    // The first errors of a page can be told before the page is: those that wait stay.
    if (!std::exchange(m_dismissed, false))
        return;
    m_entries.clear();
    m_current = 0;
}

void ScriptErrorsDialog::nameThePage()
{
    const QString page = m_page();
    const bool ignored = m_ignored.contains(page);
    m_entries.removeIf([ignored](const Entry &entry) { return ignored && entry.page.isEmpty(); });
    for (Entry &entry : m_entries) {
        if (entry.page.isEmpty())
            entry.page = page;
    }
}

void ScriptErrorsDialog::refresh()
{
    nameThePage();
    if (m_entries.isEmpty())
        return;
    if (!isVisible())
        translate();
    showEntry();
    show();
}

void ScriptErrorsDialog::showEntry()
{
    const Entry &entry = m_entries.at(m_current);
    m_position->setText(
        texts.at<"strPosition", "Error %1 of %2">().arg(m_current + 1).arg(m_entries.size()));
    const QString shown = details(entry);
    if (m_message->toPlainText() != shown)
        m_message->setPlainText(shown);
    m_ignorePage->setChecked(m_ignored.contains(entry.page));
    m_previous->setEnabled(m_current > 0);
    m_next->setEnabled(m_current + 1 < m_entries.size());
}

QString ScriptErrorsDialog::details(const Entry &entry) const
{
    const auto number = [](int value) { return value > 0 ? QString::number(value) : u"-"_s; };
    return QStringList{
        entry.error.message, texts.at<"strLine", "Line:">() + u' ' + number(entry.error.line),
        texts.at<"strColumn", "Column:">() + u' ' + number(entry.error.column),
        texts.at<"strAddress", "Address:">() + u' ' + shownAddress(entry.error.address)}
        .join(u'\n');
}

void ScriptErrorsDialog::step(int count)
{
    m_current = std::clamp<qsizetype>(m_current + count, 0, m_entries.size() - 1);
    showEntry();
}

void ScriptErrorsDialog::copy() const
{
    QApplication::clipboard()->setText(details(m_entries.at(m_current)));
}

void ScriptErrorsDialog::ignorePage(bool ignore)
{
    const QString &page = m_entries.at(m_current).page;
    if (ignore)
        m_ignored.insert(page);
    else
        m_ignored.remove(page);
}

void ScriptErrorsDialog::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    // Minimizing the frame hides it too, but that is not the user's closing of it.
    if (!event->spontaneous())
        m_dismissed = true;
}
