#pragma once

#include <QWebEngineView>

/// The widget that paints a page; tells when the keyboard focus comes to the page. Everything may
/// be dropped on the page but a profile file, which is the frame's.
class WebView : public QWebEngineView {
    Q_OBJECT

public:
    WebView(QWebEnginePage *page, QWidget *parent);

signals:
    void gotFocus();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;

private:
    bool holdsFocus(const QWidget *focus) const;
    void keepFocus();
};
