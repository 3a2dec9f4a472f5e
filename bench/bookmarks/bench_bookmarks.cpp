// Bookmark files beside the bare work: reading one beside the distribution's HTML parser, an import
// beside creating the same files, an export beside reading them; and the memory all of it needs.

#include "BookmarkFile.h"
#include "BookmarkImport.h"
#include "BookmarkReader.h"
#include "BookmarkWriter.h"
#include "FileUpdate.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

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

double ms(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
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

QByteArray bookmarks()
{
    QByteArray bytes = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<META HTTP-EQUIV=\"Content-Type\" "
                       "CONTENT=\"text/html; charset=UTF-8\">\n<DL><p>\n";
    for (int folder = 0; folder < folders; ++folder) {
        bytes += "<DT><H3 ADD_DATE=\"1500000000\">Folder " + QByteArray::number(folder)
            + "</H3>\n<DL><p>\n";
        for (int link = 0; link < linksPerFolder; ++link)
            bytes += linkLine(folder * linksPerFolder + link);
        bytes += "</DL><p>\n";
    }
    return bytes + "</DL><p>\n";
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

bool report(const char *what, double value, const char *unit, double limit)
{
    QTextStream(stdout) << "bookmarks: " << what << ' ' << QString::number(value, 'f', 2) << unit
                        << " (limit " << limit << unit << ")\n";
    return value <= limit;
}
}

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"bookmarks.html"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bookmarks()) < 0)
        qFatal("cannot write the bookmark file");
    file.close();

    QList<double> reading;
    QList<double> importing;
    QList<double> exporting;
    // Ours first: the peak of the memory is then ours alone.
    for (int round = 0; round < rounds; ++round)
        reading.append(readerMs(path));
    const QString root = folder.filePath(u"Favorites"_s);
    for (int round = 0; round < rounds; ++round) {
        QDir(root).removeRecursively();
        const double ours = importMs(path, root);
        exporting.append(exportMs(root, folder.filePath(u"out.html"_s)) / bareReadMs(root));
        QDir(root).removeRecursively();
        importing.append(ours / bareCreateMs(root));
    }
    const double memory = peakMemoryMb();
    QList<double> parsing;
    for (int round = 0; round < rounds; ++round)
        parsing.append(parserMs(path));

    QTextStream(stdout) << "bookmarks: read in " << median(reading) << " ms, HTML parser "
                        << median(parsing) << " ms\n";
    bool good = report("reading, times the HTML parser", median(reading) / median(parsing), "",
                       mostTimesParser);
    good &= report("import, times creating the files", median(importing), "", mostTimesBare);
    good &= report("export, times reading the files", median(exporting), "", mostTimesBare);
    good &= report("memory", memory, " MB", mostMemoryMb);
    return good ? 0 : 1;
}
