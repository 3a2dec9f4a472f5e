#include <QTest>

#include "FileName.h"

using namespace Qt::StringLiterals;

/// Names that titles, servers and addresses give, as names of files.
class tst_filename : public QObject {
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void fitNames_data();
    void fitNames();
    void hiddenCharactersGo();
    void longNamesKeepTheirEnding_data();
    void longNamesKeepTheirEnding();
    void numbers_data();
    void numbers();
    void firstThatIsFree();
};

void tst_filename::names_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("ending");
    QTest::addColumn<QString>("name");
    const QString html = u".html"_s;
    QTest::newRow("plain") << u"News"_s << html << u"News.html"_s;
    QTest::newRow("dot in a title") << u"News - v1.5 out"_s << html << u"News - v1.5 out.html"_s;
    QTest::newRow("title that ends in a number") << u"Qt 6.4"_s << html << u"Qt 6.4.html"_s;
    QTest::newRow("title with the ending") << u"index.html"_s << html << u"index.html"_s;
    QTest::newRow("title with the ending in capitals")
        << u"INDEX.HTML"_s << html << u"INDEX.html"_s;
    QTest::newRow("title with another ending") << u"notes.txt"_s << html << u"notes.txt.html"_s;
    QTest::newRow("printed") << u"AC/DC: v1"_s << u".pdf"_s << u"AC DC v1.pdf"_s;
    QTest::newRow("taken by no file system")
        << u"a\\b*c?d\"e<f>g|h"_s << html << u"a b c d e f g h.html"_s;
    QTest::newRow("dots at the end") << u"And so on..."_s << html << u"And so on.html"_s;
    QTest::newRow("hidden") << u".bashrc"_s << html << u"bashrc.html"_s;
    QTest::newRow("empty") << u""_s << html << u"other.html"_s;
    QTest::newRow("blanks") << u" \t "_s << html << u"other.html"_s;
    QTest::newRow("nothing but signs") << u"/\\:*?"_s << html << u"other.html"_s;
    QTest::newRow("device") << u"con"_s << html << u"_con.html"_s;
    QTest::newRow("scripts") << u"новости أخبار ニュース"_s << html
                             << u"новости أخبار ニュース.html"_s;
    QTest::newRow("family") << u"👨‍👩‍👧"_s << html << u"👨‍👩‍👧.html"_s;

    QTest::newRow("own ending") << u"data.tar.gz"_s << u""_s << u"data.tar.gz"_s;
    QTest::newRow("own ending in capitals") << u"PHOTO.JPG"_s << u""_s << u"PHOTO.JPG"_s;
    QTest::newRow("no ending") << u"Makefile"_s << u""_s << u"Makefile"_s;
    QTest::newRow("folder above") << u".."_s << u""_s << u"other"_s;
    QTest::newRow("out of the folder") << u"../../.ssh/id"_s << u""_s << u"ssh id"_s;
    QTest::newRow("absolute") << u"/etc/passwd"_s << u""_s << u"etc passwd"_s;
    QTest::newRow("drive") << u"C:\\a.exe"_s << u""_s << u"C a.exe"_s;
    QTest::newRow("line feed") << u"a\nb.txt"_s << u""_s << u"a b.txt"_s;
    QTest::newRow("bell") << u"a\ab.txt"_s << u""_s << u"ab.txt"_s;
    QTest::newRow("NUL") << u"a"_s + QChar(0) + u"b.txt"_s << u""_s << u"ab.txt"_s;
    QTest::newRow("ending behind fillers")
        << u"a.pdf\u3164\u3164\u3164.sh"_s << u""_s << u"a.pdf.sh"_s;
    QTest::newRow("ending behind empty cells")
        << u"a\u2800\u2800\uffa0b.exe"_s << u""_s << u"a b.exe"_s;
    QTest::newRow("only fillers") << u"\u3164\u3164"_s << u".txt"_s << u"other.txt"_s;
    QTest::newRow("turned round") << u"photo\u202egpj.exe"_s << u""_s << u"photogpj.exe"_s;
    QTest::newRow("blank before the ending") << u"page .html"_s << u""_s << u"page.html"_s;
    QTest::newRow("dot at the end") << u"run.exe."_s << u""_s << u"run.exe"_s;
    QTest::newRow("device with an ending") << u"aux.txt"_s << u""_s << u"_aux.txt"_s;
    QTest::newRow("no device") << u"console.txt"_s << u""_s << u"console.txt"_s;
    QTest::newRow("half of a pair")
        << u"a"_s + QChar(0xd83d) + u".txt"_s << u""_s << u"a\ufffd.txt"_s;
}

void tst_filename::names()
{
    QFETCH(QString, text);
    QFETCH(QString, ending);
    QTEST(FileName::from(text, ending, u"other"_s), "name");
}

