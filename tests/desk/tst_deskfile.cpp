#include <QLocale>
#include <QTemporaryDir>
#include <QtTest>

#include "DeskFile.h"
#include "FileUpdate.h"
#include "UrlProfile.h"

using namespace Qt::StringLiterals;

namespace {

using State = DeskWindow::State;

Desk twoWindows()
{
    Desk desk;
    desk.windows = {{u"http://a.example/"_s, u"Grüße [x]=y; \U0001F600"_s, QRect(10, -3, 400, 300),
                     State::Minimized, 1, QPoint(0, 12'345), 1.1, true},
                    {u"http://b.example/?q=%20#p"_s, u"b"_s, QRect(70, 80, 500, 401),
                     State::Maximized, 0, QPoint(-7, 0), 1.7279999999999998, false}};
    desk.active = 1;
    desk.frame = QRect(100, 50, 1100, 760);
    desk.isFrameMaximized = true;
    return desk;
}

const QByteArray plainText =
    "[Profile_URLS]\r\nURL1=http://a.example/\r\nURL2=http://b.example/?q=%20#p\r\n"
    "[URL_Count]\r\nCount=2\r\n";
const QByteArray twoText = plainText
    + "[Window1]\r\nLeft=150\r\nTop=-45\r\nWidth=6000\r\nHeight=4500\r\nState=1\r\nOrder=1\r\n"
      "ScrollX=0\r\nScrollY=12345\r\nZoom=1.1\r\nTitle=Grüße [x]=y; \xF0\x9F\x98\x80\r\n"
      "Muted=True\r\n"
      "[Window2]\r\nLeft=1050\r\nTop=1200\r\nWidth=7500\r\nHeight=6015\r\nState=2\r\nOrder=0\r\n"
      "ScrollX=-7\r\nScrollY=0\r\nZoom=1.7279999999999998\r\nTitle=b\r\nMuted=False\r\n"
      "[Frame]\r\nLeft=1500\r\nTop=750\r\nWidth=16500\r\nHeight=11400\r\nMaximized=True\r\n"
      "Active=2\r\n";

/// A profile of `count` addresses and the sections given.
QByteArray profile(const QByteArray &sections, int count = 1)
{
    QStringList addresses;
    for (int i = 1; i <= count; ++i)
        addresses.append(u"http://h/"_s + QString::number(i));
    return UrlProfile::text(addresses).toUtf8() + sections;
}

DeskWindow first(const QByteArray &keys)
{
    return DeskFile::read(profile("[Window1]\r\n" + keys)).windows.value(0);
}

}

/// Profiles with windows as bytes.
class tst_DeskFile : public QObject {
    Q_OBJECT

private slots:
    void textIsExact();
    void beginsAsThePlainProfileDoes();
    void comesBack_data();
    void comesBack();
    void numbersAreTheSameInEveryLanguage();
    void plainReaderReadsIt();
    void plainProfileHasNoPlaces();
    void otherWritingsOfTheSame_data();
    void otherWritingsOfTheSame();
    void valuesAreBrought_data();
    void valuesAreBrought();
    void titleMakesNoLineOfItsOwn();
    void titleIsCut();
    void windowWithoutASectionComesLast();
    void firstSectionAndKeyCount();
    void orderIsStraightened();
    void activeWindow_data();
    void activeWindow();
    void skippedAddressTakesItsSectionAlong();
    void countIsBelieved_data();
    void countIsBelieved();
    void sectionsWithoutEnd();
    void longAddressIsWhole();
    void sixteenBits();
    void rubbish();
    void missingFile();
};

void tst_DeskFile::textIsExact()
{
    QCOMPARE(DeskFile::text(twoWindows()), twoText);
    QCOMPARE(DeskFile::text({}),
             "[Profile_URLS]\r\n[URL_Count]\r\nCount=0\r\n"
             "[Frame]\r\nMaximized=False\r\nActive=0\r\n");
}

void tst_DeskFile::beginsAsThePlainProfileDoes()
{
    const QString odd = u"a\r\n[URL_Count]\rCount=9\n\u00e4"_s;
    Desk desk;
    desk.windows = {{odd, {}}, {{}, {}}};
    const QByteArray plain = UrlProfile::text({odd, {}}).toUtf8();
    QVERIFY(DeskFile::text(desk).startsWith(plain + "[Window1]\r\n"));
}

void tst_DeskFile::comesBack_data()
{
    QTest::addColumn<Desk>("desk");
    QTest::newRow("nothing") << Desk();
    QTest::newRow("two") << twoWindows();
    Desk bare;
    bare.windows = {{u"about:blank"_s, {}}};
    QTest::newRow("bare") << bare;
    Desk many;
    for (int i = 0; i < 1000; ++i)
        many.windows.append({u"http://h"_s + QString::number(i) + u".example/\u65e5"_s,
                             u"Titel \u00fc"_s + QString::number(i), QRect(i, 2 * i, 300 + i, 200),
                             State(i % 2), 999 - i, QPoint(i, 7 * i), 0.25 + i / 300.0,
                             i % 3 == 0});
    many.active = 500;
    QTest::newRow("a thousand") << many;
}

void tst_DeskFile::comesBack()
{
    QFETCH(Desk, desk);
    const QByteArray text = DeskFile::text(desk);
    QCOMPARE(DeskFile::read(text), desk);
    QCOMPARE(DeskFile::text(DeskFile::read(text)), text);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"x.orp"_s);
    QVERIFY(DeskFile::save(path, desk));
    QCOMPARE(FileUpdate::readAll(path), text);
    QCOMPARE(DeskFile::load(path), desk);
}

void tst_DeskFile::numbersAreTheSameInEveryLanguage()
{
    const QLocale old;
    QLocale::setDefault(QLocale(QLocale::German));
    const QByteArray text = DeskFile::text(twoWindows());
    const Desk desk = DeskFile::read(text);
    QLocale::setDefault(old);
    QCOMPARE(text, twoText);
    QCOMPARE(desk, twoWindows());
}

void tst_DeskFile::plainReaderReadsIt()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"x.orp"_s);
    QVERIFY(DeskFile::save(path, twoWindows()));
    QCOMPARE(UrlProfile::count(path), 2);
    QCOMPARE(UrlProfile::addresses(path, 2),
             (QStringList{u"http://a.example/"_s, u"http://b.example/?q=%20#p"_s}));
}

