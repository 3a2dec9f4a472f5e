#include "PageHold.h"

#include "LeavingFocus.h"
#include "Log.h"
#include "PrivateProfiles.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QHash>
#include <QTimer>
#include <QWebEnginePage>
#include <QWidget>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds.
constexpr int longestWait = 30'000;

struct Held {
    int holds = 0;
    int staying = 0;
    bool isLeft = false;
    QPointer<QWidget> view;
};
QHash<QWebEnginePage *, Held> heldPages;

bool isAnyLeft()
{
    return std::any_of(heldPages.cbegin(), heldPages.cend(),
                       [](const Held &held) { return held.isLeft; });
}

void dropThoseThatMayGo()
{
    const auto all = heldPages;
    for (auto page = all.begin(); page != all.end(); ++page) {
        if (!page->isLeft)
            continue;
        qCWarning(lcEngine) << "given up as the program ends: what was asked of"
                            << PrivateProfiles::siteForLog(*page.key());
        if (page->staying > 0)
            continue;
        delete page->view;
        delete page.key();
    }
}
}

PageHold::PageHold(QWebEnginePage *page, AtExit atExit)
    : m_key(page)
    , m_page(page)
    , m_atExit(atExit)
{
    Held &held = heldPages[m_key];
    ++held.holds;
    held.staying += int(m_atExit == AtExit::Stays);
}

PageHold::~PageHold()
{
    Held &held = heldPages[m_key];
    held.staying -= int(m_atExit == AtExit::Stays);
    if (--held.holds > 0)
        return;
    const Held last = heldPages.take(m_key);
    if (!last.isLeft)
        return;
    // It may be the engine that lets go.
    if (last.view)
        last.view->deleteLater();
    if (m_page)
        m_page->deleteLater();
}

bool PageHold::takeOver(QWidget *view, QWebEnginePage *page)
{
    const auto held = heldPages.find(page);
    if (held == heldPages.end())
        return false;
    held->isLeft = true;
    held->view = view;
    page->setAudioMuted(true);
    if (view) {
        view->hide();
        giveUpFocus(*view);
        view->setParent(nullptr);
    }
    return true;
}

void PageHold::finishAll()
{
    const QDeadlineTimer limit(longestWait);
    QTimer wakes;
    wakes.start(10);
    // Not a loop of its own: what asked the program to end, and asks again, would end that at once.
    while (isAnyLeft() && !limit.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    dropThoseThatMayGo();
}
