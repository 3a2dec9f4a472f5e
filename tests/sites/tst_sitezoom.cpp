#include "AppFolder.h"
#include "SiteZoom.h"
#include "SmallDisk.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

/// What the user chose for a site is kept for it, and what stands in the file is never taken for
/// more than that.
class tst_SiteZoom : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void keptForItsSite();
    void usualSizeLeavesNothing();
    void sites_data();
    void sites();
    void valuesByHand_data();
    void valuesByHand();
    void restOfTheFileStays();
    void rubbishIsSurvived_data();
    void rubbishIsSurvived();
    void tooLargeAFileIsLeftAlone();
    void firstSiteMakesRoom();
    void chosenSiteIsNotTheOneThatGoes();
    void manyLinesAreNoWait_data();
    void manyLinesAreNoWait();
    void manyAreForgottenAtOnce();
    void whatIsNoPercentageIsRefused();
    void fullDiskIsTold();
    void listed();
    void forgotten();
    void allForgotten();

private:
    static constexpr auto file = "AppData/Zoom.ini"_L1;

    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_SiteZoom::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_SiteZoom::cleanup()
{
    m_folder.reset();
}

void tst_SiteZoom::keptForItsSite()
{
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 100);
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 150));
    QCOMPARE(m_folder->read(file), QByteArray("[Sites]\r\nshop.example=150\r\n"));
    QVERIFY(SiteZoom::keep(u"other.example"_s, 25));
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 500));
    QCOMPARE(m_folder->read(file),
             QByteArray("[Sites]\r\nshop.example=500\r\nother.example=25\r\n"));
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 500);
    QCOMPARE(SiteZoom::percent(u"other.example"_s), 25);
    QCOMPARE(SiteZoom::percent(u"example"_s), 100);
}

void tst_SiteZoom::usualSizeLeavesNothing()
{
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 100));
    QVERIFY(!m_folder->exists(file));
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 150));
    QVERIFY(SiteZoom::keep(u"other.example"_s, 75));
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 100));
    QCOMPARE(m_folder->read(file), QByteArray("[Sites]\r\nother.example=75\r\n"));
    // Twice by hand, without a line's end.
    m_folder->write(file, "[Sites]\nSHOP.example=150\na=50\n shop.example = 75");
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 100));
    QCOMPARE(m_folder->read(file), QByteArray("[Sites]\na=50\n"));
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 100);
}

void tst_SiteZoom::sites_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("site");
    QTest::newRow("host") << u"https://Shop.Example/a?b#c"_s << u"shop.example"_s;
    QTest::newRow("either scheme, any port") << u"http://shop.example:8080/"_s << u"shop.example"_s;
    QTest::newRow("name and password") << u"https://a:b@shop.example/"_s << u"shop.example"_s;
    QTest::newRow("other letters") << u"https://bücher.example/"_s << u"xn--bcher-kva.example"_s;
    QTest::newRow("number") << u"http://127.0.0.1/"_s << u"127.0.0.1"_s;
    QTest::newRow("long number") << u"http://[::1]/"_s << u"::1"_s;
    QTest::newRow("file") << u"file:///home/a/b.html"_s << u"file:"_s;
    QTest::newRow("empty window") << u"about:blank"_s << QString();
    QTest::newRow("data") << u"data:text/html,x"_s << QString();
    QTest::newRow("blob") << u"blob:https://shop.example/1"_s << QString();
    QTest::newRow("no host") << u"http:///x"_s << QString();
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("too long") << u"https://"_s + QString(300, u'a') + u"/"_s << QString();
}

void tst_SiteZoom::sites()
{
    QFETCH(QString, url);
    QTEST(SiteZoom::siteOf(QUrl(url)), "site");
}