void tst_DeskFile::plainProfileHasNoPlaces()
{
    const Desk desk = DeskFile::read(plainText);
    QVERIFY(!desk.hasPlaces());
    QVERIFY(!desk.frame.isValid());
    QCOMPARE(desk.active, -1);
    QCOMPARE(desk.windows.size(), 2);
    QCOMPARE(desk.windows.at(0).address, u"http://a.example/"_s);
    QCOMPARE(desk.windows.at(1).address, u"http://b.example/?q=%20#p"_s);
    QVERIFY(DeskFile::read(twoText).hasPlaces());
}

void tst_DeskFile::otherWritingsOfTheSame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto changed = [](const QByteArray &old, const QByteArray &now) {
        return QByteArray(twoText).replace(old, now);
    };
    QTest::newRow("line feeds") << changed("\r\n", "\n");
    QTest::newRow("blank lines and comments") << changed("\r\n", "\r\n\r\n ;Left=9\r\n");
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + twoText;
    QTest::newRow("no line end at the end") << twoText.chopped(2);
    QTest::newRow("blanks") << changed("Left=", " Left \t= ").replace("[W", " [ W");
    QTest::newRow("case")
        << changed("Left", "lEFT").replace("[Window", "[WINDOW").replace("[Frame", "[frame");
    QTest::newRow("flags as numbers") << changed("True", "1").replace("False", "0");
    const qsizetype windows = twoText.indexOf("[Window1]");
    QTest::newRow("other order of sections") << twoText.sliced(windows) + twoText.first(windows);
    QTest::newRow("other sections") << "[x]\r\nLeft=9\r\n" + twoText + "[Window1x]\r\nLeft=9\r\n"
            + "[Window01]\r\nLeft=9\r\n[Window]\r\nLeft=9\r\n[Window-1]\r\nLeft=9\r\n";
}

