#include "TextRules.h"

#include <QTest>

using namespace Qt::StringLiterals;

using Boolean = std::optional<bool>;
using Number = std::optional<double>;

class tst_textrules : public QObject {
    Q_OBJECT

private slots:
    void booleans_data();
    void booleans();
    void numbers_data();
    void numbers();
    void booleanTexts();
    void properCases_data();
    void properCases();
    void tabCaptions_data();
    void tabCaptions();
    void blanks();
    void firstOnes();
};

void tst_textrules::booleans_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Boolean>("value");
    const auto row = [](const QString &text, Boolean value) {
        QTest::addRow("'%s'", qPrintable(text)) << text << value;
    };
    row(u"True"_s, true);
    row(u"TRUE"_s, true);
    row(u"false"_s, false);
    row(u" False "_s, false);
    row(u"0"_s, false);
    row(u"1"_s, true);
    row(u"-1"_s, true);
    row(u"0.0"_s, false);
    row(u"0.5"_s, true);
    row(u"-0"_s, false);
    row(u""_s, {});
    row(u" "_s, {});
    row(u"yes"_s, {});
    row(u"Truely"_s, {});
    row(u"nan"_s, {});
}

void tst_textrules::booleans()
{
    QFETCH(const QString, text);
    QFETCH(const Boolean, value);
    QCOMPARE(textToBoolean(text), value);
}

void tst_textrules::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Number>("value");
    const auto row = [](const QString &text, Number value) {
        QTest::addRow("'%s'", qPrintable(text)) << text << value;
    };
    row(u"0"_s, 0.0);
    row(u"12"_s, 12.0);
    row(u"  12  "_s, 12.0);
    row(u"+12"_s, 12.0);
    row(u"-12.25"_s, -12.25);
    row(u".5"_s, 0.5);
    row(u"5."_s, 5.0);
    row(u"1e3"_s, 1000.0);
    row(u"1E+3"_s, 1000.0);
    row(u"15e-1"_s, 1.5);
    row(u"007"_s, 7.0);
    for (const QString &text :
         {u""_s,         u" "_s,    u"+"_s,     u"."_s,   u"-."_s,     u"e3"_s,
          u"1e"_s,       u"1e+"_s,  u"1e999"_s, u"nan"_s, u"inf"_s,    u"-inf"_s,
          u"infinity"_s, u"0x10"_s, u"&H10"_s,  u"1,5"_s, u"1,000"_s,  u"1 2"_s,
          u"1x"_s,       u"--1"_s,  u"1.2.3"_s, u"\t1"_s, u"\u0661"_s, u"\uff11"_s})
        row(text, {});
}

void tst_textrules::numbers()
{
    QFETCH(const QString, text);
    QFETCH(const Number, value);
    QCOMPARE(textToNumber(text), value);
}

void tst_textrules::booleanTexts()
{
    QCOMPARE(booleanText(true), u"True"_s);
    QCOMPARE(booleanText(false), u"False"_s);
}

void tst_textrules::properCases_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("proper");
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("words") << u"the qUICK FOX"_s << u"The Quick Fox"_s;
    QTest::newRow("hyphen") << u"mary-jane"_s << u"Mary-jane"_s;
    QTest::newRow("apostrophe, quote, digit") << u"o'NEIL \"abc 1ST"_s << u"O'neil \"abc 1st"_s;
    QTest::newRow("starts of words") << u"a\tb\nc\vd\fe\rf g"_s << u"A\tB\nC\vD\fE\rF G"_s;
    QTest::newRow("NUL") << u"a"_s + QChar(0) + u'b' << u"A"_s + QChar(0) + u'B';
    QTest::newRow("no-break space starts none") << u"a\u00a0b"_s << u"A\u00a0b"_s;
    QTest::newRow("runs of blanks") << u"  a   b "_s << u"  A   B "_s;
    QTest::newRow("other scripts") << u"\u00e9COLE \u0431\u0411"_s << u"\u00c9cole \u0411\u0431"_s;
    QTest::newRow("pairs") << u"\U00010428\U00010400 \U0001F600x"_s
                           << u"\U00010400\U00010428 \U0001F600x"_s;
    QTest::newRow("half a pair") << u"a"_s + QChar(0xd83d) << u"A"_s + QChar(0xd83d);
    QTest::newRow("sharp s stays one") << u"\u00df"_s << u"\u00df"_s;
}

