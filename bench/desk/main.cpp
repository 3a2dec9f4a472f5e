// A desk of a thousand windows: how soon the frame is usable while it comes back, how soon all tabs
// are there, what it weighs, how soon a sleeping window shows its picture and its page; and its
// file: how old it may be, what that costs, and what is left of it by a kill at any moment. With
// the argument "windows", "file" or "kills" only that.
#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "DeskFile.h"
#include "EngineProfile.h"
#include "EngineStart.h"
#include "Keeping.h"
#include "MainWindow.h"
#include "PageServer.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Pulse.h"
#include "Report.h"
#include "SleepPicture.h"
#include "StartUp.h"
#include "Taken.h"
#include "WaitUntil.h"
#include "WebBrowser.h"
#include "WindowMenu.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebEngineView>
#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray page = R"(<!DOCTYPE html><title>A page of many</title><h1>A page of many</h1>
<p>One paragraph of text, as small as a page can be.</p><div style="height: 5000px"></div>
<script>
const tell = what => requestAnimationFrame(() => requestAnimationFrame(
    () => navigator.sendBeacon('/' + what + location.pathname)));
tell('first');
</script>)";

constexpr int many = 1000;
/// Side by side in front of all others, which they cover.
constexpr int inFront = 4;
constexpr int hosts = 50;
constexpr int switches = 15;
constexpr double usableLimitMs = 2000;
constexpr double tabsLimitMs = 10'000;
constexpr double memoryLimitMb = 400;
constexpr double pictureLimitMs = 50;
constexpr double wakingLimit = 1.2;

/// Page `number` on one of the hosts, which all lead to this machine.
QString address(const PageServer &server, int number)
{
    return server.page(number).replace(u"127.0.0.1"_s, u"host%1.localhost"_s.arg(number % hosts));
}

/// The last ones are in front.
QRect placeOf(int number)
{
    const QSize quarter(600, 350);
    const int place = many - number;
    if (place < inFront) {
        return {QPoint(place % 2 * quarter.width(), place / 2 * quarter.height()), quarter};
    }
    return {QPoint(10 + number % 40 * 8, 10 + number % 25 * 6), QSize(500, 350)};
}

Desk deskOf(const PageServer &server)
{
    Desk desk;
    for (int number = 1; number <= many; ++number) {
        DeskWindow window;
        window.address = address(server, number);
        window.title = u"Page %1"_s.arg(number);
        window.place = placeOf(number);
        window.order = number - 1;
        window.scroll = {0, number};
        desk.windows.append(window);
    }
    desk.active = many - 1;
    desk.frame = QRect(0, 0, 1240, 960);
    return desk;
}

/// The widget that a menu or a tab is used on while windows come up.
struct Usable {
    double menuMs = 0;
    double tabMs = 0;
};

/// Opens a menu and goes to the first window's tab as soon as the frame lets it.
void useFrame(MainWindow &frame, const QElapsedTimer &clock, Usable &usable)
{
    QMenu *menu = frame.menuBar()->actions().constFirst()->menu();
    menu->popup(frame.mapToGlobal(QPoint(0, frame.menuBar()->height())));
    menu->repaint();
    usable.menuMs = double(clock.nsecsElapsed()) / 1e6;
    menu->hide();
    activateTab(frame, browserForms().constFirst()->tabKey());
    frame.repaint();
    usable.tabMs = double(clock.nsecsElapsed()) / 1e6;
}

/// Until no page of the frame's is loading.
void untilLoaded()
{
    waitUntil("the pages", [] {
        const QList<BrowserWindow *> forms = browserForms();
        return std::none_of(forms.begin(), forms.end(), [](const BrowserWindow *each) {
            return !each->browser()->isWaiting() && each->browser()->isBusy();
        });
    });
}

int awake()
{
    const QList<BrowserWindow *> forms = browserForms();
    return int(std::count_if(forms.begin(), forms.end(), [](const BrowserWindow *each) {
        return !each->browser()->isWaiting();
    }));
}

void measureOpening(MainWindow &frame, const QString &profile, Report &report)
{
    constexpr int firstTryMs = 100;
    Pulse pulse(nullptr);
    QElapsedTimer clock;
    Usable usable;
    clock.start();
    QTimer::singleShot(firstTryMs, &frame, [&] { useFrame(frame, clock, usable); });
    frame.openProfile(profile, true);
    const double tabs = double(clock.nsecsElapsed()) / 1e6;
    report.atMost(u"a menu is open"_s, usable.menuMs, usableLimitMs, u"ms"_s);
    report.atMost(u"a tab has switched"_s, usable.tabMs, usableLimitMs, u"ms"_s);
    report.atMost(u"1000 tabs"_s, tabs, tabsLimitMs, u"ms"_s);
    report.note(u"interface held %1 ms at most"_s.arg(pulse.longestMs(), 0, 'f', 1));
    waitUntil("those in sight", [] { return awake() >= inFront; });
    untilLoaded();
    report.note(u"%1 windows are awake"_s.arg(awake()));
    report.atMost(u"memory"_s, double(treeMemory(getpid())) / 1024, memoryLimitMb, u"MB"_s);
}

