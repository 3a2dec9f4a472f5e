#include "OutsideRequests.h"

#include "AddressCompletion.h"
#include "Log.h"
#include "PageCompany.h"
#include "PagePermissions.h"
#include "PageQuestions.h"
#include "PrivateProfiles.h"
#include "RefusedAddress.h"
#include "SchemePrograms.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "SitePermissions.h"
#include "Texts.h"
#include "WebPage.h"
#include "WebView.h"

#include <QHostAddress>
#include <QSet>
#include <QTimer>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// Letters. Longer ones are no address that a person wrote, and a command line has an end.
constexpr qsizetype longest = 8000;
constexpr qsizetype longestShown = 200;
constexpr qsizetype longestName = 60;

constexpr Texts<"OutsideProgram"> texts;

/// What stands for something in a page, whatever the desktop says.
bool isNeverOpened(const QUrl &url)
{
    static const QSet<QString> schemes{u"javascript"_s, u"vbscript"_s, u"filesystem"_s, u"ws"_s,
                                       u"wss"_s};
    return schemes.contains(url.scheme()) || url.toEncoded().size() > longest;
}

QString cut(const QString &text, qsizetype length)
{
    return text.size() <= length ? text : text.left(length) + u'…';
}

QString shown(const QUrl &url)
{
    return cut(shownText(shownAddress(url)), longestShown);
}

QString shownName(const SchemeProgram &program)
{
    return cut(shownText(program.name), longestName);
}

AskingSite siteOf(const WebPage &page)
{
    return AskingSite::of(page.committedUrl(), page.committedUrl());
}

/// The engine tells which page is to go there, and not who sends it.
bool isPagesOwn(const OutsideRequests::Request &request, const WebPage &page)
{
    const QUrl &led = request.perhapsVia;
    return page.company().isAlone() && (led.isEmpty() || AskingSite::of(led, led) == siteOf(page));
}

QString askerOf(const OutsideRequests::Request &request, const WebPage &page)
{
    if (request.isFrame)
        return texts.at<"strFrame", "A frame in this page wants to open another program:">();
    if (request.via.isEmpty() && !isPagesOwn(request, page))
        return texts.at<"strPerhaps",
                        "This page, a frame in it or a page tied to it wants to open another "
                        "program:">();
    return texts.at<"strPage", "This page wants to open another program:">();
}

/// Of a frame the engine does not say whose it is, and over an open connection anybody on the way
/// can be any site.
bool mayBeRemembered(const OutsideRequests::Request &request, const WebPage &page)
{
    const QUrl url = page.committedUrl();
    const bool isSure = url.scheme() == "https"_L1 || QHostAddress(url.host()).isLoopback();
    return !request.isFrame && request.via.isEmpty() && isSure && isPagesOwn(request, page)
        && siteOf(page).canBeKept();
}
}

bool isOutsideAddress(const QUrl &url)
{
    return !url.scheme().isEmpty() && !isOpenedHere(url) && !isRefusedAddress(url);
}

OutsideRequests::OutsideRequests(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
    connect(&page, &WebPage::arrived, this, &OutsideRequests::drop);
    connect(&page, &WebPage::userActed, this, [this] { m_mayAsk = true; });
    if (auto *view = qobject_cast<WebView *>(QWebEngineView::forPage(&page)))
        connect(view, &WebView::eventCame, this, [this](const QEvent &event) {
            m_act.note(event);
            if (m_act.take())
                m_mayAsk = true;
        });
}

/// A window with nothing in it goes when nothing comes, and its question would go with it.
bool OutsideRequests::put(WebPage &page, const Request &request)
{
    WebPage *asker = &page;
    while (asker->openerPage()
           && (asker->committedUrl().isEmpty() || asker->committedUrl().scheme() == "about"_L1))
        asker = asker->openerPage();
    return asker->outside().take(request);
}

bool OutsideRequests::take(const Request &request)
{
    if (m_isBusy || !std::exchange(m_mayAsk, false)) {
        if (m_dropped++ == 0)
            qCInfo(lcEngine) << "not asked about once more: other programs for"
                             << PrivateProfiles::siteForLog(m_page);
        return false;
    }
    m_isBusy = true;
    m_dropped = 0;
    const int number = ++m_number;
    QTimer::singleShot(0, this, [this, request, number] {
        if (number == m_number)
            lookFor(request);
    });
    return true;
}

void OutsideRequests::lookFor(const Request &request)
{
    if (isNeverOpened(request.url)) {
        drop();
        tellNever(request.url);
        return;
    }
    SchemePrograms::find(
        request.url.scheme(), this, [this, request, number = m_number](const auto &program) {
            if (number != m_number)
                return;
            if (program) {
                decide(request, *program);
                return;
            }
            drop();
            emit m_page.told(texts.at<"strNoProgram", "There is no program for this address:">()
                             + u' ' + shown(request.url));
        });
}

void OutsideRequests::decide(const Request &request, const SchemeProgram &program)
{
    using Word = SitePermissions::Word;
    std::optional<Word> word;
    if (mayBeRemembered(request, m_page))
        word = SitePermissions::answer(siteOf(m_page), Permission::Program, request.url.scheme());
    if (!word || !m_page.counts(*word == Word::Allow)) {
        ask(request, program);
        return;
    }
    drop();
    if (*word == Word::Allow)
        start(program, request.url);
    else
        tellNever(request.url);
}

void OutsideRequests::ask(const Request &request, const SchemeProgram &program)
{
    PageQuestion question;
    question.kind = u"outside"_s;
    question.asker = request.via.isEmpty() ? m_page.committedUrl() : request.via;
    question.text =
        askerOf(request, m_page) + u'\n' + shownName(program) + u'\n' + shown(request.url);
    question.yes = texts.at<"cmdOpen", "Open">();
    question.no = Texts<"PageQuestions">::at<"cmdCancel", "Cancel">();
    question.remember = m_page.leavesTrace() && mayBeRemembered(request, m_page);
    question.done = [self = QPointer(this), program, site = siteOf(m_page),
                     url = request.url](const PageQuestion::Reply &reply) {
        if (!self)
            return;
        self->drop();
        if (reply.isRemembered)
            self->m_page.permissions().keep(site, {Permission::Program},
                                            reply.answer == PageQuestion::Answer::Yes,
                                            url.scheme());
        if (reply.answer == PageQuestion::Answer::Yes)
            self->start(program, url);
    };
    if (!m_page.questions() || !m_page.questions()->ask(question)) {
        drop();
        tellNever(request.url);
    }
}

void OutsideRequests::start(const SchemeProgram &program, const QUrl &url)
{
    SchemePrograms::start(program, url, this, [this, program] {
        emit m_page.told(texts.at<"strFailed", "The program could not be started:">() + u' '
                         + shownName(program));
    });
}

void OutsideRequests::tellNever(const QUrl &url)
{
    emit m_page.told(texts.at<"strNever", "This address is not opened:">() + u' ' + shown(url));
}

void OutsideRequests::drop()
{
    m_isBusy = false;
    ++m_number;
}
