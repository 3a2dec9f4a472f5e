#include "Growth.h"

#include "HtmlColourer.h"
#include "Pages.h"
#include "Report.h"
#include "Taken.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;
constexpr double mostGrowth = 1.5;

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
double growth(void (*work)(const QString &), const QString &opening, const QString &piece)
{
    constexpr int rounds = 7;
    constexpr int times = 10;
    QStringList small;
    for (int i = 0; i < times; ++i)
        small.append(opening + Pages::repeated(piece, megabyte));
    const QString large = opening + Pages::repeated(piece, times * megabyte);
    QList<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        const Taken tenSmall = takenBy([&] {
            for (const QString &text : std::as_const(small))
                work(text);
        });
        ratios.append(takenBy([&] { work(large); }).processor / tenSmall.processor);
    }
    return median(ratios);
}

void measureOne(Report &report, const QString &name, const QString &opening, const QString &piece)
{
    report.atMost(u"colours of %1, 10 MB against 1 MB, time per byte"_s.arg(name),
                  growth(colour, opening, piece), mostGrowth, u"times"_s);
    report.atMost(u"document of %1, 10 MB against 1 MB, time per byte"_s.arg(name),
                  growth(buildDocument, opening, piece), mostGrowth, u"times"_s);
}

}

namespace Growth {

void measure(Report &report)
{
    const QStringList pieces = {u">"_s,  u"<"_s,  u" a="_s,    u"<!--"_s, u"\""_s,     u"\"'"_s,
                                u"=>"_s, u">="_s, u" a=\"'"_s, u" a"_s,   u"<a x='"_s, u">=<"_s,
                                u"\n"_s, u"-"_s,  u"<!-->"_s,  u" a=1"_s, u"="_s,      u"\r\n"_s};
    for (const QString &piece : pieces) {
        QString name = piece;
        name.replace(u'\r', "\\r"_L1).replace(u'\n', "\\n"_L1);
        measureOne(report, u"nothing but "_s + name, {}, piece);
    }
    measureOne(report, u"one open quote"_s, u" a=\""_s, u"x"_s);
    measureOne(report, u"one open quote before others"_s, u" a=\""_s, u" a='"_s);
    measureOne(report, u"one open comment"_s, u"<!--"_s, u"--"_s);
    measureOne(report, u"one open tag"_s, u"<a "_s, u" b='x'"_s);
}

}
