#include "CostsWindow.h"

#include "BrowserWindow.h"
#include "CostMeter.h"
#include "CostModel.h"
#include "SleepRules.h"
#include "Texts.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr char name[] = "frmCosts";
constexpr Texts<"frmCosts"> texts;

/// Milliseconds.
constexpr int lookEvery = 2000;
/// Widths of the columns in digits; the first one takes what is left.
constexpr int digits[] = {20, 28, 26, 12};
static_assert(std::size(digits) == CostModel::ColumnCount);

bool isEnter(const QKeyEvent &key)
{
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

bool isKeyOfList(const QKeyEvent &key)
{
    return (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier
        && (isEnter(key) || key.key() == Qt::Key_Delete);
}
}

CostsWindow::CostsWindow(Frame &frame)
    : ListWindow(frame, name, u"costs"_s)
    , m_meter(new CostMeter(this))
    , m_model(new CostModel(this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_view(new QTreeView)
    , m_sum(new QLabel)
    , m_goTo(add("cmdGoTo", &CostsWindow::goToWanted))
    , m_sleep(add("cmdSleep", &CostsWindow::sleepWanted))
    , m_close(add("cmdClose", &CostsWindow::closeWanted))
{
    makeContents();
    m_looks.setObjectName("looks"_L1);
    m_looks.setInterval(lookEvery);
    connect(&m_looks, &QTimer::timeout, this, &CostsWindow::measure);
    connect(m_meter, &CostMeter::measured, m_model, &CostModel::setCosts);
    connect(m_meter, &CostMeter::measured, this, &CostsWindow::showSum);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &CostsWindow::refreshActions);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CostsWindow::refreshActions);
    connect(m_view, &QWidget::customContextMenuRequested, this, &CostsWindow::showMenu);
    connect(m_view, &QAbstractItemView::doubleClicked, m_goTo, &QAction::trigger);
    CostsWindow::translate();
}

QAction *CostsWindow::add(const char *name, Act act)
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, this, [this, act] { perform(act); });
    return action;
}

void CostsWindow::makeContents()
{
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(CostModel::SortRole);
    m_sorted->setSortLocaleAware(true);
    m_view->setObjectName("lstCosts"_L1);
    m_view->setModel(m_sorted);
    m_view->setRootIsDecorated(false);
    m_view->setItemsExpandable(false);
    m_view->setAllColumnsShowFocus(true);
    m_view->setUniformRowHeights(true);
    m_view->setSortingEnabled(true);
    m_view->sortByColumn(CostModel::Memory, Qt::DescendingOrder);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    m_view->installEventFilter(this);
    const int digit = m_view->fontMetrics().horizontalAdvance(u'0');
    for (int column = 0; column < CostModel::ColumnCount; ++column)
        m_view->setColumnWidth(column, digits[column] * digit);
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(CostModel::Title, QHeaderView::Stretch);
    m_view->header()->setMinimumSectionSize(digits[CostModel::Processor] * digit);
    m_sum->setObjectName("lblSum"_L1);
    auto *contents = new QWidget;
    auto *layout = new QVBoxLayout(contents);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_sum);
    layout->addLayout(buttonsFor({m_goTo, m_sleep, m_close}));
    contents->setFocusProxy(m_view);
    setWidget(contents);
}

BrowserWindow *CostsWindow::chosen() const
{
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return nullptr;
    BrowserWindow *window = m_model->window(m_sorted->mapToSource(rows.constFirst()).row());
    return window && !window->isUnloaded() ? window : nullptr;
}

void CostsWindow::perform(Act act)
{
    if (BrowserWindow *window = chosen())
        emit(this->*act)(window);
    m_model->refresh();
}

void CostsWindow::refreshActions()
{
    const BrowserWindow *window = chosen();
    m_goTo->setEnabled(window);
    m_close->setEnabled(window);
    m_sleep->setEnabled(window && SleepRules::maySleep(*window, SleepRules::Why::User));
}

void CostsWindow::measure()
{
    m_model->refresh();
    m_meter->measure(m_model->processes());
}

void CostsWindow::showSum()
{
    const CostMeter::Cost sum = m_model->sum();
    const QLocale locale;
    m_sum->setText(texts.at<"lblSum", "All together: %1, %2 %">().arg(
        locale.formattedDataSize(sum.memory, 0, QLocale::DataSizeTraditionalFormat),
        locale.toString(std::max(0, sum.processor))));
}

void CostsWindow::showMenu(const QPoint &place)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions({m_goTo, m_sleep, m_close});
    menu->popup(m_view->viewport()->mapToGlobal(place));
}

bool CostsWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_view) {
        switch (event->type()) {
        case QEvent::Show:
            m_looks.start();
            measure();
            break;
        case QEvent::Hide:
            m_looks.stop();
            break;
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
            if (takeKey(*static_cast<QKeyEvent *>(event)))
                return true;
            break;
        default:
            break;
        }
    }
    return ListWindow::eventFilter(watched, event);
}

/// Enter goes to the window, Del closes it: one for each press.
bool CostsWindow::takeKey(QKeyEvent &key)
{
    if (!isKeyOfList(key))
        return false;
    key.accept();
    if (key.type() == QEvent::KeyPress && !key.isAutoRepeat())
        (isEnter(key) ? m_goTo : m_close)->trigger();
    return true;
}

void CostsWindow::focusContents()
{
    m_view->setFocus();
}

void CostsWindow::translate()
{
    const QString caption = texts.at<"Caption", "What Windows Cost">();
    setCaption(caption);
    m_view->setAccessibleName(caption);
    m_goTo->setText(texts.at<"cmdGoTo", "&Go To">());
    m_sleep->setText(texts.at<"cmdSleep", "&Sleep">());
    m_close->setText(texts.at<"cmdClose", "&Close">());
    m_model->translate();
    widenColumns();
    showSum();
}

/// None is narrower than its heading.
void CostsWindow::widenColumns()
{
    const QHeaderView &header = *m_view->header();
    for (int column = CostModel::Site; column < CostModel::ColumnCount; ++column)
        m_view->setColumnWidth(
            column, std::max(header.sectionSize(column), header.sectionSizeHint(column)));
}

CostsWindow *CostsWindow::openIn(Frame &frame)
{
    return openOne<CostsWindow>(frame, name, [&] { return new CostsWindow(frame); });
}
