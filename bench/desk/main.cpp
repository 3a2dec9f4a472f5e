// A desk of a thousand windows: how soon the frame is usable while it comes back, how soon all tabs
// are there, what it weighs, and how soon a sleeping window shows its picture and its page.
#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "DeskFile.h"
#include "EngineProfile.h"
#include "EngineStart.h"
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

Desk deskOf(const PageServer &server)
{
    Desk desk;
    for (int number = 1; number <= many; ++number) {
        DeskWindow window;
        window.address = address(server, number);
        window.title = u"Page %1"_s.arg(number);
        window.place = QRect(10 + number % 40 * 8, 10 + number % 25 * 6, 500, 350);
        window.order = number - 1;
        window.scroll = {0, number};
        desk.windows.append(window);
    }
    desk.active = many - 1;
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
    untilLoaded();
    report.atMost(u"memory"_s, double(treeMemory(getpid())) / 1024, memoryLimitMb, u"MB"_s);
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
    QWebEngineView view(engineProfile(), nullptr);
    view.resize(size);
    view.show();
    return server.untilTold(number, [&] { view.setUrl(QUrl(address(server, number))); });
}

/// Each window is gone to, left, put to sleep, and gone to again.
void measureWaking(MainWindow &frame, PageServer &server, Report &report)
{
    const QList<BrowserWindow *> forms = browserForms();
    PictureWatch watch;
    QList<double> pictures;
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
            picture = watch.untilPainted([&] { activateTab(frame, window->tabKey()); });
        }));
        pictures.append(picture);
        bare.append(bareLoadMs(server, number, window->browser()->widget()->size()));
    }
    report.note(u"waking %1 ms, a bare load %2 ms"_s.arg(median(pages), 0, 'f', 1)
                    .arg(median(bare), 0, 'f', 1));
    report.atMost(u"the picture of a sleeping window"_s, median(pictures), pictureLimitMs, u"ms"_s);
    report.atMost(u"its page against a bare load"_s, median(pages) / median(bare), wakingLimit,
                  u"times"_s);
}

}

int main(int argc, char **argv)
{
    const FreshHome home;
    home.use();
    chooseRenderingBackend();
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    makeQuietFolder(folder.path());
    AppFolder::setPath(folder.path());
    startEngine();
    warmUpEngine();
    Report report;
    {
        PageServer server(page);
        const QString profile = folder.filePath(u"Profiles/desk.orp"_s);
        if (!DeskFile::save(profile, deskOf(server)))
            qFatal("no profile");
        MainWindow frame;
        registerAllCommands(frame);
        frame.setCommandLine(u"about:blank"_s);
        startUp(frame);
        frame.run(u"mnuFileCloseAll"_s);
        measureOpening(frame, profile, report);
        measureWaking(frame, server, report);
        frame.leave();
    }
    stopEngine();
    return report.failed() ? 1 : 0;
}
