// What the address bar costs with a list of a hundred thousand addresses.

#include "AddressBox.h"
#include "Report.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
constexpr int addresses = 100'000;
constexpr int savedItems = 1000;

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

QString address(int i)
{
    return u"http://www.host%1.example/folder/%2/page.html"_s.arg(i % 1000).arg(i);
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
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"list.ini"_s);
    AddressBox bar;
    bar.resize(800, bar.sizeHint().height());
    bar.show();
    QApplication::processEvents();
    auto *combo = bar.findChild<QComboBox *>();

    for (int i = 0; i < addresses; ++i)
        bar.addItem(address(i), false);
    Report report;
    bool good = true;
    report.atMost(
        u"AddItem, new"_s,
        usualMs(1000, [&](int i) { bar.addItem(u"http://new%1.example/"_s.arg(i), false); }), 1,
        u"ms"_s);
    report.atMost(u"AddItem, moved from the bottom"_s,
                  usualMs(1000, [&](int i) { bar.addItem(address(i), false); }), 1, u"ms"_s);
    const QString typed = u"www.host500.example/folder/77500/page.html"_s;
    combo->setFocus();
    typeKey(*combo, u'w');
    bar.setText({});
    report.atMost(u"keystroke with completion"_s,
                  usualMs(int(typed.size()), [&](int i) { typeKey(*combo, typed.at(i)); }), 5,
                  u"ms"_s);
    if (bar.text() != u"http://"_s + typed) {
        QTextStream(stderr) << "addressbar: typing went wrong: " << bar.text() << '\n';
        return 1;
    }
    report.atMost(u"saving 1000 items"_s,
                  usualMs(11,
                          [&](int i) {
                              bar.addItem(address(i), false);
                              good &= bool(bar.saveListTo(u"RecentSearches"_s, file, savedItems));
                          }),
                  20, u"ms"_s);
    report.atMost(u"loading 1000 items"_s,
                  usualMs(11,
                          [&](int) {
                              bar.clearList();
                              bar.loadList(u"RecentSearches"_s, file, savedItems, false);
                          }),
                  20, u"ms"_s);
    good &= bar.listCount() == savedItems;
    return good && !report.failed() ? 0 : 1;
}
