#include "VisitView.h"

#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

VisitView::VisitView(QWidget *parent)
    : QTreeView(parent)
{
    setObjectName("lstVisits"_L1);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    // All rows are measured by the first one.
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QAbstractItemView::doubleClicked, this, &VisitView::openWanted);
}

void VisitView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

VisitView::Signal VisitView::signalOf(const QKeyEvent &key)
{
    if (key.matches(QKeySequence::Copy))
        return &VisitView::copyWanted;
    const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (isEnter && held == Qt::NoModifier)
        return &VisitView::openWanted;
    if (isEnter && held == Qt::ControlModifier)
        return &VisitView::newWindowWanted;
    return key.key() == Qt::Key_Delete && held == Qt::NoModifier ? &VisitView::deleteWanted
                                                                 : nullptr;
}

bool VisitView::event(QEvent *event)
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

void VisitView::keyPressEvent(QKeyEvent *event)
{
    const Signal signal = signalOf(*event);
    // One page, or one window, for one press.
    if (signal && !event->isAutoRepeat())
        emit(this->*signal)();
    else if (!signal)
        QTreeView::keyPressEvent(event);
}

void VisitView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (!model() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(20, 20, -20, -20),
                     int(Qt::AlignCenter) | int(Qt::TextWordWrap), m_emptyText);
}
