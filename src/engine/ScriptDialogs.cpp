#include "ScriptDialogs.h"

#include "Language.h"
#include "PageQuestions.h"
#include "ShownAddress.h"
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

QString text(const char *key, const QString &english)
{
    return languageText(u"PageQuestions"_s, QString::fromLatin1(key), english);
}

/// Documents that another made have no site of their own, and the engine does not tell whose they
/// are: inside a page that has one they may be anybody's, and must not speak in its name.
QString headline(const WebPage &page, const QUrl &origin)
{
    const QString from = text("strMessageFrom", u"Message from"_s) + u' ';
    const QString site = shownSite(origin);
    if (!site.isEmpty())
        return from + site;
    const QString around = shownSite(page.url());
    if (!page.url().host().isEmpty())
        return text("strMessageFromFrame", u"Message from a frame in"_s) + u' ' + around;
    return from + (around.isEmpty() || around == "about:"_L1 ? u"about:blank"_s : around);
}

PageQuestion questionOf(const WebPage &page, const QUrl &origin, const QString &message)
{
    PageQuestion question;
    question.kind = u"script"_s;
    question.title = headline(page, origin);
    question.text = message.left(longestMessage);
    question.yes = text("cmdOK", u"OK"_s);
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

/// A page that is not heard any more must not keep the user either.
bool mayLeave(const WebPage &page, PageQuestions &questions, const QUrl &origin)
{
    if (questions.isSilenced())
        return true;
    PageQuestion question = questionOf(page, origin, {});
    question.text =
        text("strLeave", u"Leave this page? What you have entered there may be lost."_s);
    question.yes = text("cmdLeave", u"Leave"_s);
    question.no = text("cmdStay", u"Stay"_s);
    return questions.askAndWait(question) == Answer::Yes;
}
}

namespace ScriptDialogs {

void alert(WebPage &page, const QUrl &origin, const QString &message)
{
    PageQuestions *questions = page.questions();
    if (!questions)
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
    if (asksToLeave(message))
        return !questions || mayLeave(page, *questions, origin);
    PageQuestion question = questionOf(page, origin, message);
    question.no = text("cmdCancel", u"Cancel"_s);
    return questions && questions->askAndWait(question) == Answer::Yes;
}

bool prompt(WebPage &page, const QUrl &origin, const QString &message, const QString &defaultValue,
            QString *result)
{
    PageQuestions *questions = page.questions();
    if (!questions)
        return false;
    PageQuestion question = questionOf(page, origin, message);
    question.no = text("cmdCancel", u"Cancel"_s);
    QPointer<QLineEdit> field;
    question.fields = [&field, &question, &defaultValue](QWidget *parent) {
        field = new QLineEdit(defaultValue.left(longestMessage), parent);
        field->setObjectName("txtAnswer"_L1);
        field->setAccessibleName(question.text.isEmpty() ? question.title : question.text);
        field->selectAll();
        return field.data();
    };
    QString entered;
    question.done = [&field, &entered](Answer) {
        if (field)
            entered = field->text();
    };
    if (questions->askAndWait(question) != Answer::Yes)
        return false;
    *result = entered;
    return true;
}

}
