#include "TextRows.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// What is wrong with the rows of a text; nothing when all is right.
QString fault(const TextRows &rows, const QString &text)
{
    qsizetype at = 0;
    int line = 0;
    for (int row = 0; row < rows.count(); ++row) {
        const auto wrong = [&](const QString &what) { return u"row %1: %2"_s.arg(row).arg(what); };
        const qsizetype end = rows.end(row);
        if (rows.start(row) != at)
            return wrong(u"begins elsewhere"_s);
        if (end - at > TextRows::longest)
            return wrong(u"too long"_s);
        if (text.mid(at, end - at).contains(u'\n'))
            return wrong(u"line break within"_s);
        if (rows.lineOf(row) != line)
            return wrong(u"another line"_s);
        if (rows.rowAt(at) != row
            || (end < rows.start(row) + 1 ? false : rows.rowAt(end - 1) != row))
            return wrong(u"not found by position"_s);
        if (!rows.continues(row) && rows.firstRowOf(line) != row)
            return wrong(u"not found by line"_s);
        const bool last = row + 1 == rows.count();
        if (last)
            return end != text.size()          ? wrong(u"ends early"_s)
                : rows.lineCount() != line + 1 ? wrong(u"count of lines"_s)
                                               : QString();
        const bool goesOn = rows.continues(row + 1);
        if (!goesOn && text.at(end) != u'\n')
            return wrong(u"no line break at its end"_s);
        if (goesOn
            && (text.at(end) == u'\n' || text.at(end).isLowSurrogate() || text.at(end).isMark()))
            return wrong(u"parted badly"_s);
        if (goesOn && end - at < TextRows::longest / 5)
            return wrong(u"parted too early"_s);
        at = end + (goesOn ? 0 : 1);
        line += goesOn ? 0 : 1;
    }
    return u"no rows"_s;
}

}

class tst_textrows : public QObject {
    Q_OBJECT

private slots:
    void linesAreRows();
    void longLinesGoOn_data();
    void longLinesGoOn();
    void rowsFollowRandomEdits_data();
    void rowsFollowRandomEdits();
    void editsMoveNoMoreThanTheyMust();
};

void tst_textrows::linesAreRows()
{
    TextRows rows;
    QCOMPARE(rows.count(), 1);
    QCOMPARE(rows.end(0), 0);
    rows.set(u"ab\n\nc\n");
    QCOMPARE(rows.count(), 4);
    QCOMPARE(rows.start(2), 4);
    QCOMPARE(rows.end(2), 5);
    QCOMPARE(rows.rowAt(2), 0);
    QCOMPARE(rows.rowAt(3), 1);
    QCOMPARE(rows.rowAt(6), 3);
    QCOMPARE(rows.firstRowOf(2), 2);
    QCOMPARE(rows.firstRowOf(99), 3);
    QVERIFY(!rows.continues(1));
}

void tst_textrows::longLinesGoOn_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("rows");
    constexpr qsizetype most = TextRows::longest;
    QTest::newRow("just fits") << QString(most, u'x') << 1;
    QTest::newRow("just fits, and a line") << QString(most, u'x') + u"\ny"_s << 2;
    QTest::newRow("one more") << QString(most + 1, u'x') << 2;
    QTest::newRow("blanks") << u"abc "_s.repeated(most) << 5;
    QTest::newRow("tags") << u"<b>"_s.repeated(most) << 4;
    QTest::newRow("pairs") << u"x"_s + u"😀"_s.repeated(most) << 3;
    QTest::newRow("marks") << QString(u'e') + QString(3 * most, QChar(0x301)) << 4;
    QTest::newRow("joined") << u"👩\u200d"_s.repeated(most) << 4;
    QTest::newRow("low halves") << QString(2 * most, QChar(0xdc00)) << 3;
}

void tst_textrows::longLinesGoOn()
{
    QFETCH(QString, text);
    QFETCH(int, rows);
    TextRows found;
    found.set(text);
    QCOMPARE(found.count(), rows);
    QCOMPARE(found.lineCount(), text.count(u'\n') + 1);
    for (int row = 0; row < found.count(); ++row)
        QVERIFY(found.end(row) - found.start(row) <= TextRows::longest);
}

void tst_textrows::rowsFollowRandomEdits_data()
{
    QTest::addColumn<QString>("letters");
    QTest::addColumn<int>("edits");
    QTest::newRow("one line") << u"x"_s << 2000;
    QTest::newRow("blanks and tags") << u"abc <>"_s << 2000;
    QTest::newRow("rare line breaks") << u"x"_s.repeated(3000) + u'\n' << 2000;
    // Each of very many rows is looked at after each edit.
    QTest::newRow("line breaks") << u"x\n"_s << 200;
    QTest::newRow("pairs and marks") << u"😀e\u0301 >\n"_s + u"x"_s.repeated(2000) << 2000;
}

void tst_textrows::rowsFollowRandomEdits()
{
    QFETCH(QString, letters);
    QFETCH(int, edits);
    QRandomGenerator random(17);
    const auto some = [&](int most) {
        QString text;
        for (int n = random.bounded(most + 1); n > 0; --n) {
            const QChar c = letters.at(random.bounded(int(letters.size())));
            // Halves of pairs stay together: what stands beside an edit is another matter.
            text += c.isSurrogate() ? u"😀"_s : c.isMark() ? u"e\u0301"_s : QString(c);
        }
        return text;
    };
    QString text = some(20'000);
    TextRows rows;
    rows.set(text);
    QCOMPARE(fault(rows, text), QString());
    for (int i = 0; i < edits; ++i) {
        const auto place = [&] {
            // Near a row's ends is where most can go wrong.
            const int row = random.bounded(rows.count());
            qsizetype at = random.bounded(3) == 0 ? random.bounded(int(text.size()) + 1)
                : random.bounded(2) == 0          ? rows.start(row)
                                                  : rows.end(row);
            while (at < text.size() && (text.at(at).isLowSurrogate() || text.at(at).isMark()))
                ++at;
            return at;
        };
        const qsizetype one = place();
        const qsizetype other = random.bounded(2) == 0 ? one : place();
        const qsizetype at = qMin(one, other);
        const qsizetype removed =
            text.size() > 40'000 || random.bounded(3) == 0 ? qAbs(one - other) : 0;
        const QString inserted = some(random.bounded(8) == 0 ? 6000 : 4);
        text.replace(at, removed, inserted);
        const int before = rows.count();
        const TextRows::Change change = rows.replaced(text, at, removed, inserted.size());
        QCOMPARE(fault(rows, text), QString());
        QCOMPARE(rows.count(), before + change.after - change.before);
    }
}

void tst_textrows::editsMoveNoMoreThanTheyMust()
{
    QString text(1'000'000, u'x');
    TextRows rows;
    rows.set(text);
    const int count = rows.count();
    for (const qsizetype at :
         {qsizetype(0), rows.start(3), rows.start(3) + 1, qsizetype(500'000)}) {
        text.insert(at, u'y');
        const TextRows::Change change = rows.replaced(text, at, 0, 1);
        QVERIFY2(change.before <= 3 && change.after <= 3, qPrintable(QString::number(at)));
        QCOMPARE(fault(rows, text), QString());
    }
    QVERIFY(rows.count() <= count + 2);
}

QTEST_GUILESS_MAIN(tst_textrows)
#include "tst_textrows.moc"
