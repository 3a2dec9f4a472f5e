#include "TextEncoding.h"

#include <QTest>

using namespace Qt::StringLiterals;
using TextEncoding::Encoding;

class tst_textencoding : public QObject {
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
    void everyByteRoundTrips();
    void encodes_data();
    void encodes();
    void partsKeepALeadingMark();
};

void tst_textencoding::decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QByteArray() << QString();
    QTest::newRow("plain") << "abc"_ba << u"abc"_s;
    QTest::newRow("UTF-8") << "\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"_ba
                           << u"\u00e9\u20ac\U0001F600"_s;
    QTest::newRow("mark") << "\xef\xbb\xbfx"_ba << u"x"_s;
    QTest::newRow("mark alone") << "\xef\xbb\xbf"_ba << u""_s;
    QTest::newRow("only the first mark is one") << "\xef\xbb\xbf\xef\xbb\xbfx"_ba << u"\ufeffx"_s;
    QTest::newRow("old code page") << "\x80 \xe9"_ba << u"\u20ac \u00e9"_s;
    QTest::newRow("cut UTF-8") << "\xe2\x82"_ba << u"\u00e2\u201a"_s;
    QTest::newRow("overlong") << "\xc0\x80"_ba << u"\u00c0\u20ac"_s;
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << u"a"_s + QChar(0) + u'b';
}

void tst_textencoding::decodes()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    QCOMPARE(TextEncoding::decode(bytes), text);
    QCOMPARE(TextEncoding::encode(text, TextEncoding::detect(bytes)), bytes);
}

void tst_textencoding::everyByteRoundTrips()
{
    QByteArray all;
    for (int code = 0; code < 256; ++code)
        all.append(static_cast<char>(code));
    QCOMPARE(TextEncoding::detect(all), Encoding::Windows1252);
    const QString text = TextEncoding::decode(all);
    QCOMPARE(text.size(), 256);
    QCOMPARE(text[0x81], QChar(0x81));
    QCOMPARE(text[0x9f], QChar(0x178));
    QCOMPARE(TextEncoding::encode(text, Encoding::Windows1252), all);
}

void tst_textencoding::encodes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Encoding>("own");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("plain") << u"a"_s << Encoding::Windows1252 << "a"_ba;
    QTest::newRow("fits") << u"\u00e9 \u20ac"_s << Encoding::Windows1252 << "\xe9 \x80"_ba;
    QTest::newRow("does not fit") << u"\u00e9\u0431"_s << Encoding::Windows1252
                                  << "\xc3\xa9\xd0\xb1"_ba;
    QTest::newRow("would be read as UTF-8")
        << u"\u00c3\u00a9"_s << Encoding::Windows1252 << "\xc3\x83\xc2\xa9"_ba;
    QTest::newRow("UTF-8") << u"\u00e9"_s << Encoding::Utf8 << "\xc3\xa9"_ba;
    QTest::newRow("with mark") << u"x"_s << Encoding::Utf8WithMark << "\xef\xbb\xbfx"_ba;
    QTest::newRow("own U+FEFF") << u"\ufeffx"_s << Encoding::Utf8 << "\xef\xbb\xbf\xef\xbb\xbfx"_ba;
}

void tst_textencoding::encodes()
{
    QFETCH(const QString, text);
    QFETCH(const Encoding, own);
    QFETCH(const QByteArray, bytes);
    QCOMPARE(TextEncoding::encode(text, own), bytes);
    QCOMPARE(TextEncoding::decode(bytes), text);
}

void tst_textencoding::partsKeepALeadingMark()
{
    QCOMPARE(TextEncoding::decodePart("\xef\xbb\xbfx", Encoding::Utf8), u"\ufeffx"_s);
    QVERIFY(!TextEncoding::encodePart(u"\u0431"_s, Encoding::Windows1252));
    QVERIFY(!TextEncoding::encodePart(u"\U0001F600"_s, Encoding::Windows1252));
}

QTEST_GUILESS_MAIN(tst_textencoding)
#include "tst_textencoding.moc"
