// What the page asks its user, and how that gives way to what the user does.
#include "BrowserHost.h"
#include "EngineVersion.h"
#include "PagePrinter.h"
#include "PageQuestions.h"
#include "QtWebBrowser.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "WebPage.h"
#include "WebView.h"

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"PageQuestions"> texts;
}

void QtWebBrowser::setQuestions(PageQuestions *questions)
{
    m_questions = questions;
    connect(questions, &PageQuestions::shown, m_host, &BrowserHost::endFullScreen);
}

void QtWebBrowser::connectQuestions()
{
    m_page->setQuestions(m_questions);
    m_page->setIsOnItsWay([this](const QUrl &url) {
        return isUnderWay()
            && url.adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo)
            == m_pending.adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo);
    });
    connect(m_page, &WebPage::signedIn, this, &QtWebBrowser::onSignedIn);
    connect(m_page, &QWebEnginePage::printRequested, this, &QtWebBrowser::onPrintRequested);
#if ORVANE_HAS_FRAMES
    connect(m_page, &QWebEnginePage::printRequestedByFrame, this, &QtWebBrowser::onPrintRequested);
#endif
}

/// A page whose script waits for an answer gets none any more, and `command` runs when the engine
/// has gone on; true then.
bool QtWebBrowser::waitsForAnswer(const std::function<void()> &command)
{
    if (!m_page || !m_page->awaitsAnswer())
        return false;
    connect(m_page, &WebPage::answerGiven, this, command, Qt::SingleShotConnection);
    if (m_questions)
        m_questions->endAll();
    return true;
}

void QtWebBrowser::noteUserAction()
{
    if (m_questions)
        m_questions->userActed();
}

/// The first time since the user did something it is as if he had chosen it himself; then he is
/// asked. Until he has decided, further requests are dropped.
void QtWebBrowser::onPrintRequested()
{
    if (!m_questions || m_printDialog || PagePrinter::isOpenFor(m_page))
        return;
    if (m_questions->mayGoAhead()) {
        openPrintDialog();
        return;
    }
    PageQuestion question;
    question.kind = u"print"_s;
    question.title = shownSite(QUrl(m_location));
    question.text =
        texts.at<"strPrint", "This page wants to be printed. Do you want to print it?">();
    question.yes = texts.at<"cmdYes", "Yes">();
    question.no = texts.at<"cmdNo", "No">();
    question.done = [this](PageQuestion::Answer answer) {
        if (answer == PageQuestion::Answer::Yes)
            openPrintDialog();
    };
    m_questions->ask(question);
}

void QtWebBrowser::openPrintDialog()
{
    if (m_page && m_view && m_page->renderProcessPid() != 0)
        m_printDialog = PagePrinter::openBeside(m_page, m_view->window());
}

/// What was sent with a form is not sent again unasked. The refusal that came with the question may
/// still be on its way, and then there is nothing yet to load anew.
void QtWebBrowser::onSignedIn()
{
    if (m_page->mayAskAgain()) {
        if (isUnderWay())
            navigate(QString::fromLatin1(m_pending.toEncoded()));
        else
            refresh();
        return;
    }
    askToSend(QWebEnginePage::Reload,
              texts.at<"strSendAgain", "What you entered must be sent once more. Send it?">());
}

/// A form is never sent again unasked: it may order something a second time.
void QtWebBrowser::onResendRequested(QWebEnginePage::WebAction action)
{
    // No script reloads in this way.
    noteUserAction();
    askToSend(
        action,
        Texts<"frmBrowser">::at<"strResend",
                                "This page is the answer to a form. To show it anew, the form "
                                "must be sent again, and what it did, such as an order, may "
                                "happen a second time. Send it again?">());
}

void QtWebBrowser::askToSend(QWebEnginePage::WebAction action, const QString &words)
{
    PageQuestion question;
    question.kind = u"sendAgain"_s;
    question.title = shownSite(QUrl(m_location));
    question.text = words;
    question.yes = texts.at<"cmdYes", "Yes">();
    question.no = texts.at<"cmdNo", "No">();
    question.done = [this, page = m_page, action](PageQuestion::Answer answer) {
        if (answer != PageQuestion::Answer::Yes || !page || page != m_page || page->mayAskAgain())
            return;
        leaveCrashed();
        page->resend(action);
    };
    if (m_questions)
        m_questions->ask(question);
}
