#include "IniStore.h"
#include "IniText.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// Many keys at once do exactly what one after the other does.
class tst_IniTextKeys : public QObject {
    Q_OBJECT

private slots:
    void sameAsOneByOne_data();
    void sameAsOneByOne();
    void singleStepsOnly();
    void valuesOfAFile();
    void sectionsOfAFile();
    void oddSections();
};

void tst_IniTextKeys::sameAsOneByOne_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << ""_ba;
    QTest::newRow("mark only") << "\xef\xbb\xbf"_ba;
    QTest::newRow("other section, no last line end") << "[Other]\r\nItem0=x"_ba;
    QTest::newRow("empty section") << "[List]\n\n[Other]\nItem1=x\n"_ba;
    QTest::newRow("all there") << "[list]\r\nitem0=a\r\nITEM1 = b \r\nItem2=\r\nItem3=d\r\n"_ba;
    QTest::newRow("some there") << "[List]\nItem2=c\n;Item1=no\nother=1\n\n[Last]\nItem0=x\n"_ba;
    QTest::newRow("twice") << "[List]\nItem1=a\nItem1=b\n[List]\nItem0=c\n"_ba;
    QTest::newRow("no last line end") << "[List]\nItem1=a\nItem2="_ba;
    QTest::newRow("no key, no last line end") << "[List]"_ba;
    QTest::newRow("with text") << "[List]\nItem1=\xc3\xa4\n\xc3\xb6=1\n"_ba;
}

void tst_IniTextKeys::sameAsOneByOne()
{
    QFETCH(QByteArray, file);
    const QStringList keys{u"Item3"_s, u"Item2"_s, u"Item1"_s, u"Item0"_s};
    const QStringList values{u"three"_s, u" \u00e4 "_s, u""_s, u"a\r\nb"_s};
    QByteArray expected = file;
    for (qsizetype i = 0; i < keys.size(); ++i)
        expected = IniText::put(expected, {u"List"_s, keys.at(i)}, values.at(i));
    const auto atOnce = IniText::putKeys(file, u"List"_s, keys, values);
    QVERIFY(atOnce);
    QCOMPARE(*atOnce, expected);

    const QList<IniText::Place> places = IniText::findKeys(file, u"List"_s, keys);
    for (qsizetype i = 0; i < keys.size(); ++i) {
        QCOMPARE(IniText::valueAt(file, places.at(i), 999),
                 IniText::value(file, {u"List"_s, keys.at(i)}, 999));
    }
}

void tst_IniTextKeys::singleStepsOnly()
{
    const QStringList values{u"1"_s, u"2"_s};
    QVERIFY(!IniText::putKeys({}, u"List"_s, {u"a"_s, u"A"_s}, values));
    QVERIFY(!IniText::putKeys({}, u"List"_s, {u"a"_s, u"\u00e4"_s}, values));
    QVERIFY(!IniText::putKeys("[List]\na=\xe4\n"_ba, u"List"_s, {u"a"_s, u"b"_s}, values));
}

void tst_IniTextKeys::valuesOfAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"list.ini"_s);
    QCOMPARE(readIniValues(u"List"_s, {u"a"_s}, path), QStringList{QString()});
    QVERIFY(writeIniEntries({{u"List"_s, u"a"_s, QString(1200, u'x')}, {u"List"_s, u"b"_s, u"2"_s}},
                            path));
    QCOMPARE(readIniValues(u"list"_s, {u"B"_s, u"c"_s, u"A"_s}, path),
             (QStringList{u"2"_s, QString(), QString(999, u'x')}));
}

void tst_IniTextKeys::sectionsOfAFile()
{
    const QByteArray file = "\xef\xbb\xbf; top\r\nlost=1\r\n [ One ] rest\r\na = 1 \r\nA=2\r\n"
                            ";a=3\r\n\r\n; of two\r\n[Two]\r\nnone\r\n[one]\nb=\n=x"_ba;
    const QList<IniText::Section> sections = IniText::sections(file);
    QCOMPARE(sections.size(), 3);
    QCOMPARE(sections.at(0).name, "One"_ba);
    QCOMPARE(sections.at(0).value("A"), "1"_ba);
    QVERIFY(sections.at(0).value("b").isNull());
    QCOMPARE(sections.at(0).begin, file.indexOf(" [ One"));
    QCOMPARE(sections.at(0).keysEnd, file.indexOf(";a=3"));
    QCOMPARE(sections.at(0).end, file.indexOf("[Two]"));
    QCOMPARE(sections.at(1).name, "Two"_ba);
    QVERIFY(sections.at(1).keys.isEmpty());
    QCOMPARE(sections.at(1).keysEnd, file.indexOf("none"));
    QCOMPARE(sections.at(2).name, "one"_ba);
    QVERIFY(!sections.at(2).value("b").isNull());
    QVERIFY(sections.at(2).value("b").isEmpty());
    QCOMPARE(sections.at(2).end, file.size());
    // As single look-ups have it.
    QCOMPARE(IniText::value(file, {u"One"_s, u"a"_s}, 999), u"1"_s);
}

void tst_IniTextKeys::oddSections()
{
    QVERIFY(IniText::sections({}).isEmpty());
    QVERIFY(IniText::sections("a=1\r\n").isEmpty());
    const QList<IniText::Section> sections = IniText::sections("[\n[]\n[a");
    QCOMPARE(sections.size(), 3);
    QVERIFY(sections.at(0).name.isEmpty());
    QVERIFY(sections.at(1).name.isEmpty());
    QCOMPARE(sections.at(2).name, "a"_ba);
}

QTEST_APPLESS_MAIN(tst_IniTextKeys)
#include "tst_initextkeys.moc"
