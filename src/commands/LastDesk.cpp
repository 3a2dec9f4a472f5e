#include "LastDesk.h"

#include "BrowserWindow.h"
#include "DeskFile.h"
#include "DeskOffer.h"
#include "DeskPlacer.h"
#include "DeskToKeep.h"
#include "FrameOpener.h"
#include "Log.h"
#include "MainWindow.h"
#include "MdiArea.h"
#include "NotSaved.h"
#include "Settings.h"
#include "TabStrip.h"
#include "WakingPages.h"
#include "Yield.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace {
/// From a change to its writing: with that, it is in the file within a second.
constexpr int pauseMs = 600;

bool isOfTheDesk(QEvent::Type type)
{
    switch (type) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Close:
    case QEvent::WindowStateChange:
    case QEvent::WindowTitleChange:
    case QEvent::ZOrderChange:
        return true;
    default:
        return false;
    }
}

/// Whether there is something in the file in which no window was found: the first write would take
/// it away. A desk without windows is no loss.
bool isUnread(const LastDeskFile::Left &left)
{
    return !left.bytes.isEmpty() && left.desk.windows.isEmpty()
        && left.bytes != DeskFile::text(left.desk);
}
}

LastDesk::LastDesk(MainWindow &frame)
    : m_frame(frame)
    , m_area(*frame.findChild<MdiArea *>())
    , m_left(LastDeskFile::read())
{
    m_pending = m_left.desk;
    if (isUnread(m_left) && !LastDeskFile::keep(m_left))
        qCWarning(lcFiles) << "cannot keep what is unread in" << LastDeskFile::path();
    if (!m_left.isCut)
        frame.opener().setDeskOpener([this] { return openAtStart(); });
    m_soon.setSingleShot(true);
    m_soon.setInterval(pauseMs);
    connect(&m_soon, &QTimer::timeout, this, &LastDesk::write);
    connect(&m_area, &MdiArea::adopted, this, [this](QMdiSubWindow *child) {
        if (auto *window = qobject_cast<BrowserWindow *>(child))
            watch(window);
    });
    connect(frame.findChild<TabStrip *>(), &TabStrip::tabMoved, this, &LastDesk::changeComes);
    connect(&frame, &MainWindow::leaving, this, &LastDesk::end);
    frame.installEventFilter(this);
}

void LastDesk::watch(BrowserWindow *window)
{
    window->installEventFilter(this);
    connect(window->browser(), &WebBrowser::stateChanged, this, &LastDesk::changeComes);
    connect(window, &QObject::destroyed, this, &LastDesk::changeComes);
    changeComes();
}

bool LastDesk::eventFilter(QObject *watched, QEvent *event)
{
    if (isOfTheDesk(event->type()))
        changeComes();
    return QObject::eventFilter(watched, event);
}

/// The first of many: a desk that changes all the time is written all the same.
void LastDesk::changeComes()
{
    if (!m_isOver && !m_soon.isActive())
        m_soon.start();
}

void LastDesk::write()
{
    m_store.put(deskToKeep(m_frame, m_pending));
}

bool LastDesk::offer()
{
    if (!m_left.isCut || m_pending.windows.isEmpty() || m_frame.isClosed())
        return false;
    m_offer = new DeskOffer(m_pending, WakingPages::left());
    connect(m_offer, &DeskOffer::accepted, this, &LastDesk::openThese);
    connect(m_offer, &DeskOffer::declined, this, &LastDesk::decline);
    connect(&m_frame, &MainWindow::translated, m_offer, &DeskOffer::translate);
    m_frame.addNotice(*m_offer);
    return true;
}

bool LastDesk::openAtStart()
{
    if (!Settings::openLastDesk.isOne())
        m_pending = {};
    const Desk desk = m_pending;
    putBack(desk);
    return !desk.windows.isEmpty();
}

void LastDesk::openThese(const QList<qsizetype> &windows)
{
    endOffer();
    const Desk desk = only(m_pending, windows);
    QList<DeskWindow> others = m_pending.windows;
    others.removeIf([&desk](const DeskWindow &each) { return desk.windows.contains(each); });
    const bool isKept = others.isEmpty() || keep();
    m_pending = desk;
    if (!isKept)
        m_pending.windows.append(others);
    putBack(desk);
}

/// False, and the user is told, where the file could not be kept: what was in it goes on being
/// written with the desk then.
bool LastDesk::keep()
{
    const WriteResult result = LastDeskFile::keep(m_left);
    if (!result)
        NotSaved::tell(&m_frame, LastDeskFile::path(), result);
    return bool(result);
}

void LastDesk::decline()
{
    endOffer();
    if (keep())
        m_pending = {};
    changeComes();
}

void LastDesk::endOffer()
{
    WakingPages::forgetAll();
    // It stays as long as what it was answered with takes.
    m_offer->disconnect(this);
    m_offer->hide();
    m_offer->deleteLater();
}

void LastDesk::putBack(const Desk &desk)
{
    if (desk.windows.isEmpty())
        return;
    // Otherwise each window would come up maximized, only to be placed in the end.
    if (QMdiSubWindow *active = m_frame.activeChild(); active && active->isMaximized())
        active->showNormal();
    DeskPlacer placer(m_frame, m_area, desk);
    SlicedLoop loop;
    for (qsizetype i = 0; i < desk.windows.size() && !m_frame.isClosed(); ++i) {
        placer.open(i);
        m_pending.windows.removeFirst();
        m_pending.active = -1;
        loop.yieldWhenDue();
    }
    if (m_frame.isClosed())
        return;
    if (!desk.hasPlaces())
        m_frame.run(u"mnuWindowCascade"_s);
    placer.finish();
    const QList<BrowserWindow *> windows = placer.windows();
    for (BrowserWindow *window : windows) {
        watchWaking(window);
        // Not sooner: each one was active as it opened, and is to wake for that.
        QTimer::singleShot(0, window, [window] { window->waitAsleep(Waking::WhenGoneTo); });
    }
    changeComes();
}

/// A page that ends the program as it comes back is known by that at the next start.
void LastDesk::watchWaking(BrowserWindow *window)
{
    const QString address = window->browser()->locationUrl();
    const auto isOver = [address] { WakingPages::end(address); };
    connect(window, &BrowserWindow::waking, this, [this, window, address, isOver] {
        WakingPages::begin(address);
        connect(window->browser(), &WebBrowser::loadEnded, this, isOver, Qt::SingleShotConnection);
        connect(window, &QObject::destroyed, this, isOver);
    });
}

void LastDesk::end(bool isByUser)
{
    if (m_isOver)
        return;
    write();
    m_isOver = true;
    m_soon.stop();
    m_store.flush();
    if (!isByUser)
        return;
    const bool isAnyLeft = m_left.isCut && !m_pending.windows.isEmpty();
    if (!isAnyLeft || LastDeskFile::keep(m_left))
        LastDeskFile::endRun();
}