/// All windows side by side; it says what comes for that.
void measureTile(MainWindow &frame, Report &report)
{
    Pulse pulse(nullptr);
    QElapsedTimer clock;
    clock.start();
    frame.run(u"mnuWindowTileHorizontal"_s);
    constexpr int restMs = 3000;
    QElapsedTimer rest;
    int last = -1;
    waitUntil("the tiled pages", [&] {
        if (last != awake() || !rest.isValid())
            rest.start();
        last = awake();
        return rest.hasExpired(restMs);
    });
    untilLoaded();
    report.note(
        u"tiled: %1 windows awake after %2 ms, %3 MB, interface held %4 ms at most"_s.arg(awake())
            .arg(clock.elapsed() - restMs)
            .arg(double(treeMemory(getpid())) / 1024, 0, 'f', 0)
            .arg(pulse.longestMs(), 0, 'f', 1));
}

/// Tells when the picture of a sleeping page has been painted.
class PictureWatch : public QObject {
public:
    PictureWatch() { qApp->installEventFilter(this); }

    double untilPainted(const std::function<void()> &act)
    {
        m_ms = 0;
        m_clock.start();
        act();
        waitUntil("the picture", [this] { return m_ms > 0; });
        return m_ms;
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // It paints after this, and before the loop goes round.
        if (event->type() == QEvent::Paint && m_ms == 0 && qobject_cast<SleepPicture *>(watched)) {
            QTimer::singleShot(0, this, [this] { m_ms = double(m_clock.nsecsElapsed()) / 1e6; });
        }
        return false;
    }

private:
    QElapsedTimer m_clock;
    double m_ms = 0;
};

double bareLoadMs(PageServer &server, int number, const QSize &size)
{
    QElapsedTimer clock;
    clock.start();
    QWebEngineView view(engineProfile(), nullptr);
    view.resize(size);
    view.show();
    const double shown = double(clock.nsecsElapsed()) / 1e6;
    return shown + server.untilTold(number, [&] { view.setUrl(QUrl(address(server, number))); });
}

/// Each window is gone to, left, put to sleep, and gone to again.
void measureWaking(MainWindow &frame, PageServer &server, const QString &how, Report &report)
{
    const QList<BrowserWindow *> forms = browserForms();
    PictureWatch watch;
    QList<double> pictures;
    QList<double> clicks;
    QList<double> pages;
    QList<double> bare;
    for (int i = 0; i < switches; ++i) {
        const int number = 2 + i * (many / switches - 1);
        BrowserWindow *window = forms.at(number - 1);
        if (window->browser()->isWaiting())
            server.untilTold(number, [&] { activateTab(frame, window->tabKey()); });
        else
            activateTab(frame, window->tabKey());
        waitUntil("the page", [window] { return !window->browser()->isBusy(); });
        activateTab(frame, forms.constFirst()->tabKey());
        untilLoaded();
        window->fallAsleep();
        waitUntil("sleep", [window] { return window->isAsleep(); });
        double picture = 0;
        pages.append(server.untilTold(number, [&] {
            picture = watch.untilPainted([&] {
                clicks.append(takenBy([&] { activateTab(frame, window->tabKey()); }).wall);
            });
        }));
        pictures.append(picture);
        bare.append(bareLoadMs(server, number, window->browser()->widget()->size()));
    }
    report.note(u"waking %1 ms, of which going there %2 ms; a bare load %3 ms"_s
                    .arg(median(pages), 0, 'f', 1)
                    .arg(median(clicks), 0, 'f', 1)
                    .arg(median(bare), 0, 'f', 1));
    report.atMost(u"the picture of a sleeping window"_s + how, median(pictures), pictureLimitMs,
                  u"ms"_s);
    report.atMost(u"its page against a bare load"_s + how, median(pages) / median(bare),
                  wakingLimit, u"times"_s);
}

/// In the whole program.
void measureWindows(Report &report)
{
    PageServer server(page);
    const QString profile = AppFolder::path() + u"/Profiles/desk.orp"_s;
    if (!DeskFile::save(profile, deskOf(server)))
        qFatal("no profile");
    MainWindow frame;
    registerAllCommands(frame);
    frame.setCommandLine(u"about:blank"_s);
    startUp(frame);
    frame.run(u"mnuFileCloseAll"_s);
    measureOpening(frame, profile, report);
    measureWaking(frame, server, {}, report);
    QAccessible::setActive(true);
    measureWaking(frame, server, u", read aloud"_s, report);
    QAccessible::setActive(false);
    measureTile(frame, report);
    frame.leave();
}

}

int main(int argc, char **argv)
{
    const FreshHome home;
    home.use();
    chooseRenderingBackend();
    QApplication app(argc, argv);
    const QString part = QCoreApplication::arguments().value(1);
    const QTemporaryDir folder;
    makeQuietFolder(folder.path());
    AppFolder::setPath(folder.path());
    Report report;
    const auto isWanted = [part](const QString &name) { return part.isEmpty() || part == name; };
    if (isWanted(u"file"_s))
        measureKeeping(report);
    if (isWanted(u"kills"_s))
        measureKills(report);
    if (isWanted(u"windows"_s)) {
        startEngine();
        warmUpEngine();
        measureWindows(report);
        stopEngine();
    }
    return report.failed() ? 1 : 0;
}
