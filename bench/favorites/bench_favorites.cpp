// What filling the favorites tree costs beyond walking the folders and reading the files, and how
// long it holds the interface.

#include "FavoritesBar.h"
#include "LinksFolder.h"
#include "NoFrame.h"
#include "Report.h"
#include "Taken.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int folders = 500;
constexpr int linksPerFolder = 20;
constexpr int barLinks = 5000;
constexpr int rounds = 7;
constexpr double mostTimesBare = 1.5;
constexpr double longestHoldMs = 100;

bool write(const QString &path, int number)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly)
        && file.write("[InternetShortcut]\r\nURL=https://www.example.com/page/"
                      + QByteArray::number(number) + "\r\nIconIndex=0\r\n")
        > 0;
}

bool makeFavorites(const QString &root)
{
    bool made = true;
    for (int folder = 0; folder < folders; ++folder) {
        // Ten at the top, each with a chain of folders and their neighbours below.
        const QString path = u"%1/Group %2/Folder %3"_s.arg(root).arg(folder % 10).arg(folder / 10);
        made &= QDir().mkpath(path);
        for (int link = 0; link < linksPerFolder; ++link)
            made &= write(u"%1/Shortcut %2.url"_s.arg(path).arg(link), folder * 100 + link);
    }
    return made;
}

double ms(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

// Every folder listed, every file read.
double bareMs(const QString &root)
{
    QElapsedTimer timer;
    timer.start();
    qint64 bytes = 0;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            bytes += file.readAll().size();
    }
    return bytes > 0 ? ms(timer) : 0;
}

struct Filling {
    double ms = 0;
    double longestHold = 0;
};

Filling fill(FavoritesBar &bar)
{
    Filling result;
    QElapsedTimer total;
    total.start();
    bar.refresh();
    while (bar.isRefreshing()) {
        QElapsedTimer hold;
        hold.start();
        QApplication::processEvents();
        result.longestHold = std::max(result.longestHold, ms(hold));
    }
    result.ms = ms(total);
    return result;
}
}

int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    QApplication app(argc, argv);
    const QString root = home.filePath(u"Favorites"_s);
    if (!makeFavorites(root))
        qFatal("cannot make the favorites");

    NoFrame frame(nullptr);
    FavoritesBar bar(frame);
    bar.resize(240, 700);
    bar.show();
    while (bar.isRefreshing())
        QApplication::processEvents();
    QList<double> ratios;
    double hold = 0;
    double bare = 0;
    double filled = 0;
    for (int round = 0; round < rounds; ++round) {
        bare = bareMs(root);
        const Filling filling = fill(bar);
        filled = filling.ms;
        ratios.append(filled / bare);
        hold = std::max(hold, filling.longestHold);
    }
    Report report;
    report.note(u"last round: bare %1 ms, filled %2 ms"_s.arg(bare).arg(filled));
    report.atMost(u"filling against the bare cost"_s, median(ratios), mostTimesBare, u"times"_s);
    report.atMost(u"interface held"_s, hold, longestHoldMs, u"ms"_s);
    bool good = true;
    const int nodes = bar.findChild<QTreeWidget *>()->topLevelItemCount();
    good &= nodes == 10;

    QDir(root).mkpath(u"Links"_s);
    for (int link = 0; link < barLinks; ++link)
        write(u"%1/Links/Link %2.url"_s.arg(root).arg(link), link);
    const double bareLinks = bareMs(root + "/Links"_L1);
    QElapsedTimer timer;
    timer.start();
    int links = 0;
    for (LinksReading reading; !reading.atEnd();)
        links += reading.readNext() ? 1 : 0;
    good &= links == barLinks;
    report.atMost(u"5000 links against the bare cost"_s, ms(timer) / bareLinks, mostTimesBare,
                  u"times"_s);
    return good && !report.failed() ? 0 : 1;
}