void tst_DeskFile::otherWritingsOfTheSame()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(DeskFile::read(bytes), twoWindows());
}

void tst_DeskFile::valuesAreBrought_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<DeskWindow>("expected");
    const auto window = [](auto change) {
        DeskWindow result{u"http://h/1"_s, {}};
        change(result);
        return result;
    };
    const auto asNew = window([](DeskWindow &) {});
    const auto placed = [window](const QRect &place) {
        return window([place](DeskWindow &w) { w.place = place; });
    };
    QTest::newRow("nothing") << QByteArray() << asNew;
    QTest::newRow("no size") << QByteArray("Left=15\nTop=15") << asNew;
    QTest::newRow("no width") << QByteArray("Height=150") << asNew;
    QTest::newRow("empty size") << QByteArray("Width=0\nHeight=150") << asNew;
    QTest::newRow("negative size") << QByteArray("Width=-150\nHeight=-150") << asNew;
    QTest::newRow("no number") << QByteArray("Width=NaN\nHeight=inf\nZoom=nan\nOrder=x\nState=")
                               << asNew;
    QTest::newRow("hexadecimal") << QByteArray("Width=0x10\nHeight=0x10") << asNew;
    QTest::newRow("comma") << QByteArray("Width=10,5\nHeight=1.000,0\nZoom=1,5") << asNew;
    QTest::newRow("no corner") << QByteArray("Width=150\nHeight=300") << placed({0, 0, 10, 20});
    QTest::newRow("fractions") << QByteArray("Left=14.6\nTop=-22\nWidth=150.4\nHeight=3e2")
                               << placed({1, -1, 10, 20});
    QTest::newRow("huge") << QByteArray("Left=1e300\nTop=-99999999999999999999\n"
                                        "Width=2147483648\nHeight=1e18")
                          << placed({32767, -32767, 32767, 32767});
    QTest::newRow("states") << QByteArray("State=1.2")
                            << window([](DeskWindow &w) { w.state = State::Minimized; });
    QTest::newRow("no state") << QByteArray("State=3") << asNew;
    QTest::newRow("negative state") << QByteArray("State=-1e9") << asNew;
    QTest::newRow("scroll") << QByteArray("ScrollX=-1e99\nScrollY=1e99")
                            << window([](DeskWindow &w) {
                                   w.scroll = {-(1 << 25), 1 << 25};
                               });
    QTest::newRow("zoom too large")
        << QByteArray("Zoom=1e9") << window([](DeskWindow &w) { w.zoom = 5; });
    QTest::newRow("zoom negative")
        << QByteArray("Zoom=-3") << window([](DeskWindow &w) { w.zoom = 0.25; });
    QTest::newRow("flag") << QByteArray("Muted=-2")
                          << window([](DeskWindow &w) { w.isMuted = true; });
    QTest::newRow("no flag") << QByteArray("Muted=yes") << asNew;
    QTest::newRow("NUL") << QByteArray("Title=a\0b\nZoom=2\0"
                                       "5",
                                       18)
                         << window([](DeskWindow &w) {
                                w.title = u"a"_s;
                                w.zoom = 2;
                            });
    QTest::newRow("digits without end")
        << "Width=" + QByteArray(1'000'000, '9') + "\nHeight=" + QByteArray(1'000'000, '0')
        << asNew;
    QTest::newRow("Windows-1252") << QByteArray("Title=gr\xFC\xDF\x80")
                                  << window([](DeskWindow &w) { w.title = u"grüß€"_s; });
}

