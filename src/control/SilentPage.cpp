#include "SilentPage.h"

#include "Log.h"
#include "PageLife.h"
#include "PagePulse.h"
#include "PrivateProfiles.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"

#include <QEvent>
#include <csignal>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
using namespace std::chrono_literals;
/// Until a user who wants to wait is asked again.
constexpr auto untilAskedAgain = 30s;
/// Of those that end as well.
constexpr int mostNamed = 5;
constexpr int longestName = 60;
constexpr auto kind = "silent"_L1;

QList<SilentPage *> living;

bool isUse(const QEvent &event)
{
    return event.type() == QEvent::KeyPress || event.type() == QEvent::MouseButtonPress
        || event.type() == QEvent::Wheel;
}
}

SilentPage::SilentPage(PageLife &life)
    : m_life(life)
{
    living.append(this);
    m_patience.setSingleShot(true);
    m_patience.setInterval(untilAskedAgain);
    connect(&m_patience, &QTimer::timeout, this, &SilentPage::ask);
    connect(&life, &PageLife::came, this,
            [this](WebPage *, WebView *, QObject *bond) { watch(bond); });
    connect(&life, &PageLife::crashed, this, [this] {
        if (m_pulse)
            m_pulse->beginAnew();
    });
}

SilentPage::~SilentPage()
{
    living.removeOne(this);
}

void SilentPage::watch(QObject *bond)
{
    m_pulse = new PagePulse(*m_life.page(), bond);
    connect(m_pulse, &PagePulse::fellSilent, this, &SilentPage::noteSilence);
    connect(m_pulse, &PagePulse::answered, this, &SilentPage::takeBack);
    connect(m_life.page(), &WebPage::arrived, m_pulse, [this] { takeBack(); });
    connect(m_life.view(), &WebView::eventCame, m_pulse, [this](const QEvent &event) {
        if (isUse(event))
            m_pulse->look();
    });
}

bool SilentPage::leave(const std::function<void()> &command)
{
    if (!m_pulse)
        return false;
    if (!m_pulse->isSilent()) {
        m_wayOut = command;
        m_pulse->look();
        return false;
    }
    m_wayOut = {};
    m_life.endStuck(command);
    return true;
}

void SilentPage::noteSilence()
{
    if (m_wayOut) {
        m_life.endStuck(std::exchange(m_wayOut, {}));
        return;
    }
    qCInfo(lcEngine) << "a page does not answer:" << PrivateProfiles::siteForLog(*m_life.page());
    ask();
    const QList<SilentPage *> others = companions();
    for (const SilentPage *each : others)
        each->m_pulse->noteSilent();
}

void SilentPage::takeBack()
{
    m_wayOut = {};
    m_patience.stop();
    if (m_life.questions())
        m_life.questions()->end(kind);
}

void SilentPage::ask()
{
    if (!m_pulse || !m_pulse->isSilent() || !m_life.questions())
        return;
    constexpr Texts<"PageQuestions"> texts;
    PageQuestion question;
    question.kind = kind;
    question.asker = m_life.page()->url();
    question.title = texts.at<"strSilent", "This page is not answering.">();
    question.text = texts.at<"strSilentText",
                             "You can wait for it, or end it. What you have entered in it would be "
                             "lost.">()
        + companyText();
    question.yes = texts.at<"cmdEndPage", "End Page">();
    question.no = texts.at<"cmdWait", "Wait">();
    question.isOurs = true;
    question.done = [self = QPointer(this)](PageQuestion::Reply reply) {
        if (!self)
            return;
        if (reply.answer == PageQuestion::Answer::Yes)
            self->end();
        else
            self->m_patience.start();
    };
    m_life.questions()->ask(question);
}

/// The engine tells all pages of the process that it has ended.
void SilentPage::end()
{
    const auto pid = pid_t(process());
    if (!m_pulse || !m_pulse->isSilent() || pid <= 1)
        return;
    qCInfo(lcEngine) << "ended as it did not answer: the process of"
                     << PrivateProfiles::siteForLog(*m_life.page());
    if (kill(pid, SIGKILL) != 0)
        qCWarning(lcEngine) << "the process" << pid << "cannot be ended:" << qt_error_string();
}

qint64 SilentPage::process() const
{
    return m_life.page() ? m_life.page()->renderProcessPid() : 0;
}

QList<SilentPage *> SilentPage::companions() const
{
    QList<SilentPage *> found;
    const qint64 mine = process();
    for (SilentPage *each : std::as_const(living)) {
        if (mine > 0 && each != this && each->m_pulse && each->process() == mine)
            found.append(each);
    }
    return found;
}

QString SilentPage::companyText() const
{
    const QList<SilentPage *> others = companions();
    if (others.isEmpty())
        return {};
    QString text = u"\n"_s
        + Texts<"PageQuestions">::at<"strSilentCompany", "These pages would end with it:">();
    for (const SilentPage *each : others.first(qMin(others.size(), mostNamed))) {
        const QString title = shownText(each->m_life.page()->title()).simplified();
        const QString site = shownSite(each->m_life.page()->url());
        text += u"\n• "_s + (title.isEmpty() ? site : title.left(longestName));
    }
    return others.size() > mostNamed ? text + u"\n• …"_s : text;
}
