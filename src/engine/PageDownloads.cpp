#include "PageDownloads.h"

#include "Log.h"
#include "PageQuestions.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "WebPage.h"
#include "WebView.h"

#include <QDeadlineTimer>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// What a page may begin after each act of its user.
constexpr int unasked = 3;
/// What the engine holds of those that wait is not on the disk.
constexpr int mostWaiting = 200;
/// In a minute.
constexpr int mostOfGone = 50;
/// Milliseconds in which refused ones are told as one.
constexpr int pace = 1000;

constexpr Texts<"PageQuestions"> texts;
}

PageDownloads::PageDownloads(WebPage &page)
    : QObject(&page)
    , m_page(page)
    , m_left(unasked)
{
    m_tells.setSingleShot(true);
    m_tells.setInterval(pace);
    connect(&m_tells, &QTimer::timeout, this, &PageDownloads::tellRefused);
    connect(&page, &WebPage::arrived, this, [this] { m_isAllowed = false; });
    connect(&page, &WebPage::userActed, this, &PageDownloads::renew);
    if (auto *view = qobject_cast<WebView *>(QWebEngineView::forPage(&page)))
        connect(view, &WebView::eventCame, this, [this](const QEvent &event) {
            m_act.note(event);
            if (m_act.take())
                renew();
        });
}

/// The page may go while its question is open.
PageDownloads::~PageDownloads()
{
    finish(PageQuestion::Answer::Ended);
}

void PageDownloads::renew()
{
    m_left = unasked;
}

PageDownloads::Verdict PageDownloads::judge()
{
    if (m_isAllowed)
        return Verdict::Go;
    if (m_left > 0) {
        --m_left;
        return Verdict::Go;
    }
    if (m_waiting >= mostWaiting)
        return refuse();
    // The engine stands still inside the signal that this is called from.
    if (m_waiting++ == 0)
        QMetaObject::invokeMethod(this, &PageDownloads::ask, Qt::QueuedConnection);
    return Verdict::Wait;
}

PageDownloads::Verdict PageDownloads::judgeOfGone()
{
    static QDeadlineTimer minute(0);
    static int left = 0;
    if (minute.hasExpired()) {
        minute.setRemainingTime(std::chrono::minutes(1));
        left = mostOfGone;
    }
    return left-- > 0 ? Verdict::Go : Verdict::Refused;
}

void PageDownloads::ask()
{
    PageQuestion question;
    question.kind = u"downloads"_s;
    question.asker = m_page.committedUrl();
    question.text =
        texts.at<"strDownloads",
                 "This page wants to download more files. Do you want to download them?">();
    question.yes = texts.at<"cmdYes", "Yes">();
    question.no = texts.at<"cmdNo", "No">();
    question.noHolds = true;
    question.done = [self = QPointer(this)](PageQuestion::Reply reply) {
        if (self)
            self->finish(reply.answer);
    };
    if (!m_page.questions() || !m_page.questions()->ask(question)) {
        m_refused += m_waiting;
        m_tells.start();
        finish(PageQuestion::Answer::No);
    }
}

void PageDownloads::finish(PageQuestion::Answer answer)
{
    if (std::exchange(m_waiting, 0) == 0)
        return;
    m_isAllowed = answer == PageQuestion::Answer::Yes;
    emit answered(m_isAllowed);
}

PageDownloads::Verdict PageDownloads::refuse()
{
    ++m_refused;
    if (!m_tells.isActive())
        m_tells.start();
    return Verdict::Refused;
}

void PageDownloads::tellRefused()
{
    qCWarning(lcEngine) << "refused" << std::exchange(m_refused, 0) << "downloads of"
                        << shownSite(m_page.committedUrl());
}