void tst_textrules::properCases()
{
    QFETCH(const QString, text);
    QFETCH(const QString, proper);
    QCOMPARE(properCase(text), proper);
}

void tst_textrules::tabCaptions_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("caption");
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("blanks") << u"    "_s << u""_s;
    QTest::newRow("short") << u" page "_s << u"Page"_s;
    QTest::newRow("exactly 10") << u"abcdefghij"_s << u"Abcdefghij"_s;
    QTest::newRow("11") << u"abcdefghijk"_s << u"Abcdefghij..."_s;
    QTest::newRow("10 and blanks around") << u"  abcdefghij  "_s << u"Abcdefghij"_s;
    QTest::newRow("blank before the dots") << u"the quick brown fox"_s << u"The Quick ..."_s;
    QTest::newRow("two blanks") << u"a  b"_s << u"A B"_s;
    QTest::newRow("three blanks") << u"a   b"_s << u"A  B"_s;
    QTest::newRow("four blanks") << u"a    b"_s << u"A  B"_s;
    QTest::newRow("blanks made one before the cut") << u"ab  cd  ef  gh"_s << u"Ab Cd Ef G..."_s;
    QTest::newRow("10 after blanks were made one") << u"abcd  efghi"_s << u"Abcd Efghi"_s;
    QTest::newRow("mostly blanks") << u"a"_s + QString(20, u' ') + u'b' << u"A         ..."_s;
    QTest::newRow("10 characters in pairs")
        << u"\U0001F600"_s.repeated(10) << u"\U0001F600"_s.repeated(10);
    QTest::newRow("11 characters in pairs")
        << u"\U0001F600"_s.repeated(11) << u"\U0001F600"_s.repeated(10) + u"..."_s;
    QTest::newRow("a pair at the cut") << u"abcdefghi\U0001F600x"_s << u"Abcdefghi\U0001F600..."_s;
    QTest::newRow("a megabyte") << u"aB"_s.repeated(500'000) << u"Ababababab..."_s;
    QTest::newRow("a tab is no blank") << u"\ta"_s << u"\tA"_s;
}

void tst_textrules::tabCaptions()
{
    QFETCH(const QString, title);
    QFETCH(const QString, caption);
    QCOMPARE(tabCaption(title), caption);
}

void tst_textrules::blanks()
{
    QCOMPARE(trimBlanks(u"  a b  "_s), u"a b"_s);
    QCOMPARE(trimBlanks(u"\t a\n"_s), u"\t a\n"_s);
    QCOMPARE(trimBlanks(u"\u00a0 "_s), u"\u00a0"_s);
    QCOMPARE(trimBlanks(u"   "_s), QString());
    QCOMPARE(trimBlanks(QString()), QString());
}

void tst_textrules::firstOnes()
{
    QCOMPARE(firstCharacters(u"abc"_s, 2), u"ab"_s);
    QCOMPARE(firstCharacters(u"abc"_s, 3), u"abc"_s);
    QCOMPARE(firstCharacters(u"abc"_s, 0), QString());
    QCOMPARE(firstCharacters(u"a\U0001F600b"_s, 2), u"a\U0001F600"_s);
    QCOMPARE(firstCharacters(u"a\U0001F600b"_s, 3), u"a\U0001F600b"_s);
}

QTEST_GUILESS_MAIN(tst_textrules)
#include "tst_textrules.moc"
