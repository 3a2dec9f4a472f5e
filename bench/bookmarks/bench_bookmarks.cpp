// Bookmark files beside the bare work: reading one beside the distribution's HTML parser, an import
// beside creating the same files, an export beside reading them; how long both hold the interface
// and how long the dialog on them does; and the memory all of it needs.

#include "BookmarkFile.h"
#include "BookmarkImport.h"
#include "BookmarkReader.h"
#include "BookmarkWriter.h"
#include "FavoritesTransfer.h"
#include "FileDialogRequest.h"
#include "FileUpdate.h"
#include "NoFrame.h"
#include "OrganizeFavoritesDialog.h"
#include "Pulse.h"
#include "Report.h"
#include "Taken.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QMainWindow>
#include <QTemporaryDir>

#include <algorithm>
#include <libxml/HTMLparser.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {
constexpr int folders = 2000;
constexpr int linksPerFolder = 25;
constexpr int rounds = 3;
constexpr double mostTimesParser = 2;
constexpr double mostTimesBare = 1.5;
constexpr double mostMemoryMb = 200;
constexpr double longestHoldMs = 100;

double ms(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

double peakMemoryMb()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
}

QByteArray linkLine(int number)
{
    return "<DT><A HREF=\"https://www.example.com/page/" + QByteArray::number(number)
        + "?a=1&amp;b=2\" ADD_DATE=\"1600000000\" ICON=\"data:image/png;base64,"
        + QByteArray(300, 'A') + "\">Page number " + QByteArray::number(number) + "</A>\n";
}

// Bit by bit, as it counts for the peak of the memory.
bool writeBookmarks(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<META HTTP-EQUIV=\"Content-Type\" "
               "CONTENT=\"text/html; charset=UTF-8\">\n<DL><p>\n");
    for (int folder = 0; folder < folders; ++folder) {
        file.write("<DT><H3 ADD_DATE=\"1500000000\">Folder " + QByteArray::number(folder)
                   + "</H3>\n<DL><p>\n");
        for (int link = 0; link < linksPerFolder; ++link)
            file.write(linkLine(folder * linksPerFolder + link));
        file.write("</DL><p>\n");
    }
    return file.write("</DL><p>\n") > 0;
}

double parserMs(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    htmlDocPtr document =
        htmlReadFile(QFile::encodeName(path).constData(), nullptr,
                     HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING);
    const double result = ms(timer);
    xmlFreeDoc(document);
    return result;
}

double readerMs(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    BookmarkFile file(path);
    while (file.readSome()) { }
    int links = 0;
    BookmarkReader reader(
        file.bytes(),
        [&links](const BookmarkItem &item) {
            links += item.kind == BookmarkItem::Kind::Link ? 1 : 0;
        },
        [](const BookmarkProblem &) {});
    while (reader.readSome()) { }
    const double result = ms(timer);
    if (links != folders * linksPerFolder)
        qFatal("read %d links", links);
    return result;
}

double bareCreateMs(const QString &root)
{
    QElapsedTimer timer;
    timer.start();
    for (int folder = 0; folder < folders; ++folder) {
        const QString path = u"%1/Folder %2"_s.arg(root).arg(folder);
        QDir().mkpath(path);
        for (int link = 0; link < linksPerFolder; ++link) {
            const QByteArray number = QByteArray::number(folder * linksPerFolder + link);
            QFile file(path + u"/Page number "_s + QString::fromLatin1(number) + u".url"_s);
            if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)
                || file.write("[InternetShortcut]\r\nURL=https://www.example.com/page/" + number
                              + "?a=1&b=2\r\n")
                    < 0)
                qFatal("cannot write");
        }
    }
    return ms(timer);
}

double importMs(const QString &path, const QString &root)
{
    QElapsedTimer timer;
    timer.start();
    BookmarkImport import(path, root);
    while (import.advance()) { }
    import.finish();
    const double result = ms(timer);
    if (import.outcome().links != folders * linksPerFolder)
        qFatal("imported %d links", import.outcome().links);
    return result;
}

double bareReadMs(const QString &root)
{
    QElapsedTimer timer;
    timer.start();
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    qint64 bytes = 0;
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            bytes += file.readAll().size();
    }
    return bytes > 0 ? ms(timer) : 0;
}

