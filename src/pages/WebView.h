#pragma once

#include <QWebEngineView>

struct ContextTarget;

/// The widget that paints a page; tells when the keyboard focus comes to the page, and when
/// the page has been told that it is hidden. A drag goes to the page but for a profile file, which
/// is the frame's, and what no page opens, as folders and scripts.
class WebView : public QWebEngineView {
    Q_OBJECT

public:
    WebView(QWebEnginePage *page, QWidget *parent);

    /// Tells the page of the keyboard once more, where the view has it.
    void renewFocus();
    /// What the user types may be meant for a field: one of the page's, as the engine knows, or one
    /// elsewhere, as the view has not the keyboard.
    bool mayTakeText() const;

signals:
    /// The user wants the menu of what is at that place of the page. Inside the engine.
    void menuWanted(const ContextTarget &target);
    void gotFocus();
    /// An event is on its way to the page.
    void eventCame(const QEvent &event);
    /// The view came into sight or went; whether its page is to know is the owner's to say.
    void visibleChanged();
    /// Files or links were dropped, which the page may take for itself; it is offered them next.
    /// `fromPage`: they come from a page of this program, and a file is one that the engine made.
    void dropped(const QStringList &addresses, bool fromPage);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    bool holdsFocus(const QWidget *focus) const;
    void enterWithout(QDragEnterEvent &event);
    void keepFocus();
    void keepFocusFrom(QWidget &engine);
};
