// Colouring source: the document against the program "highlight" writing rich text of the same
// file, whole process against whole process in turn; text on screen; keystrokes; hostile text;
// the longest time the interface is held. Exit status 1 when a figure is over its limit.

#include "Holds.h"
#include "HtmlColourer.h"
#include "Pages.h"
#include "Report.h"
#include "RichTextBox.h"
#include "txtHTML.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QKeyEvent>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <functional>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;

double milliseconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

struct Run {
    double milliseconds = 0;
    QByteArray output;
};

Run run(const QString &program, const QStringList &arguments)
{
    Run result;
    QProcess process;
    result.milliseconds = milliseconds([&] {
        process.start(program, arguments);
        process.waitForFinished(-1);
    });
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    result.output = process.readAllStandardOutput();
    return result;
}

class Peer {
public:
    bool isThere() const { return !m_program.isEmpty(); }
    double time(const QString &file, const QString &output) const
    {
        return run(m_program,
                   {u"-O"_s, u"rtf"_s, u"-S"_s, u"html"_s, u"-i"_s, file, u"-o"_s, output})
            .milliseconds;
    }

private:
    QString m_program = QStandardPaths::findExecutable(u"highlight"_s);
};

QByteArray read(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(name));
}

void documents(Report &report, const Peer &peer, const QTemporaryDir &dir)
{
    const QString own = QCoreApplication::applicationDirPath() + u"/bench_colouring_document"_s;
    const QString in = dir.filePath(u"in.html"_s);
    const QString out = dir.filePath(u"out.rtf"_s);
    struct Case {
        QString name;
        QByteArray bytes;
        int rounds;
    };
    QList<Case> cases = {{u"generated, 0.1 MB"_s, Pages::generated(megabyte / 10), 7},
                         {u"generated, 1 MB"_s, Pages::generated(megabyte), 5},
                         {u"generated, 10 MB"_s, Pages::generated(10 * megabyte), 3},
                         {u"generated, 50 MB"_s, Pages::generated(50 * megabyte), 1}};
    for (const QString &name : Pages::large(5))
        cases.append({u"real page of %1 MB"_s.arg(double(QFileInfo(name).size()) / 1e6, 0, 'f', 1),
                      read(name), 3});
    for (const Case &one : cases) {
        write(in, one.bytes);
        QList<double> ours;
        QList<double> theirs;
        double memory = 0;
        for (int i = 0; i < one.rounds; ++i) {
            const Run result = run(own, {in, out});
            ours.append(result.milliseconds);
            memory = result.output.trimmed().toDouble() / 1000;
            theirs.append(peer.time(in, out));
        }
        const QString what = u"document, "_s + one.name
            + u": %1 ms against %2 ms, throughput ratio"_s.arg(median(ours), 0, 'f', 1)
                  .arg(median(theirs), 0, 'f', 1);
        const bool bound = one.bytes.size() >= megabyte;
        report.atLeast(what, median(theirs) / median(ours), bound ? 8 : 1, u"times"_s);
        if (one.bytes.size() == 50 * megabyte)
            report.atMost(u"memory for 50 MB"_s, memory, 1000, u"MB"_s);
    }
}

