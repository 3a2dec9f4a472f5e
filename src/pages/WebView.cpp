#include "WebView.h"

#include "ContextTarget.h"
#include "DraggedUrls.h"
#include "FieldKeys.h"
#include "WebPage.h"

#include <QApplication>
#include <QChildEvent>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTimer>
#include <QWebEngineContextMenuRequest>

namespace {
/// Copying with Ctrl+Insert and cutting with Shift+Delete stay with a page's field.
bool isPageKey(const QKeyEvent &event)
{
    return isFieldKey(event)
        || (event.key() == Qt::Key_Insert && event.modifiers() == Qt::ControlModifier)
        || (event.key() == Qt::Key_Delete && event.modifiers() == Qt::ShiftModifier);
}

}

WebView::WebView(QWebEnginePage *page, QWidget *parent)
    : QWebEngineView(page, parent)
{
    installEventFilter(this);
    // A page that was in use has its widget here already.
    const QList<QWidget *> inside = findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *widget : inside)
        widget->installEventFilter(this);
    // The focus is never the view's own: the engine's widget inside has it.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *old, QWidget *now) {
        if (holdsFocus(now) && !holdsFocus(old))
            emit gotFocus();
    });
}

bool WebView::holdsFocus(const QWidget *focus) const
{
    return focus && (focus == this || isAncestorOf(focus));
}

bool WebView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == this && event->type() == QEvent::ChildAdded
        && static_cast<QChildEvent *>(event)->child()->isWidgetType()) {
        static_cast<QChildEvent *>(event)->child()->installEventFilter(this);
        keepFocus();
    }
    if (watched != this)
        emit eventCame(*event);
    if (event->type() == QEvent::Hide && watched == focusProxy())
        keepFocusFrom(*focusProxy());
    // In a field of a page the engine would keep Ctrl+K and others from the menus.
    if (event->type() == QEvent::ShortcutOverride && !isPageKey(*static_cast<QKeyEvent *>(event))) {
        event->ignore();
        return true;
    }
    return QWebEngineView::eventFilter(watched, event);
}

/// Sent by the engine itself, once the page had its own event and did not take it.
void WebView::contextMenuEvent(QContextMenuEvent *event)
{
    const auto *webPage = qobject_cast<const WebPage *>(page());
    if (const auto *request = lastContextMenuRequest(); request && webPage)
        emit menuWanted(contextTargetOf(*request, webPage->committedUrl(), event->globalPos()));
}

/// Refused here, a drag is offered to the widgets around the view, and stays with the one that
/// takes it.
void WebView::dragEnterEvent(QDragEnterEvent *event)
{
    const QMimeData &dragged = *event->mimeData();
    // What a page lets its own elements be dragged for is its own affair.
    const bool fromOutside = event->source() != this;
    if (fromOutside && (isProfileDragged(dragged) || isUnopenableDragged(dragged)))
        event->ignore();
    else if (fromOutside && givableUrls(dragged) != dragged.urls())
        enterWithout(*event);
    else
        QWebEngineView::dragEnterEvent(event);
}

/// The page learns as the drag comes what it will get.
void WebView::enterWithout(QDragEnterEvent &event)
{
    QMimeData given;
    given.setUrls(givableUrls(*event.mimeData()));
    QDragEnterEvent enter(event.position().toPoint(), event.possibleActions(), &given,
                          event.buttons(), event.modifiers());
    QWebEngineView::dragEnterEvent(&enter);
    event.setDropAction(enter.dropAction());
    event.setAccepted(enter.isAccepted());
}

void WebView::dropEvent(QDropEvent *event)
{
    const bool fromPage = event->source();
    const QStringList addresses = draggedAddresses(*event);
    if (fromPage || !addresses.isEmpty())
        emit dropped(addresses, fromPage);
    QWebEngineView::dropEvent(event);
}

/// Not the base class's, which would wake the pages of a hundred windows that are restored at once,
/// nearly all of them covered.
void WebView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event); // NOLINT(bugprone-parent-virtual-call)
    emit visibleChanged();
}

void WebView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event); // NOLINT(bugprone-parent-virtual-call)
    emit visibleChanged();
}

/// The engine hands the focus to the process of the page that is shown, which may still be the one
/// before: the new page never hears of it, and the widget that has the focus is not asked again.
void WebView::renewFocus()
{
    QWidget *engine = focusProxy();
    if (!engine || !engine->hasFocus())
        return;
    for (const QEvent::Type type : {QEvent::FocusOut, QEvent::FocusIn}) {
        QFocusEvent event(type, Qt::OtherFocusReason);
        QCoreApplication::sendEvent(engine, &event);
    }
}

bool WebView::mayTakeText() const
{
    const QWidget *engine = focusProxy();
    return !engine || !engine->hasFocus() || engine->inputMethodQuery(Qt::ImEnabled).toBool();
}

/// A page of another site comes with another widget inside the view, and the focus that the old
/// one had is lost (QTBUG-122153).
void WebView::keepFocus()
{
    if (!holdsFocus(QApplication::focusWidget()))
        return;
    QTimer::singleShot(0, this, [this] {
        const QWidget *now = QApplication::focusWidget();
        if (!now || now == this || (isAncestorOf(now) && now != focusProxy()))
            setFocus();
    });
}

/// Since Qt 6.6 the old widget is hidden before the new one comes, and what is next in the frame
/// would have the focus by then.
void WebView::keepFocusFrom(QWidget &engine)
{
    if (!engine.hasFocus() || !engine.isHidden())
        return;
    keepFocus();
    engine.clearFocus();
}