void tst_DeskFile::valuesAreBrought()
{
    QFETCH(QByteArray, keys);
    QFETCH(DeskWindow, expected);
    QCOMPARE(first(keys), expected);
}

void tst_DeskFile::titleMakesNoLineOfItsOwn()
{
    Desk desk = twoWindows();
    desk.windows[0].title =
        u" \t[Window2]\r\nLeft=9\n[Frame]\rActive=1\u2028x"_s + QChar(0) + u"y "_s;
    const Desk read = DeskFile::read(DeskFile::text(desk));
    QCOMPARE(read.windows.at(0).title, u"[Window2] Left=9 [Frame] Active=1\u2028x y"_s);
    QCOMPARE(read.windows.at(1), desk.windows.at(1));
    QCOMPARE(read.active, 1);
    QCOMPARE(DeskFile::text(read), DeskFile::text(desk));
}

void tst_DeskFile::titleIsCut()
{
    Desk desk = twoWindows();
    desk.windows[0].title = QString(1 << 20, u'ß');
    const QByteArray text = DeskFile::text(desk);
    QVERIFY(text.size() < twoText.size() + 2 * 1000);
    QCOMPARE(DeskFile::read(text).windows.at(0).title, QString(999, u'ß'));
    QCOMPARE(first("Title=" + QByteArray(1 << 20, 'x')).title, QString(999, u'x'));
}

void tst_DeskFile::windowWithoutASectionComesLast()
{
    const Desk desk = DeskFile::read(profile(
        "[Window1]\nOrder=5\nWidth=150\nHeight=150\n[Window3]\nOrder=2\nWidth=300\nHeight=150\n",
        3));
    QCOMPARE(desk.windows.size(), 3);
    QCOMPARE(desk.windows.at(0).order, 1);
    QCOMPARE(desk.windows.at(1).order, 2);
    QCOMPARE(desk.windows.at(2).order, 0);
    QVERIFY(!desk.windows.at(1).place.isValid());
    QVERIFY(desk.hasPlaces());
}

void tst_DeskFile::firstSectionAndKeyCount()
{
    const Desk desk = DeskFile::read(
        profile("[Window1]\nTitle=\nTitle=x\nZoom=2\nZoom=3\n[window1]\nTitle=x\nMuted=1\n"
                "[Frame]\nMaximized=0\nMaximized=1\n[Frame]\nActive=1\nMaximized=1\n"
                "[Profile_URLS]\nURL1=x\nURL2=x\n[URL_Count]\nCount=2\n"));
    QCOMPARE(desk.windows.size(), 1);
    QCOMPARE(desk.windows.at(0).address, u"http://h/1"_s);
    QCOMPARE(desk.windows.at(0).title, QString());
    QCOMPARE(desk.windows.at(0).zoom, 2);
    QVERIFY(!desk.windows.at(0).isMuted);
    QVERIFY(!desk.isFrameMaximized);
    QCOMPARE(desk.active, -1);
}

void tst_DeskFile::orderIsStraightened()
{
    const Desk desk =
        DeskFile::read(profile("[Window1]\nOrder=7\n[Window2]\nOrder=-1e300\n[Window3]\nOrder=7\n"
                               "[Window4]\nOrder=1e300\n[Window5]\nOrder=many\n",
                               5));
    QList<int> orders;
    for (const DeskWindow &window : desk.windows)
        orders.append(window.order);
    QCOMPARE(orders, (QList{1, 0, 2, 3, 4}));
}

void tst_DeskFile::activeWindow_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("expected");
    QTest::newRow("second") << QByteArray("2") << 1;
    QTest::newRow("none") << QByteArray("0") << -1;
    QTest::newRow("negative") << QByteArray("-1") << -1;
    QTest::newRow("beyond") << QByteArray("4") << -1;
    QTest::newRow("far beyond") << QByteArray("1e300") << -1;
    QTest::newRow("no number") << QByteArray("first") << -1;
}

