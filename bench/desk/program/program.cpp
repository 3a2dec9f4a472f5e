// FOLDER COUNT KEPT: a frame of COUNT windows, no engine behind them, that changes ten times a
// second until it is killed. Each change gives the next window the title "NUMBER TIME", the time
// in milliseconds since 1970. With KEPT the desk is kept in the application folder FOLDER.
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "Factory.h"
#include "LastDesk.h"
#include "MainWindow.h"

#include <QApplication>
#include <QDateTime>
#include <QTimer>
#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
constexpr int everyMs = 100;

void change(int number)
{
    static const QList<BrowserWindow *> windows = browserForms();
    windows.at(number % windows.size())
        ->setTitle(u"%1 %2"_s.arg(number).arg(QDateTime::currentMSecsSinceEpoch()));
}
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    AppFolder::setPath(arguments.value(1));
    MainWindow frame;
    const auto desk = arguments.value(3) == "KEPT"_L1 ? std::make_unique<LastDesk>(frame) : nullptr;
    frame.show();
    int number = 0;
    const int count = arguments.value(2).toInt();
    for (int i = 0; i < count; ++i)
        openBrowserWindow(frame, u"http://h%1/"_s.arg(i), WindowState::AsOthers, Loading::Later);
    for (int i = 0; i < count; ++i)
        change(number++);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &frame, [&number] { change(number++); });
    timer.start(everyMs);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