void tst_SiteZoom::valuesByHand_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("percent");
    QTest::newRow("between the steps") << QByteArray("117") << 117;
    QTest::newRow("blanks") << QByteArray(" 125\t") << 125;
    QTest::newRow("least") << QByteArray("25") << 25;
    QTest::newRow("too small") << QByteArray("24") << 100;
    QTest::newRow("too large") << QByteArray("501") << 100;
    QTest::newRow("negative") << QByteArray("-150") << 100;
    QTest::newRow("huge") << QByteArray("99999999999999999999") << 100;
    QTest::newRow("sign") << QByteArray("150%") << 100;
    QTest::newRow("fraction") << QByteArray("1.5") << 100;
    QTest::newRow("power") << QByteArray("1e2") << 100;
    QTest::newRow("word") << QByteArray("large") << 100;
    QTest::newRow("empty") << QByteArray() << 100;
    QTest::newRow("NUL") << QByteArray("75\0"
                                       "0",
                                       4)
                         << 75;
}

void tst_SiteZoom::valuesByHand()
{
    QFETCH(QByteArray, value);
    m_folder->write(file, "[Sites]\nshop.example=" + value + '\n');
    QTEST(SiteZoom::percent(u"shop.example"_s), "percent");
}

void tst_SiteZoom::restOfTheFileStays()
{
    m_folder->write(file, "; mine\n[Other]\nshop.example=9\n[sites]\nx\nword=large\n[End]\na=b");
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 150));
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 100));
    QCOMPARE(m_folder->read(file),
             QByteArray("; mine\n[Other]\nshop.example=9\n[sites]\nx\nword=large\n[End]\na=b"));
}

void tst_SiteZoom::rubbishIsSurvived_data()
{
    QTest::addColumn<QByteArray>("old");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("all bytes") << [] {
        QByteArray bytes;
        for (int i = 0; i < 4096; ++i)
            bytes.append(char(i * 7));
        return bytes;
    }();
    QTest::newRow("brackets") << QByteArray("[[[[]]]]\n[Sites\n[\n=\n=150");
    QTest::newRow("one line") << QByteArray(100000, 'a');
}

void tst_SiteZoom::rubbishIsSurvived()
{
    QFETCH(QByteArray, old);
    m_folder->write(file, old);
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 100);
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 150));
    QByteArray now = m_folder->read(file);
    QVERIFY(now.replace("[Sites]\r\n", "").replace("shop.example=150", "").size() >= old.size());
    for (const QByteArray &line : old.split('\n'))
        QVERIFY(now.contains(line));
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 150);
}

void tst_SiteZoom::tooLargeAFileIsLeftAlone()
{
    const Unlogged quiet;
    const QByteArray large = "[Sites]\nshop.example=150\n" + QByteArray(2'000'000, 'x');
    m_folder->write(file, large);
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 100);
    QVERIFY(!SiteZoom::keep(u"shop.example"_s, 75));
    QCOMPARE(m_folder->read(file).size(), large.size());
}

void tst_SiteZoom::firstSiteMakesRoom()
{
    QByteArray full = "[Sites]\n";
    for (int i = 0; i < SiteZoom::mostSites + 1; ++i)
        full += "site" + QByteArray::number(i) + ".example=150\n";
    m_folder->write(file, full);
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 75));
    QCOMPARE(SiteZoom::percent(u"site0.example"_s), 100);
    QCOMPARE(SiteZoom::percent(u"site1.example"_s), 100);
    QCOMPARE(SiteZoom::percent(u"site2.example"_s), 150);
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 75);
    QCOMPARE(m_folder->read(file).count('='), SiteZoom::mostSites);
}

void tst_SiteZoom::chosenSiteIsNotTheOneThatGoes()
{
    QByteArray full = "[Sites]\n";
    for (int i = 0; i < SiteZoom::mostSites + 1; ++i)
        full += "Site" + QByteArray::number(i) + ".example=150\n";
    m_folder->write(file, full);
    QVERIFY(SiteZoom::keep(u"site0.example"_s, 75));
    QCOMPARE(SiteZoom::percent(u"site0.example"_s), 75);
}