void tst_DeskFile::activeWindow()
{
    QFETCH(QByteArray, stored);
    QTEST(DeskFile::read(profile("[Frame]\nActive=" + stored, 3)).active, "expected");
}

void tst_DeskFile::skippedAddressTakesItsSectionAlong()
{
    const Desk desk = DeskFile::read("[Profile_URLS]\nURL1=a\nURL2=\nURL4=d\n[URL_Count]\nCount=4\n"
                                     "[Window1]\nTitle=A\n[Window2]\nTitle=B\n[Window3]\nTitle=C\n"
                                     "[Window4]\nTitle=D\n[Frame]\nActive=4\n");
    QCOMPARE(desk.windows.size(), 2);
    QCOMPARE(desk.windows.at(1).address, u"d"_s);
    QCOMPARE(desk.windows.at(1).title, u"D"_s);
    QCOMPARE(desk.active, 1);
}

void tst_DeskFile::countIsBelieved_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("windows");
    QTest::newRow("fewer") << QByteArray("2") << 2;
    QTest::newRow("a thousand million") << QByteArray("1000000000") << 3;
    QTest::newRow("too many") << QByteArray("1e300") << 0;
    QTest::newRow("negative") << QByteArray("-3") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
}

void tst_DeskFile::countIsBelieved()
{
    QFETCH(QByteArray, stored);
    const QByteArray bytes = profile("[Window1]\nTitle=x\n[Window1000000000]\nTitle=x\n", 3)
                                 .replace("Count=3", "Count=" + stored);
    QTEST(int(DeskFile::read(bytes).windows.size()), "windows");
}

/// Only so many are kept in memory as can be of use.
void tst_DeskFile::sectionsWithoutEnd()
{
    QByteArray sections;
    for (int i = 1; i <= 1'000'000; ++i)
        sections += "[Window" + QByteArray::number(i) + "]\nLeft=1\nWidth=150\nHeight=150\n";
    const Desk desk = DeskFile::read(profile(sections, 2));
    QCOMPARE(desk.windows.size(), 2);
    QCOMPARE(desk.windows.at(1).place.width(), 10);
}

void tst_DeskFile::longAddressIsWhole()
{
    const QString address = u"http://h/?"_s + QString(100'000, u'x');
    Desk desk;
    desk.windows = {{address, {}}};
    QCOMPARE(DeskFile::read(DeskFile::text(desk)).windows.at(0).address, address);
    const QByteArray plain = UrlProfile::text({address}).toUtf8();
    QCOMPARE(DeskFile::read(plain).windows.at(0).address, address.left(999));
}

void tst_DeskFile::sixteenBits()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"x.orp"_s);
    QStringEncoder encoder(QStringEncoder::Utf16, QStringEncoder::Flag::WriteBom);
    QVERIFY(FileUpdate::replace(path, encoder(QString::fromUtf8(twoText))));
    QCOMPARE(DeskFile::load(path), twoWindows());
}

void tst_DeskFile::rubbish()
{
    QByteArray bytes;
    for (int i = 0; i < 300'000; ++i)
        bytes += char(i * 2'654'435'761U >> 13);
    QVERIFY(DeskFile::read(bytes).windows.isEmpty());
    // Bytes that are no UTF-8 make the whole file one of single bytes.
    const Desk desk = DeskFile::read(bytes + '\n' + twoText);
    QCOMPARE(desk.windows.size(), 2);
    QCOMPARE(desk.windows.at(0).place, twoWindows().windows.at(0).place);
    QCOMPARE(desk.windows.at(1), twoWindows().windows.at(1));
}

void tst_DeskFile::missingFile()
{
    const QTemporaryDir folder;
    QVERIFY(!DeskFile::load(folder.filePath(u"x.orp"_s)));
    QVERIFY(!DeskFile::load(folder.path()));
}

QTEST_GUILESS_MAIN(tst_DeskFile)
#include "tst_deskfile.moc"
