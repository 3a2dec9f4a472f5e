#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

class QWebEnginePage;
class QWebEngineView;

/// The engine's developer tools for one page, with which they end: the page navigates, crashes, is
/// given up or goes as it likes. They are a page of the engine's own, in the same profile; nobody
/// but the user opens them, and nothing listens on the network for them.
class Inspector : public QWidget {
    Q_OBJECT

public:
    Inspector(QWebEnginePage &page, QWidget *parent);
    ~Inspector() override;

    /// The page is about to go, or its process has: the tools show nothing from now on, and `over`
    /// comes.
    void end();

signals:
    /// There is nothing to look at any more, or the user wants no more of it. Not sent from inside
    /// the engine.
    void over();
    /// A link in the tools.
    void linkWanted(const QString &url);
    void gotFocus();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchChild(QObject *child);

    /// The profile stays for the tools' page.
    std::shared_ptr<void> m_profileHold;
    std::unique_ptr<QWebEnginePage> m_tools;
    QPointer<QWebEngineView> m_view;
    bool m_isOver = false;
};
