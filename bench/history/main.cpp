// What a history of 200,000 pages costs: its first reading, and a key in the address bar.

#include "AddressBox.h"
#include "AddressSuggestions.h"
#include "Report.h"
#include "VisitFile.h"
#include "VisitHistory.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
constexpr int pages = 200'000;
constexpr qint64 day = 24 * 60 * 60;

// What 95 of 100 runs stay within: the rest is the machine's other work.
double usualMs(int times, const std::function<void(int)> &work)
{
    std::vector<double> taken;
    for (int i = 0; i < times; ++i) {
        QElapsedTimer timer;
        timer.start();
        work(i);
        taken.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(taken.begin(), taken.end());
    return taken.at((taken.size() - 1) * 95 / 100);
}

Visit visit(int i)
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    return {now - (pages - i) % 400 * day,
            u"https://www.host%1.example/folder/%2/page.html?item=%3"_s.arg(i % 1000).arg(i).arg(
                i * 7919LL % 100'003),
            u"Page %1 of the site about subject %2"_s.arg(i).arg(i % 317)};
}

bool writeFile(const QString &path)
{
    QByteArray lines;
    for (int i = 0; i < pages; ++i)
        lines += VisitLine::of(visit(i));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(lines) == lines.size();
}

// One key into the field, painted: what the user waits for.
void typeKey(QComboBox &combo, QChar c)
{
    QKeyEvent press(QEvent::KeyPress, c.toUpper().unicode(), {}, QString(c));
    QApplication::sendEvent(&combo, &press);
    QKeyEvent release(QEvent::KeyRelease, c.toUpper().unicode(), {}, QString(c));
    QApplication::sendEvent(&combo, &release);
    QApplication::processEvents();
}

// The longest time for which the event loop stood still until it is so, milliseconds.
double longestPause(const bool &isSo)
{
    double longest = 0;
    while (!isSo) {
        QElapsedTimer timer;
        timer.start();
        QCoreApplication::processEvents();
        longest = std::max(longest, double(timer.nsecsElapsed()) / 1e6);
    }
    return longest;
}

QList<AddressSuggestion> best(const VisitHistory &history, const QString &typed)
{
    QList<AddressSuggestion> found;
    for (const int number : history.index().best(typed, 8)) {
        const VisitIndex::Page &page = history.index().page(number);
        found.append({QString::fromUtf8(page.title), QString::fromUtf8(page.address)});
    }
    return found;
}
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"History.txt"_s);
    Report report;
    if (!writeFile(file)) {
        report.missing(u"a file of 200,000 visits"_s);
        return 1;
    }
    VisitHistory history(file);
    bool isRead = false;
    QObject::connect(&history, &VisitHistory::changed, &history, [&isRead] { isRead = true; });
    QElapsedTimer timer;
    timer.start();
    history.refresh();
    const double pause = longestPause(isRead);
    report.atMost(u"first reading, beside the interface"_s, double(timer.elapsed()), 5000, u"ms"_s);
    report.atMost(u"longest pause of the interface meanwhile"_s, pause, 50, u"ms"_s);

    QWidget window;
    window.resize(900, 600);
    auto *bar = new AddressBox(&window);
    bar->setGeometry(0, 0, 800, bar->sizeHint().height());
    int asked = 0;
    bar->setSuggester([&](const QString &typed) {
        ++asked;
        return best(history, typed);
    });
    window.show();
    window.activateWindow();
    while (!window.isActiveWindow())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    auto *combo = bar->findChild<QComboBox *>();
    combo->setFocus();
    typeKey(*combo, u'w');
    for (const QString &typed :
         {u"www.host500.example/folder/77500"_s, u"subject 316 page 1"_s, u"zzzzqq nothing"_s}) {
        bar->setText({});
        asked = 0;
        report.atMost(u"a key of \"%1\""_s.arg(typed),
                      usualMs(int(typed.size()), [&](int i) { typeKey(*combo, typed.at(i)); }), 10,
                      u"ms"_s);
        if (asked != typed.size())
            report.missing(u"what is proposed for each key"_s);
    }
    report.atMost(u"a visit"_s, usualMs(200, [&](int i) { history.note(visit(i * 1000)); }), 10,
                  u"ms"_s);
    report.atMost(u"search in the window, one letter"_s,
                  usualMs(11, [&](int) { (void)history.index().matches(u"e"_s); }), 100, u"ms"_s);
    return report.failed() ? 1 : 0;
}
