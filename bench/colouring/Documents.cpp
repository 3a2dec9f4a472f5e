#include "Documents.h"

#include "Pages.h"
#include "Peer.h"
#include "Report.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;
/// Throughput against the peer's, from a megabyte on. Less than that is mostly the processes'
/// own start.
constexpr double leastTimes = 8;
constexpr double leastTimesSmall = 1;
/// In MB, for a page of 50 MB: its text takes 100 and its document about 300, at two bytes a
/// character.
constexpr double mostMemory = 600;
constexpr int manyPages = 1000;

QString ownProgram()
{
    return QCoreApplication::applicationDirPath() + u"/bench_colouring_document"_s;
}

void compare(Report &report, const QString &what, const QList<Taken> &ours,
             const QList<Taken> &theirs, double least)
{
    const Taken own = median(ours);
    const Taken other = median(theirs);
    report.note(u"%1: %2 ms against %3 ms; processor %4 ms against %5 ms"_s.arg(what)
                    .arg(own.wall, 0, 'f', 1)
                    .arg(other.wall, 0, 'f', 1)
                    .arg(own.processor, 0, 'f', 1)
                    .arg(other.processor, 0, 'f', 1));
    report.atLeast(what + u", throughput"_s, other.processor / own.processor, least, u"times"_s);
}

/// The highest memory use of our process, in MB.
double compareOne(Report &report, const Peer &peer, const QTemporaryDir &dir, const QString &name,
                  const QByteArray &bytes, int rounds)
{
    const QString in = dir.filePath(u"in.html"_s);
    const QString out = dir.filePath(u"out.rtf"_s);
    Pages::write(in, bytes);
    QList<Taken> ours;
    QList<Taken> theirs;
    QByteArray memory;
    for (int i = 0; i < rounds; ++i) {
        ours.append(runProgram(ownProgram(), {in, out}, &memory));
        theirs.append(peer.document(in, out));
    }
    compare(report, u"document, "_s + name, ours, theirs,
            bytes.size() >= megabyte ? leastTimes : leastTimesSmall);
    return memory.trimmed().toDouble() / 1000;
}

/// All at once, one process each.
void compareMany(Report &report, const Peer &peer, const QTemporaryDir &dir)
{
    const QDir in(dir.filePath(u"pages"_s));
    const QDir out(dir.filePath(u"documents"_s));
    in.mkpath(u"."_s);
    out.mkpath(u"."_s);
    const QList<QByteArray> real = Pages::real(manyPages);
    QStringList files;
    qint64 size = 0;
    for (int i = 0; i < manyPages; ++i) {
        const QByteArray page =
            i < real.size() ? real.at(i) : Pages::generated(5000 + qsizetype(i) * 50);
        files.append(in.filePath(u"%1.html"_s.arg(i)));
        Pages::write(files.constLast(), page);
        size += page.size();
    }
    report.note(u"of %1 pages, %2 MB, %3 are real and %4 generated"_s.arg(manyPages)
                    .arg(double(size) / 1e6, 0, 'f', 1)
                    .arg(real.size())
                    .arg(manyPages - real.size()));
    QList<Taken> ours;
    QList<Taken> theirs;
    for (int i = 0; i < 3; ++i) {
        ours.append(runProgram(ownProgram(), QStringList{u"--into"_s, out.path()} + files));
        theirs.append(peer.documents(files, out.path()));
    }
    compare(report, u"documents of %1 pages"_s.arg(manyPages), ours, theirs, leastTimes);
}

}

namespace Documents {

void measure(Report &report, const Peer &peer, const QTemporaryDir &dir)
{
    compareMany(report, peer, dir);
    for (const QString &name : Pages::large(5))
        compareOne(report, peer, dir,
                   u"real page of %1 MB"_s.arg(double(QFileInfo(name).size()) / 1e6, 0, 'f', 1),
                   Pages::read(name), 3);
    compareOne(report, peer, dir, u"generated, 0.1 MB"_s, Pages::generated(megabyte / 10), 7);
    compareOne(report, peer, dir, u"generated, 1 MB"_s, Pages::generated(megabyte), 5);
    compareOne(report, peer, dir, u"generated, 10 MB"_s, Pages::generated(10 * megabyte), 3);
    const double memory =
        compareOne(report, peer, dir, u"generated, 50 MB"_s, Pages::generated(50 * megabyte), 1);
    report.atMost(u"memory for 50 MB"_s, memory, mostMemory, u"MB"_s);
}

}