double exportMs(const QString &root, const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    BookmarkWriter writer(root);
    while (writer.advance()) { }
    if (!FileUpdate::replace(path, writer.bytes()))
        qFatal("cannot export");
    const double result = ms(timer);
    if (writer.links() != folders * linksPerFolder)
        qFatal("exported %d links", writer.links());
    return result;
}

// Each in a folder of its own, so that none pays for clearing up behind the one before; which one
// comes first takes turns.
double importTimesBare(const QString &path, const QTemporaryDir &folder, int round)
{
    const QString ours = folder.filePath(u"imported %1"_s.arg(round));
    const QString bare = folder.filePath(u"created %1"_s.arg(round));
    double oursMs = 0;
    double bareMs = 0;
    if (round % 2 == 0)
        oursMs = importMs(path, ours);
    bareMs = bareCreateMs(bare);
    if (round % 2 != 0)
        oursMs = importMs(path, ours);
    return oursMs / bareMs;
}

double exportTimesBare(const QTemporaryDir &folder, int round)
{
    const QString root = folder.filePath(u"imported 0"_s);
    const QString out = folder.filePath(u"out.html"_s);
    double oursMs = 0;
    double bareMs = 0;
    if (round % 2 == 0)
        oursMs = exportMs(root, out);
    bareMs = bareReadMs(root);
    if (round % 2 != 0)
        oursMs = exportMs(root, out);
    return oursMs / bareMs;
}

// The longest time the interface gave no answer while `start` was under way.
double holdMs(const FavoritesTransfer &transfer, Pulse &pulse, const std::function<void()> &start)
{
    pulse.forget();
    start();
    while (transfer.isRunning())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
    return pulse.longestMs();
}

double transfersHoldMs(const QString &in, const QString &out)
{
    QMainWindow window;
    window.show();
    NoFrame frame(&window);
    FavoritesTransfer transfer(frame);
    Pulse pulse(nullptr);
    setFileDialogAnswerer([&](const FileDialogRequest &request) {
        const bool opens = request.kind == FileDialogRequest::Kind::Open;
        return std::optional(FileDialogAnswer{opens ? in : out, 1});
    });
    const double importing = holdMs(transfer, pulse, [&] { transfer.importFile(); });
    const double exporting = holdMs(transfer, pulse, [&] { transfer.exportFile(); });
    setFileDialogAnswerer({});
    return std::max(importing, exporting);
}

double organizeHoldMs(const QString &root)
{
    QElapsedTimer timer;
    timer.start();
    auto *dialog = new OrganizeFavoritesDialog(root, nullptr);
    dialog->show();
    QApplication::processEvents();
    const double result = ms(timer);
    delete dialog;
    return result;
}

void measureInterface(const QString &path, const QTemporaryDir &home, Report &report)
{
    report.atMost(u"import and export, interface held"_s,
                  transfersHoldMs(path, home.filePath(u"out.html"_s)), longestHoldMs, u"ms"_s);
    report.atMost(u"organizing, interface held"_s, organizeHoldMs(home.filePath(u"Favorites"_s)),
                  longestHoldMs, u"ms"_s);
}
}

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    qputenv("HOME", folder.path().toUtf8());
    const QApplication app(argc, argv);
    const QString path = folder.filePath(u"bookmarks.html"_s);
    if (!writeBookmarks(path))
        qFatal("cannot write the bookmark file");

    // First, as long as the peak of the memory is that of one import and one export.
    Report report;
    measureInterface(path, folder, report);
    report.atMost(u"memory"_s, peakMemoryMb(), mostMemoryMb, u"MB"_s);
    QList<double> importing;
    QList<double> exporting;
    QList<double> reading;
    QList<double> parsing;
    for (int round = 0; round < rounds; ++round) {
        importing.append(importTimesBare(path, folder, round));
        exporting.append(exportTimesBare(folder, round));
        reading.append(readerMs(path));
        parsing.append(parserMs(path));
    }

    report.note(u"read in %1 ms, HTML parser %2 ms"_s.arg(median(reading)).arg(median(parsing)));
    report.atMost(u"reading against the HTML parser"_s, median(reading) / median(parsing),
                  mostTimesParser, u"times"_s);
    report.atMost(u"import against creating the files"_s, median(importing), mostTimesBare,
                  u"times"_s);
    report.atMost(u"export against reading the files"_s, median(exporting), mostTimesBare,
                  u"times"_s);
    return report.failed() ? 1 : 0;
}