void untilIdle(const txtHTML &editor)
{
    while (editor.isBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void screen(Report &report, const Peer &peer, const QTemporaryDir &dir)
{
    QString file = Pages::nearest(2 * megabyte);
    if (file.isEmpty()) {
        file = dir.filePath(u"two.html"_s);
        write(file, Pages::generated(2 * megabyte));
    }
    report.note(u"on screen: "_s + file);
    QList<double> ours;
    QList<double> theirs;
    for (int i = 0; i < 3; ++i) {
        txtHTML editor;
        editor.resize(900, 700);
        editor.show();
        QCoreApplication::processEvents();
        ours.append(milliseconds([&] {
            editor.OpenFile(file);
            untilIdle(editor);
            editor.rtf1().viewport()->repaint();
        }));
        theirs.append(peer.time(file, dir.filePath(u"out.rtf"_s)));
    }
    report.atMost(u"2 MB to coloured text on screen: %1 ms against %2 ms, ratio"_s
                      .arg(median(ours), 0, 'f', 0)
                      .arg(median(theirs), 0, 'f', 0),
                  median(ours) / median(theirs), 1, u"times"_s);
}

void keystrokesIn(Report &report, const QString &name, const QString &text, bool wrapped)
{
    txtHTML editor;
    editor.resize(900, 700);
    editor.show();
    editor.rtf1().setWrapping(wrapped);
    editor.setText(text);
    editor.finish();
    for (const bool atEnd : {false, true}) {
        const int length = editor.rtf1().TextLength();
        editor.setSelStart(atEnd ? length : length / 2);
        QCoreApplication::processEvents();
        QList<double> times;
        const QString typed = u"<p class=\"x\">text</p>"_s;
        for (const QChar c : typed.repeated(5)) {
            times.append(milliseconds([&] {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, {}, QString(c));
                QCoreApplication::sendEvent(&editor.rtf1(), &press);
                editor.rtf1().viewport()->repaint();
            }));
        }
        const QString what = u"keystroke in 5 MB %1, %2, %3"_s.arg(
            name, wrapped ? u"wrapped"_s : u"unwrapped"_s, atEnd ? u"at the end"_s : u"inside"_s);
        report.note(u"%1, median: %2 ms"_s.arg(what).arg(median(times), 0, 'f', 2));
        report.atMost(what + u", worst"_s, *std::max_element(times.begin(), times.end()), 16,
                      u"ms"_s);
    }
}

void keystrokes(Report &report)
{
    const QString page = QString::fromUtf8(Pages::generated(5 * megabyte));
    for (const bool wrapped : {true, false}) {
        keystrokesIn(report, u"of lines"_s, page, wrapped);
        keystrokesIn(report, u"in one line"_s, QString(page).replace(u'\n', u' '), wrapped);
        keystrokesIn(report, u"in one word"_s, Pages::repeated(u"x"_s, 5 * megabyte), wrapped);
    }
}

void colour(const QString &text)
{
    HtmlColourer colourer(text, {0, 1, 2, 3, 4});
    colourer.run(QDeadlineTimer(QDeadlineTimer::Forever));
}

void buildDocument(const QString &text)
{
    HtmlColouring::colouredDocument(text);
}

/// Time per byte at 10 MB against that at 1 MB. Ten small texts and a large one take turns, so
/// that whatever else the machine does falls on both; that there are ten gives neither the help of
/// a text still lying in the processor's cache.
double growth(void (*work)(const QString &), const QString &piece)
{
    constexpr int rounds = 7;
    constexpr int times = 10;
    QStringList small;
    for (int i = 0; i < times; ++i)
        small.append(Pages::repeated(piece, megabyte));
    const QString large = Pages::repeated(piece, times * megabyte);
    QList<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        const double tenSmall = milliseconds([&] {
            for (const QString &text : std::as_const(small))
                work(text);
        });
        ratios.append(milliseconds([&] { work(large); }) / tenSmall);
    }
    return median(ratios);
}

void hostile(Report &report)
{
    const QStringList pieces = {u">"_s,  u"<"_s,  u" a="_s,    u"<!--"_s, u"\""_s,     u"\"'"_s,
                                u"=>"_s, u">="_s, u" a=\"'"_s, u" a"_s,   u"<a x='"_s, u">=<"_s};
    for (const QString &piece : pieces) {
        report.atMost(u"nothing but %1, 10 MB against 1 MB, time per byte"_s.arg(piece),
                      growth(colour, piece), 1.5, u"times"_s);
        report.atMost(u"document of nothing but %1, the same"_s.arg(piece),
                      growth(buildDocument, piece), 1.5, u"times"_s);
    }
    const QString quote = u" a=\""_s + QString(10 * megabyte, u'x');
    report.note(u"10 MB after one open quote: %1 ms"_s.arg(milliseconds([&] { colour(quote); })));
}

}

int main(int argc, char **argv)
{
#ifdef __GLIBC__
    // Memory of every size comes fresh from the system, or small texts would be flattered.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
    QApplication application(argc, argv);
    Report report;
    const QTemporaryDir dir;
    const Peer peer;
    if (peer.isThere()) {
        documents(report, peer, dir);
        screen(report, peer, dir);
    } else {
        report.note(u"The program \"highlight\" is missing: nothing is compared with it. "
                    "On Debian, \"apt-get install highlight\" brings it."_s);
    }
    keystrokes(report);
    Holds::measure(report);
    hostile(report);
    return report.failed() || !peer.isThere() ? 1 : 0;
}
