#include "WebView.h"

#include "ProfileDrag.h"

#include <QApplication>
#include <QChildEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTimer>
#include <QWebEnginePage>

WebView::WebView(QWebEnginePage *page, QWidget *parent)
    : QWebEngineView(page, parent)
{
    installEventFilter(this);
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
        && static_cast<QChildEvent *>(event)->child()->isWidgetType())
        keepFocus();
    return QWebEngineView::eventFilter(watched, event);
}

/// Refused here, a drag is offered to the widgets around the view, and stays with the one that
/// takes it.
void WebView::dragEnterEvent(QDragEnterEvent *event)
{
    if (isProfileName(firstDraggedFile(*event->mimeData())))
        event->ignore();
    else
        QWebEngineView::dragEnterEvent(event);
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
