#pragma once

#include <QWebEngineView>

/// The widget that paints a page; tells when the keyboard focus comes to the page.
class WebView : public QWebEngineView {
    Q_OBJECT

public:
    WebView(QWebEnginePage *page, QWidget *parent);

signals:
    void gotFocus();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool holdsFocus(const QWidget *focus) const;
    void keepFocus();
};
