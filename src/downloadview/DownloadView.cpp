#include "DownloadView.h"

#include "DownloadDelegate.h"
#include "DownloadModel.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

DownloadView::DownloadView(QWidget *parent)
    : QTreeView(parent)
{
    setObjectName("lstDownloads"_L1);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    // All rows are measured by the first one.
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setSortingEnabled(true);
    setAlternatingRowColors(true);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setItemDelegate(new DownloadDelegate(this));
    connect(this, &QAbstractItemView::doubleClicked, this, &DownloadView::openWanted);
}

void DownloadView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

DownloadView::Signal DownloadView::signalOf(const QKeyEvent &key)
{
    if (key.matches(QKeySequence::Copy))
        return &DownloadView::copyWanted;
    const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
    if (held != Qt::NoModifier)
        return nullptr;
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return &DownloadView::openWanted;
    case Qt::Key_Space:
        return &DownloadView::pauseWanted;
    case Qt::Key_Delete:
        return &DownloadView::removeWanted;
    default:
        return nullptr;
    }
}

bool DownloadView::event(QEvent *event)
{
    // These keys are those of the frame's Edit menu, which knows pages and fields.
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (signalOf(*key) || key->matches(QKeySequence::SelectAll)) {
            key->accept();
            return true;
        }
    }
    return QTreeView::event(event);
}

/// Whoever comes by key has a row that the keys and buttons act on: to the only one there is none
/// to come from.
void DownloadView::focusInEvent(QFocusEvent *event)
{
    QTreeView::focusInEvent(event);
    const bool isByKey = event->reason() == Qt::TabFocusReason
        || event->reason() == Qt::BacktabFocusReason || event->reason() == Qt::ShortcutFocusReason
        || event->reason() == Qt::OtherFocusReason;
    if (isByKey && selectionModel() && !selectionModel()->hasSelection())
        selectionModel()->select(currentIndex(),
                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void DownloadView::keyPressEvent(QKeyEvent *event)
{
    if (const Signal signal = signalOf(*event))
        emit(this->*signal)();
    else
        QTreeView::keyPressEvent(event);
}

void DownloadView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (!model() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(20, 20, -20, -20),
                     int(Qt::AlignCenter) | int(Qt::TextWordWrap), m_emptyText);
}
