#include "ScriptDialogs.h"

#include "LeavingPage.h"
#include "PageActivity.h"
#include "PagePermissions.h"
#include "PageQuestions.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "WebPage.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QPointer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// A page may hand over any length; what nobody can read is cut.
constexpr int longestMessage = 2000;

using Answer = PageQuestion::Answer;

constexpr Texts<"PageQuestions"> texts;

/// Documents that another made have no site of their own, and the engine does not tell whose they
/// are: inside a page that has one they may be anybody's, and must not speak in its name.
QString headline(const WebPage &page, const QUrl &origin)
{
    const QString from = texts.at<"strMessageFrom", "Message from">() + u' ';
    const QString site = shownSite(origin);
    if (!site.isEmpty())
        return from + site;
    const QString around = shownSite(page.committedUrl());
    if (!page.committedUrl().host().isEmpty())
        return texts.at<"strMessageFromFrame", "Message from a frame in">() + u' ' + around;
    return from + (around.isEmpty() || around == "about:"_L1 ? u"about:blank"_s : around);
}

PageQuestion questionOf(const WebPage &page, const QUrl &origin, const QString &message)
{
    PageQuestion question;
    question.kind = u"script"_s;
    question.shape = PageQuestion::Shape::Box;
    question.title = headline(page, origin);
    if (!origin.host().isEmpty() && !page.committedUrl().host().isEmpty()
        && shownSite(origin) != shownSite(page.committedUrl()))
        question.around = page.committedUrl();
    // Its scripts may ask before the engine tells of the page.
    if (page.url() != page.committedUrl())
        question.staysAt = page.committedUrl();
    question.text = message.left(longestMessage);
    question.yes = texts.at<"cmdOK", "OK">();
    return question;
}

/// The engine asks this for a page that wants its leaving confirmed, in these words.
bool asksToLeave(const QString &message)
{
    return message
        == QCoreApplication::translate("QWebEnginePage",
                                       "Are you sure you want to leave this page? Changes that "
                                       "you made may not be saved.");
}

bool isUnheard(const WebPage &page)
{
    if (!page.leaving().isOn())
        return false;
    page.leaving().noteDialog();
    return true;
}

/// A page that is not heard any more must not keep the user either.
bool mayLeave(WebPage &page, PageQuestions &questions, const QUrl &origin)
{
    if (questions.isSilenced() || page.permissions().isEndingUse())
        return true;
    PageQuestion question = questionOf(page, origin, {});
    question.text =
        texts.at<"strLeave", "Leave this page? What you have entered there may be lost.">();
    question.yes = texts.at<"cmdLeave", "Leave">();
    question.no = texts.at<"cmdStay", "Stay">();
    return questions.askAndWait(question) == Answer::Yes;
}
}

namespace ScriptDialogs {

void alert(WebPage &page, const QUrl &origin, const QString &message)
{
    PageQuestions *questions = page.questions();
    if (!questions || isUnheard(page))
        return;
    // Else it is there to be read when the user comes to the window.
    if (questions->mayWait())
        questions->askAndWait(questionOf(page, origin, message));
    else
        questions->ask(questionOf(page, origin, message));
}

bool confirm(WebPage &page, const QUrl &origin, const QString &message)
{
    PageQuestions *questions = page.questions();
    if (asksToLeave(message) && page.activity().takeAnswer(false))
        return false;
    if (asksToLeave(message))
        return !questions || mayLeave(page, *questions, origin);
    if (!questions || isUnheard(page))
        return false;
    PageQuestion question = questionOf(page, origin, message);
    question.no = texts.at<"cmdCancel", "Cancel">();
    return questions->askAndWait(question) == Answer::Yes;
}

bool prompt(WebPage &page, const QUrl &origin, const QString &message, const QString &defaultValue,
            QString *result)
{
    PageQuestions *questions = page.questions();
    if (!questions || isUnheard(page))
        return false;
    PageQuestion question = questionOf(page, origin, message);
    question.no = texts.at<"cmdCancel", "Cancel">();
    QPointer<QLineEdit> field;
    question.fields = [&field, &question, &defaultValue](QWidget *parent) {
        field = new QLineEdit(defaultValue.left(longestMessage), parent);
        field->setObjectName("txtAnswer"_L1);
        field->setAccessibleName(question.text.isEmpty() ? question.title : question.text);
        field->selectAll();
        return field.data();
    };
    QString entered;
    question.done = [&field, &entered](PageQuestion::Reply) {
        if (field)
            entered = field->text();
    };
    if (questions->askAndWait(question) != Answer::Yes)
        return false;
    *result = entered;
    return true;
}

}