void tst_SiteZoom::manyLinesAreNoWait_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<int>("percent");
    QByteArray sites;
    for (int i = 0; i < 90'000; ++i)
        sites += QByteArray::number(i) + "=50\n";
    QTest::newRow("many sites") << sites << 150;
    QTest::newRow("one site often") << QByteArray("a=50\n").repeated(200'000) << 100;
}

void tst_SiteZoom::manyLinesAreNoWait()
{
    QFETCH(QByteArray, lines);
    QFETCH(int, percent);
    m_folder->write(file, "[Sites]\n" + lines);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(SiteZoom::keep(u"a"_s, percent));
    // A moment here, and a minute where each line is looked for anew.
    QVERIFY2(timer.elapsed() < 5000, QByteArray::number(timer.elapsed()));
    QCOMPARE(SiteZoom::percent(u"a"_s), percent);
    QVERIFY(m_folder->read(file).count('=') <= SiteZoom::mostSites);
}

void tst_SiteZoom::manyAreForgottenAtOnce()
{
    QByteArray lines;
    QStringList sites;
    for (int i = 0; i < 40'000; ++i) {
        sites.append(QString::number(i));
        lines += QByteArray::number(i) + "=50\n";
    }
    m_folder->write(file, "[Sites]\n" + lines + "b=75\n" + QByteArray("a=50\n").repeated(50'000));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(SiteZoom::forget(sites << u"A"_s));
    QVERIFY2(timer.elapsed() < 5000, QByteArray::number(timer.elapsed()));
    QCOMPARE(m_folder->read(file), QByteArray("[Sites]\nb=75\n"));
}

void tst_SiteZoom::whatIsNoPercentageIsRefused()
{
    for (const int percent : {-1, 0, 24, 501, 1000000})
        QVERIFY(!SiteZoom::keep(u"shop.example"_s, percent));
    QVERIFY(!SiteZoom::keep({}, 150));
    QVERIFY(!m_folder->exists(file));
}

void tst_SiteZoom::fullDiskIsTold()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser can have a small disk.");
    QVERIFY(QDir(disk.path()).mkdir(u"AppData"_s));
    AppFolder::setPath(disk.path());
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 75));
    QFile full(disk.path() + "/full"_L1);
    QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (full.write(QByteArray(4096, 'x')) == 4096) { }
    const Unlogged quiet;
    QVERIFY(SiteZoom::keep(u"shop.example"_s, 150).isFailure(WriteResult::Failure::NoRoom));
    QCOMPARE(SiteZoom::percent(u"shop.example"_s), 75);
}

namespace {
const QByteArray several = "; mine\r\n[Sites]\r\none.example=150\r\nOne.Example=200\r\n"
                           "bad.example=much\r\nusual.example=100\r\nfile:=50\r\n"
                           "[Other]\r\nkey=1\r\n[sites]\r\ntwo.example=75\r\n";
}

void tst_SiteZoom::listed()
{
    QVERIFY(SiteZoom::all().isEmpty());
    QVERIFY(m_folder->write(file, several));
    QCOMPARE(SiteZoom::all(), (QList<SiteZoom::Kept>{{u"one.example"_s, 150}, {u"file:"_s, 50}}));
}

void tst_SiteZoom::forgotten()
{
    QVERIFY(SiteZoom::forget({u"one.example"_s}));
    QVERIFY(!m_folder->exists(file));
    QVERIFY(m_folder->write(file, several));
    QVERIFY(SiteZoom::forget({u"one.example"_s, u"file:"_s, u"none.example"_s}));
    QCOMPARE(m_folder->read(file),
             QByteArray("; mine\r\n[Sites]\r\nbad.example=much\r\nusual.example=100\r\n"
                        "[Other]\r\nkey=1\r\n[sites]\r\ntwo.example=75\r\n"));
    QVERIFY(SiteZoom::all().isEmpty());
}

/// No name of a site is left, whatever was said of it.
void tst_SiteZoom::allForgotten()
{
    QVERIFY(SiteZoom::forgetAll());
    QVERIFY(!m_folder->exists(file));
    QVERIFY(m_folder->write(file, several));
    QVERIFY(SiteZoom::forgetAll());
    QCOMPARE(m_folder->read(file), QByteArray("; mine\r\n[Other]\r\nkey=1\r\n"));
}

QTEST_GUILESS_MAIN(tst_SiteZoom)
#include "tst_sitezoom.moc"
