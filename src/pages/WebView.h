#pragma once

#include <QWebEngineView>

/// The widget that paints a page; tells when the keyboard focus comes to the page, and when
/// the page has been told that it is hidden. A drag goes to the page but for a profile file, which
/// is the frame's, and what no page opens, as folders and scripts.
class WebView : public QWebEngineView {
    Q_OBJECT

public:
    WebView(QWebEnginePage *page, QWidget *parent);

    /// Tells the page of the keyboard once more, where the view has it.
    void renewFocus();

signals:
    void gotFocus();
    /// An event is on its way to the page.
    void eventCame(const QEvent &event);
    /// The view came into sight or went; whether its page is to know is the owner's to say.
    void visibleChanged();
    /// Files or links were dropped, which the page may take for itself; it is offered them next.
    void dropped(const QStringList &addresses);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    bool holdsFocus(const QWidget *focus) const;
    void keepFocus();
    void keepFocusFrom(QWidget &engine);
};
