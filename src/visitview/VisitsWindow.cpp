#include "VisitsWindow.h"

#include "Texts.h"
#include "VisitHistory.h"
#include "VisitModel.h"
#include "VisitView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr char name[] = "frmVisits";
constexpr Texts<"frmVisits"> texts;

/// Milliseconds between a key and its rows, or between changes of the history and theirs.
constexpr int fillPause = 60;
/// Rows that stay chosen when the rows are made anew.
constexpr int mostRestored = 200;
/// Widths of the first columns in digits; the last one takes what is left.
constexpr int titleDigits = 44;
constexpr int addressDigits = 44;
}

VisitsWindow::VisitsWindow(Frame &frame, VisitHistory &history)
    : ListWindow(frame, name, u"visits"_s)
    , m_history(history)
    , m_search(new QLineEdit)
    , m_model(new VisitModel(history, this))
    , m_view(new VisitView)
    , m_more(new QLabel)
    , m_actions(new VisitActions(
          history, [this] { return chosen(); }, *this))
{
    m_fills.setSingleShot(true);
    m_fills.setInterval(fillPause);
    makeContents();
    connectParts();
    VisitsWindow::translate();
    fill();
    m_history.refresh();
}

void VisitsWindow::onActivated()
{
    m_history.refresh();
}

void VisitsWindow::makeContents()
{
    m_search->setObjectName("txtSearch"_L1);
    m_search->setClearButtonEnabled(true);
    m_search->installEventFilter(this);
    m_more->setObjectName("lblMore"_L1);
    m_more->setWordWrap(true);
    m_view->setModel(m_model);
    const int digit = m_view->fontMetrics().horizontalAdvance(u'0');
    m_view->setColumnWidth(VisitModel::Title, titleDigits * digit);
    m_view->setColumnWidth(VisitModel::Address, addressDigits * digit);
    auto *contents = new QWidget;
    auto *layout = new QVBoxLayout(contents);
    layout->addWidget(m_search);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_more);
    layout->addLayout(buttonsFor(m_actions->all()));
    contents->setFocusProxy(m_search);
    setWidget(contents);
}

void VisitsWindow::connectParts()
{
    // It goes with the program, and this window with it.
    connect(&m_history, &QObject::destroyed, this, [this] { delete this; });
    connect(&m_fills, &QTimer::timeout, this, &VisitsWindow::fill);
    connect(m_search, &QLineEdit::textChanged, &m_fills, qOverload<>(&QTimer::start));
    connect(&m_history, &VisitHistory::changed, this, [this] {
        // Not put off for as long as changes come.
        if (!m_fills.isActive())
            m_fills.start();
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, m_actions,
            &VisitActions::refresh);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, m_actions,
            &VisitActions::refresh);
    connect(m_view, &VisitView::openWanted, m_actions, &VisitActions::open);
    connect(m_view, &VisitView::newWindowWanted, m_actions, &VisitActions::openInNewWindows);
    connect(m_view, &VisitView::copyWanted, m_actions, &VisitActions::copyAddresses);
    connect(m_view, &VisitView::deleteWanted, m_actions, &VisitActions::deletePages);
    connect(m_view, &QWidget::customContextMenuRequested, this, &VisitsWindow::showMenu);
    connect(m_actions, &VisitActions::openWanted, this, &VisitsWindow::openWanted);
    connect(m_actions, &VisitActions::newWindowWanted, this, &VisitsWindow::newWindowWanted);
}

void VisitsWindow::fill()
{
    m_fills.stop();
    // After another search the first row is the best.
    const bool isSame = std::exchange(m_searched, m_search->text()) == m_search->text();
    QList<QPair<QByteArray, QDate>> before;
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows.first(qMin(rows.size(), mostRestored)))
        before.append({m_model->address(row.row()), m_model->day(row.row())});
    const int currentRow = m_view->currentIndex().row();
    const int top = m_view->verticalScrollBar()->value();
    m_model->show(m_searched);
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->isHeading(row))
            m_view->setFirstColumnSpanned(row, {}, true);
    }
    if (isSame && !before.isEmpty())
        restore(before, currentRow);
    if (isSame)
        m_view->verticalScrollBar()->setValue(top);
    m_more->setVisible(m_model->isCut());
    m_view->setEmptyText(emptyText());
    m_actions->refresh();
}

void VisitsWindow::restore(const QList<QPair<QByteArray, QDate>> &chosen, int currentRow)
{
    QItemSelection selection;
    const auto select = [&](int row) {
        selection.select(m_model->index(row, 0), m_model->index(row, 0));
    };
    for (const auto &[address, day] : chosen) {
        if (const int row = m_model->rowOf(address, day); row >= 0)
            select(row);
    }
    const int last = m_model->rowCount() - 1;
    if (selection.isEmpty() && last > 0) {
        // A heading always has a page below it.
        const int row = std::clamp(currentRow, 0, last);
        select(m_model->isHeading(row) ? row + 1 : row);
    }
    if (selection.isEmpty())
        return;
    QItemSelectionModel &model = *m_view->selectionModel();
    model.setCurrentIndex(selection.indexes().first(), QItemSelectionModel::NoUpdate);
    model.select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

VisitActions::Chosen VisitsWindow::chosen() const
{
    VisitActions::Chosen chosen;
    QSet<QByteArray> known;
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        const QByteArray address = m_model->address(row.row());
        if (!address.isEmpty() && !known.contains(address))
            chosen.addresses.append(address);
        known.insert(address);
    }
    if (const QModelIndex current = m_view->currentIndex(); current.isValid())
        chosen.day = m_model->day(current.row());
    return chosen;
}

void VisitsWindow::showMenu(const QPoint &place)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(m_actions->all());
    menu->popup(m_view->viewport()->mapToGlobal(place));
}

/// Down goes from the field into the rows, and Enter there opens the one that is chosen or first.
bool VisitsWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_search || event->type() != QEvent::KeyPress)
        return ListWindow::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key != Qt::Key_Down && !isEnter)
        return ListWindow::eventFilter(watched, event);
    if (m_fills.isActive())
        fill();
    // The first row is a heading.
    if (m_view->selectionModel()->selectedRows().isEmpty() && m_model->rowCount() > 1)
        m_view->setCurrentIndex(m_model->index(1, 0));
    if (isEnter)
        m_actions->open();
    else
        m_view->setFocus(Qt::OtherFocusReason);
    return true;
}

void VisitsWindow::focusContents()
{
    m_search->setFocus();
}

QString VisitsWindow::emptyText() const
{
    if (!m_history.isLoaded())
        return {};
    return m_search->text().isEmpty()
        ? texts.at<"strNoVisits", "No pages have been visited.">()
        : texts.at<"strNothingFound", "No visited page has these words.">();
}

void VisitsWindow::translate()
{
    const QString caption = texts.at<"Caption", "Visited Pages">();
    setCaption(caption);
    m_view->setAccessibleName(caption);
    const QString search = texts.at<"lblSearch", "Search in titles and addresses">();
    m_search->setPlaceholderText(search);
    m_search->setAccessibleName(search);
    m_more->setText(texts.at<"lblMore", "There are older ones. Search to find them.">());
    m_view->setEmptyText(emptyText());
    m_model->translate();
    m_actions->translate();
}

VisitsWindow *VisitsWindow::openIn(Frame &frame, VisitHistory &history)
{
    return openOne<VisitsWindow>(frame, name, [&] { return new VisitsWindow(frame, history); });
}
