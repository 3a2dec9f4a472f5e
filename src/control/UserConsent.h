#pragma once

#include <QObject>
#include <QPointer>
#include <QWebEnginePage>

class Navigator;
class PageLife;
class QWidget;
class WebPage;

/// What a page does only when its user agrees: it is printed, or a form is sent again.
class UserConsent : public QObject {
    Q_OBJECT

public:
    UserConsent(PageLife &life, Navigator &navigator);

signals:
    /// The user has signed in, and this is to be loaded, or the page that is shown once more.
    void navigateRequested(const QString &url);
    void refreshRequested();

private:
    void watch(WebPage *page, QObject *bond);
    void askToPrint();
    void openPrintDialog();
    void loadSignedIn();
    void resend(QWebEnginePage::WebAction action);
    void askToSend(QWebEnginePage::WebAction action, const QString &words);

    PageLife &m_life;
    Navigator &m_navigator;
    /// What the page asked to be printed with.
    QPointer<QWidget> m_printDialog;
};
