#include "RangeAnswer.h"

#include <QTest>

using Kind = RangeVerdict::Kind;
using Problem = Download::Problem;

/// What is made of each answer to a request for bytes 100 to the end of 1000.
class tst_rangeanswer : public QObject {
    Q_OBJECT

private slots:
    void verdicts_data();
    void verdicts();
    void conditions_data();
    void conditions();
    void unknownSize();
};

namespace {
const QByteArray one = "\"one\"";
const QByteArray monday = "Mon, 01 Jan 2024 00:00:00 GMT";
const QByteArray tuesday = "Tue, 02 Jan 2024 00:00:00 GMT";
const QByteArray rest = "bytes 100-999/1000";
}

void tst_rangeanswer::verdicts_data()
{
    QTest::addColumn<RangeAnswer>("answer");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<Problem>("problem");
    const auto row = [](const char *title, const RangeAnswer &answer, Kind kind,
                        Problem problem = Problem::None) {
        QTest::newRow(title) << answer << kind << problem;
    };
    row("the rest", {206, rest, {}, 900, one, monday, {}}, Kind::Append);
    row("the rest, no date", {206, rest, {}, 900, one, {}, {}}, Kind::Append);
    row("the rest, length not said", {206, rest, {}, -1, one, monday, {}}, Kind::Append);
    row("the rest, whole not said", {206, "bytes 100-999/*", {}, 900, one, {}, {}}, Kind::Append);
    row("plain coding", {206, rest, "identity", 900, one, {}, {}}, Kind::Append);
    row("odd spelling", {206, " Bytes  100-999/1000 ", {}, 900, one, {}, {}}, Kind::Append);
    for (const char *range :
         {"bytes 101-999/1000", "bytes 0-899/1000", "bytes 100-998/1000", "bytes 100-1000/1000",
          "bytes 100-99/1000", "bytes */1000", "bytes -100-999/1000", "bytes 0x64-999/1000",
          "100-999/1000", "bytes", "", "bytes 100-99999999999999999999/1000", "lines 100-999/1000"})
        row(range, {206, range, {}, -1, one, {}, {}}, Kind::AskAnew, Problem::NoRanges);
    row("other length", {206, rest, {}, 901, one, {}, {}}, Kind::AskAnew, Problem::NoRanges);
    row("other whole", {206, "bytes 100-1000/1001", {}, 901, one, {}, {}}, Kind::AskAnew,
        Problem::FileChanged);
    row("other name", {206, rest, {}, 900, "\"two\"", monday, {}}, Kind::AskAnew,
        Problem::FileChanged);
    row("weak name", {206, rest, {}, 900, "W/\"one\"", monday, {}}, Kind::AskAnew,
        Problem::FileChanged);
    row("no name", {206, rest, {}, 900, {}, monday, {}}, Kind::AskAnew, Problem::FileChanged);
    row("other date", {206, rest, {}, 900, one, tuesday, {}}, Kind::AskAnew, Problem::FileChanged);
    row("coded", {206, rest, "gzip", 900, one, monday, {}}, Kind::AskAnew, Problem::FileChanged);
    row("whole, the same", {200, {}, {}, 1000, one, monday, {}}, Kind::Anew, Problem::NoRanges);
    row("whole, nameless", {200, {}, {}, -1, {}, {}, {}}, Kind::Anew, Problem::NoRanges);
    row("whole, another", {200, {}, {}, 1000, "\"two\"", {}, {}}, Kind::Anew, Problem::FileChanged);
    row("whole, other date", {200, {}, {}, 1000, one, tuesday, {}}, Kind::Anew,
        Problem::FileChanged);
    row("whole, other length", {200, {}, {}, 1001, one, monday, {}}, Kind::Anew,
        Problem::FileChanged);
    row("whole, coded", {200, {}, "gzip", 500, one, monday, {}}, Kind::Page, Problem::NoRanges);
    row("nothing is missing", {416, "bytes */100", {}, 0, {}, {}, {}}, Kind::AskAnew,
        Problem::FileChanged);
    row("beyond the end", {416, "bytes */50", {}, 0, {}, {}, {}}, Kind::AskAnew,
        Problem::FileChanged);
    row("beyond, not said", {416, {}, {}, 0, {}, {}, {}}, Kind::AskAnew, Problem::FileChanged);
    for (const int status : {401, 403, 407, 400, 204, 304})
        row(qPrintable(QString::number(status)), {status, {}, {}, 0, {}, {}, {}}, Kind::Page);
    for (const int status : {404, 410, 429, 500, 503, 599})
        row(qPrintable(QString::number(status)), {status, {}, {}, 0, {}, {}, {}}, Kind::Refused);
}

void tst_rangeanswer::verdicts()
{
    QFETCH(RangeAnswer, answer);
    QFETCH(Kind, kind);
    QFETCH(Problem, problem);
    const RangeVerdict verdict = judge({100, 1000, one, monday}, answer);
    QCOMPARE(verdict.kind, kind);
    QCOMPARE(verdict.problem, problem);
    if (kind == Kind::Append)
        QCOMPARE(verdict.size, 1000);
    if (kind == Kind::Anew)
        QCOMPARE(verdict.size, answer.contentLength);
}

void tst_rangeanswer::conditions_data()
{
    QTest::addColumn<QByteArray>("etag");
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<QByteArray>("condition");
    QTest::newRow("strong") << one << monday << one;
    QTest::newRow("date only") << QByteArray() << monday << monday;
    QTest::newRow("weak") << QByteArray("W/\"one\"") << monday << monday;
    QTest::newRow("no quotes") << QByteArray("one") << QByteArray() << QByteArray();
    QTest::newRow("one quote") << QByteArray("\"") << QByteArray() << QByteArray();
    QTest::newRow("none") << QByteArray() << QByteArray() << QByteArray();
}

void tst_rangeanswer::conditions()
{
    QFETCH(QByteArray, etag);
    QFETCH(QByteArray, date);
    QTEST(RangeAsked({100, 1000, etag, date}).condition(), "condition");
}

void tst_rangeanswer::unknownSize()
{
    const RangeAsked asked{100, -1, one, {}};
    const RangeVerdict all = judge(asked, {416, "bytes */100", {}, 0, {}, {}, {}});
    QCOMPARE(all.kind, Kind::Whole);
    QCOMPARE(all.size, 100);
    QCOMPARE(judge(asked, {416, "bytes */100", {}, 0, "\"two\"", {}, {}}).kind, Kind::AskAnew);
    const RangeVerdict more = judge(asked, {206, rest, {}, -1, one, {}, {}});
    QCOMPARE(more.kind, Kind::Append);
    QCOMPARE(more.size, 1000);
}

QTEST_GUILESS_MAIN(tst_rangeanswer)
#include "tst_rangeanswer.moc"
