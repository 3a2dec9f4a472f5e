#include "PageQuestions.h"

#include "Log.h"
#include "PageQuestionBox.h"

#include <QApplication>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// A page that has taken back that many questions wants no answer.
constexpr int mostTakenBack = 3;
constexpr int mostWaiting = 20;
}

PageQuestions::PageQuestions(QWidget *client)
    : QObject(client)
    , m_client(client)
{
    client->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &PageQuestions::followFocus);
}

PageQuestions::~PageQuestions()
{
    // The window around it may be half gone.
    blockSignals(true);
    endAll();
}

bool PageQuestions::ask(const PageQuestion &question)
{
    if (question.isOurs && !isAsking(question.kind)) {
        put(0, question, false);
        return true;
    }
    if (m_silenced || isAsking(question.kind) || m_refused.contains(question.kind)
        || m_entries.size() >= mostWaiting)
        return false;
    put(m_entries.size(), question, false);
    return true;
}

int PageQuestions::put(qsizetype place, const PageQuestion &question, bool waits)
{
    const int number = ++m_lastNumber;
    auto *box = new PageQuestionBox(question, m_asked > 0 && !question.isOurs, m_client);
    box->hide();
    box->setKeepsFocus(waits);
    m_asked += int(!question.isOurs);
    m_entries.insert(place, {question, box, number, waits});
    connect(box, &PageQuestionBox::answered, this,
            [this, number](Answer answer) { finish(number, answer); });
    if (place == 0)
        showFirst();
    return number;
}

qsizetype PageQuestions::placeOf(int number) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [number](const Entry &each) { return each.number == number; });
    return found == m_entries.end() ? -1 : found - m_entries.begin();
}

bool PageQuestions::isAsking(const QString &kind) const
{
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [&kind](const Entry &each) { return each.question.kind == kind; });
}

bool PageQuestions::mayGoAhead()
{
    if (m_asked > 0 || m_silenced || !m_entries.isEmpty() || !isInFront())
        return false;
    ++m_asked;
    return true;
}

/// The answer may close the window.
void PageQuestions::finish(int number, Answer answer)
{
    const qsizetype place = placeOf(number);
    if (place < 0)
        return;
    const Entry entry = m_entries.takeAt(place);
    if (answer == Answer::No && entry.question.noHolds)
        m_refused.insert(entry.question.kind);
    // Hidden, it would hand the keyboard to whatever comes next.
    const QWidget *focus = QApplication::focusWidget();
    if (entry.box && (focus == entry.box || entry.box->isAncestorOf(focus)))
        giveFocusBack();
    if (answer != Answer::Ended && entry.box && entry.box->wantsSilence()) {
        m_silenced = true;
        endAll();
    }
    const bool remembered = answer != Answer::Ended && entry.box && entry.box->wantsRemembered();
    const QPointer<PageQuestions> self(this);
    if (entry.question.done)
        entry.question.done({answer, remembered});
    if (entry.box) {
        entry.box->hide();
        entry.box->deleteLater();
    }
    if (self)
        showFirst();
}

void PageQuestions::userActed()
{
    m_asked = int(m_entries.size());
    m_takenBack = 0;
    m_silenced = false;
    m_refused.clear();
}

void PageQuestions::pageChanged(const QUrl &url)
{
    QList<int> over;
    for (const Entry &each : std::as_const(m_entries)) {
        const QUrl stays = each.question.staysAt;
        if (stays.isEmpty()
            || stays.adjusted(QUrl::RemoveFragment) != url.adjusted(QUrl::RemoveFragment))
            over.append(each.number);
    }
    takeBack(over, url.host());
}

void PageQuestions::takeBack(const QString &kind)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&kind](const Entry &each) {
        return each.question.kind == kind;
    });
    if (found != m_entries.end())
        takeBack({found->number}, found->question.staysAt.host());
}

void PageQuestions::takeBack(const QList<int> &numbers, const QString &page)
{
    m_takenBack += int(numbers.size());
    for (const int number : numbers)
        finish(number, Answer::Ended);
    if (m_takenBack >= mostTakenBack && !std::exchange(m_silenced, true))
        qCInfo(lcEngine) << "a page that takes its questions back is not heard:" << page;
}

void PageQuestions::endAll()
{
    while (!m_entries.isEmpty())
        finish(m_entries.constLast().number, Answer::Ended);
}

void PageQuestions::end(const QString &kind)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&kind](const Entry &each) {
        return each.question.kind == kind;
    });
    if (found != m_entries.end())
        finish(found->number, Answer::Ended);
}