void tst_filename::hiddenCharactersGo()
{
    QString text = u"a"_s;
    for (const auto &[first, last] : {std::pair(0x01, 0x08),
                                      {0x0e, 0x1f},
                                      {0x7f, 0x84},
                                      {0x86, 0x9f},
                                      {0xad, 0xad},
                                      {0x61c, 0x61c},
                                      {0x200b, 0x200b},
                                      {0x200e, 0x200f},
                                      {0x202a, 0x202e},
                                      {0x2060, 0x2064},
                                      {0x2066, 0x206f},
                                      {0xfeff, 0xfeff},
                                      {0xfff9, 0xfffb},
                                      {0xfffe, 0xffff}}) {
        for (int character = first; character <= last; ++character)
            text += QChar(character);
    }
    QCOMPARE(FileName::from(text + u"b"_s, u".html"_s, u"other"_s), u"ab.html"_s);
    QCOMPARE(FileName::from(text.mid(1), {}, u"other"_s), u"other"_s);
}

void tst_filename::fitNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFit");
    QTest::newRow("plain") << u"a b (1).tar.gz"_s << true;
    QTest::newRow("other scripts") << u"\u65e5\u672c.html"_s << true;
    QTest::newRow("longest") << QString(255, u'x') << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("too long") << QString(128, u'\u00e4') << false;
    for (const QString &name : {u"a/b"_s, u".."_s, u".hidden"_s, u"a."_s, u" a"_s, u"a\tb"_s,
                                u"a\u202eb"_s, u"con.txt"_s, u"a:b"_s})
        QTest::newRow(qPrintable(name)) << name << false;
}

void tst_filename::fitNames()
{
    QFETCH(QString, name);
    QFETCH(bool, isFit);
    QCOMPARE(FileName::isFit(name), isFit);
    QVERIFY(FileName::isFit(FileName::from(name, {}, u"other"_s)));
}

void tst_filename::longNamesKeepTheirEnding_data()
{
    QTest::addColumn<QString>("letter");
    QTest::newRow("one byte") << u"x"_s;
    QTest::newRow("two bytes") << u"ж"_s;
    QTest::newRow("three bytes") << u"ニ"_s;
    QTest::newRow("four bytes") << u"😀"_s;
    QTest::newRow("with an accent of its own") << u"e\u0301"_s;
    QTest::newRow("several in one picture") << u"👨‍👩‍👧"_s;
    QTest::newRow("flag") << u"🇦🇹"_s;
}

void tst_filename::longNamesKeepTheirEnding()
{
    QFETCH(QString, letter);
    const qsizetype bytes = letter.toUtf8().size();
    for (int shift = 0; shift < 8; ++shift) {
        const QString start(shift, u'a');
        const QString text = start + letter.repeated(404);
        for (const QString &ending : {u".html"_s, u".mhtml"_s, u".pdf"_s}) {
            const QString name = FileName::from(text, ending, u"other"_s);
            QVERIFY(name.endsWith(ending));
            const qsizetype size = name.toUtf8().size();
            QVERIFY2(size <= 255 && size > 255 - bytes, qPrintable(QString::number(size)));
            const QString base = name.chopped(ending.size());
            QCOMPARE(base, start + letter.repeated((base.size() - shift) / letter.size()));
        }
        const QString own = FileName::from(text + u".tar.gz"_s, {}, u"other"_s);
        QVERIFY(own.endsWith(u".tar.gz"_s));
        QVERIFY(own.toUtf8().size() <= 255);
        QVERIFY(FileName::numbered(own, 123).endsWith(u" (123).tar.gz"_s));
        QVERIFY(FileName::numbered(own, 123).toUtf8().size() <= 255);
        QCOMPARE(QString::fromUtf8(own.toUtf8()), own);
    }
    QVERIFY(FileName::from(letter.repeated(100'000), {}, u"other"_s, 40).toUtf8().size() <= 40);
}

void tst_filename::numbers_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("numbered");
    QTest::newRow("ending") << u"page.html"_s << u"page (2).html"_s;
    QTest::newRow("two endings") << u"data.tar.gz"_s << u"data (2).tar.gz"_s;
    QTest::newRow("none") << u"Makefile"_s << u"Makefile (2)"_s;
    QTest::newRow("end of a sentence")
        << u"So it goes. And on it goes"_s << u"So it goes. And on it goes (2)"_s;
    QTest::newRow("number") << u"page (1).html"_s << u"page (1) (2).html"_s;
}

void tst_filename::numbers()
{
    QFETCH(QString, name);
    QTEST(FileName::numbered(name, 2), "numbered");
}

void tst_filename::firstThatIsFree()
{
    const QStringList taken{u"a.txt"_s, u"a (1).txt"_s, u"a (3).txt"_s};
    const auto isTaken = [&taken](const QString &name) { return taken.contains(name); };
    QCOMPARE(FileName::firstFree(u"b.txt"_s, 1, isTaken), u"b.txt"_s);
    QCOMPARE(FileName::firstFree(u"a.txt"_s, 1, isTaken), u"a (2).txt"_s);
    QCOMPARE(FileName::firstFree(u"a.txt"_s, 3, isTaken), u"a (4).txt"_s);
}

QTEST_GUILESS_MAIN(tst_filename)
#include "tst_filename.moc"
