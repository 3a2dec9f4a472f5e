#include "UserConsent.h"

#include "Addresses.h"
#include "EngineVersion.h"
#include "Navigator.h"
#include "PageLife.h"
#include "PagePrinter.h"
#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"PageQuestions"> texts;

PageQuestion yesOrNo(const QString &kind, const QString &address, const QString &words)
{
    PageQuestion question;
    question.kind = kind;
    question.asker = QUrl(address);
    question.text = words;
    question.yes = texts.at<"cmdYes", "Yes">();
    question.no = texts.at<"cmdNo", "No">();
    return question;
}
}

UserConsent::UserConsent(PageLife &life, Navigator &navigator)
    : m_life(life)
    , m_navigator(navigator)
{
    connect(&life, &PageLife::came, this,
            [this](WebPage *page, WebView *, QObject *bond) { watch(page, bond); });
    connect(&navigator.teller(), &NavigationTeller::pageCame, this, [this] {
        if (m_printDialog)
            m_printDialog->close();
    });
}

void UserConsent::watch(WebPage *page, QObject *bond)
{
    connect(page, &WebPage::signedIn, bond, [this] { loadSignedIn(); });
    connect(page, &QWebEnginePage::printRequested, bond, [this] { askToPrint(); });
#if ORVANE_HAS_FRAMES
    connect(page, &QWebEnginePage::printRequestedByFrame, bond, [this] { askToPrint(); });
#endif
    connect(page, &WebPage::resendRequested, bond,
            [this](QWebEnginePage::WebAction action) { resend(action); });
}

/// The first time since the user did something it is as if he had chosen it himself; then he is
/// asked. Until he has decided, further requests are dropped.
void UserConsent::askToPrint()
{
    PageQuestions *questions = m_life.questions();
    if (!questions || m_printDialog || PagePrinter::isOpenFor(m_life.page()))
        return;
    if (questions->mayGoAhead()) {
        openPrintDialog();
        return;
    }
    PageQuestion question =
        yesOrNo(u"print"_s, m_navigator.state().location(),
                texts.at<"strPrint", "This page wants to be printed. Do you want to print it?">());
    question.done = [this](PageQuestion::Reply reply) {
        if (reply.answer == PageQuestion::Answer::Yes)
            openPrintDialog();
    };
    questions->ask(question);
}

void UserConsent::openPrintDialog()
{
    WebPage *page = m_life.page();
    if (page && m_life.view() && page->renderProcessPid() != 0)
        m_printDialog = PagePrinter::openBeside(page, m_life.view()->window());
}

/// What was sent with a form is not sent again unasked. The refusal that came with the question may
/// still be on its way, and then there is nothing yet to load anew.
void UserConsent::loadSignedIn()
{
    const Navigation &state = m_navigator.state();
    if (!m_life.page()->mayAskAgain()) {
        askToSend(QWebEnginePage::Reload,
                  texts.at<"strSendAgain", "What you entered must be sent once more. Send it?">());
    } else if (state.isUnderWay()) {
        emit navigateRequested(Addresses::encoded(state.pending()));
    } else {
        emit refreshRequested();
    }
}

/// A form is never sent again unasked: it may order something a second time.
void UserConsent::resend(QWebEnginePage::WebAction action)
{
    // No script reloads in this way.
    m_life.noteUserAction();
    askToSend(
        action,
        Texts<"frmBrowser">::at<"strResend",
                                "This page is the answer to a form. To show it anew, the form "
                                "must be sent again, and what it did, such as an order, may "
                                "happen a second time. Send it again?">());
}

void UserConsent::askToSend(QWebEnginePage::WebAction action, const QString &words)
{
    if (!m_life.questions())
        return;
    PageQuestion question = yesOrNo(u"sendAgain"_s, m_navigator.state().location(), words);
    question.done = [this, page = QPointer(m_life.page()), action](PageQuestion::Reply reply) {
        if (reply.answer != PageQuestion::Answer::Yes || !page || page != m_life.page()
            || page->mayAskAgain())
            return;
        m_life.leaveCrashed();
        page->resend(action);
    };
    m_life.questions()->ask(question);
}
