#include "SearchEngines.h"
#include "TempAppFolder.h"

#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class tst_SearchEngines : public QObject {
    Q_OBJECT

private slots:
    void addresses_data();
    void addresses();
    void names_data();
    void names();
    void missingFile();
    void preselected_data();
    void preselected();
    void keptSelectionIsAnotherKey();
    void shippedFile();
    void shippedLines();

private:
    QString file() const { return m_folder.file(u"AppData/SearchEngines.ini"_s); }
    bool write(const QByteArray &bytes) const
    {
        return m_folder.write(u"AppData/SearchEngines.ini"_s, bytes);
    }

    TempAppFolder m_folder;
};

void tst_SearchEngines::addresses_data()
{
    QTest::addColumn<QString>("addressTemplate");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("address");
    const QString plain = u"x?q=<SearchString>"_s;
    QTest::newRow("ampersand and equals") << plain << u"a&b=c"_s << u"x?q=a%26b%3Dc"_s;
    QTest::newRow("percent stays") << plain << u"a%26b"_s << u"x?q=a%26b"_s;
    QTest::newRow("nothing else is escaped")
        << plain << u"a b?c#d%éж+\"<>"_s << u"x?q=a b?c#d%éж+\"<>"_s;
    QTest::newRow("any letter case") << u"x?q=<searchSTRING>&l=en"_s << u"a"_s << u"x?q=a&l=en"_s;
    QTest::newRow("two markers") << u"x/<SearchString>?q=<searchstring>"_s << u"a=b"_s
                                 << u"x/a%3Db?q=a%3Db"_s;
    QTest::newRow("no marker") << u"http://x/"_s << u"a"_s << u"http://x/"_s;
    QTest::newRow("a query that is the marker")
        << plain << u"<SearchString>"_s << u"x?q=<SearchString>"_s;
    QTest::newRow("wrong scheme") << u"javascript:<SearchString>"_s << u"a"_s << u"javascript:a"_s;
}

void tst_SearchEngines::addresses()
{
    QFETCH(QString, addressTemplate);
    QFETCH(QString, query);
    QTEST(SearchEngines::searchAddress(addressTemplate, query), "address");
}

void tst_SearchEngines::names_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("names");
    const QStringList ab{u"A"_s, u"B"_s};
    QTest::newRow("plain") << "[Engines]\r\nCount=2\r\nURL1=A\r\nURL2=B\r\n"_ba << ab;
    QTest::newRow("empty one") << "[Engines]\nCount=3\nURL1=A\nURL2=\nURL3=B\n"_ba << ab;
    QTest::newRow("missing one") << "[Engines]\nCount=3\nURL1=A\nURL3=B\n"_ba << ab;
    QTest::newRow("more than Count") << "[Engines]\nCount=2\nURL1=A\nURL2=B\nURL3=C\n"_ba << ab;
    QTest::newRow("in any order") << "[Engines]\nURL2=B\nURL1=A\nCount=2\n"_ba << ab;
    QTest::newRow("ten comes after nine") << "[Engines]\nURL10=B\nURL9=A\nCount=10\n"_ba << ab;
    QTest::newRow("any letter case") << "[ENGINES]\ncount=2\nurl1=A\nUrl2=B\n"_ba << ab;
    QTest::newRow("padded number") << "[Engines]\nCount=2\nURL01=X\nURL1=A\nURL2=B\n"_ba << ab;
    QTest::newRow("first key counts") << "[Engines]\nCount=2\nURL1=A\nURL1=X\nURL2=B\n"_ba << ab;
    QTest::newRow("first section counts")
        << "[Engines]\nCount=2\nURL1=A\nURL2=B\n[x]\n[Engines]\nURL1=X\nURL2=Y\n"_ba << ab;
    QTest::newRow("comments and blanks")
        << " [ Engines ] x\n;URL1=X\n\t Count = 2 \n\n URL1 =  A \r\nURL2=B\n"_ba << ab;
    QTest::newRow("count of a billion")
        << "[Engines]\nCount=1000000000\nURL1=A\nURL999999999=B\n"_ba << ab;
    QTest::newRow("count beyond all numbers")
        << "[Engines]\nCount=1e300\nURL1=A\nURL2=B\nURL99999999999999999999=C\n"_ba << ab;
    QTest::newRow("negative count") << "[Engines]\nCount=-2\nURL1=A\n"_ba << QStringList();
    QTest::newRow("no count") << "[Engines]\nURL1=A\n"_ba << QStringList();
    QTest::newRow("text as count") << "[Engines]\nCount=two\nURL1=A\nURL2=B\n"_ba << QStringList();
    QTest::newRow("no section") << "Count=2\nURL1=A\nURL2=B\n"_ba << QStringList();
    QTest::newRow("empty") << ""_ba << QStringList();
    QTest::newRow("random bytes") << "\0\xff[\x01Engines\0]=URL1\xfe"_ba << QStringList();
    QTest::newRow("Windows-1252") << "[Engines]\nCount=1\nURL1=Caf\xe9\n"_ba
                                  << QStringList{u"Café"_s};
}

void tst_SearchEngines::names()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(write(bytes));
    QTEST(SearchEngines::names(file()), "names");
}

void tst_SearchEngines::missingFile()
{
    const QString missing = m_folder.file(u"AppData/none.ini"_s);
    QVERIFY(SearchEngines::names(missing).isEmpty());
    QCOMPARE(SearchEngines::preselected(missing, 3), 0);
    QCOMPARE(SearchEngines::preselected(missing, 0), -1);
    QCOMPARE(SearchEngines::addressTemplate(missing, u"A"_s), QString());
}

void tst_SearchEngines::preselected_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0;
    QTest::newRow("2") << 2;
    QTest::newRow("3") << -1;
    QTest::newRow("5") << -1;
    QTest::newRow("-1") << -1;
    QTest::newRow("1e30") << -1;
    QTest::newRow("text") << -1;
    QTest::newRow("") << -1;
}

void tst_SearchEngines::preselected()
{
    QVERIFY(write("[Data]\nSearchSelection="_ba + QTest::currentDataTag() + '\n'));
    QTEST(SearchEngines::preselected(file(), 3), "index");
}

void tst_SearchEngines::keptSelectionIsAnotherKey()
{
    QVERIFY(write("[Data]\nSearchSelection=1\n"));
    SearchEngines::keepSelection(file(), 2);
    QCOMPARE(m_folder.read(u"AppData/SearchEngines.ini"_s),
             "[Data]\nSearchSelection=1\nDefaultSelection=2\n"_ba);
    QCOMPARE(SearchEngines::preselected(file(), 3), 1);
}

// Every engine has an https template with the marker, and one of them is selected.
void tst_SearchEngines::shippedFile()
{
    const QString shipped = QStringLiteral(ORVANE_SOURCE_DIR "/appdata/SearchEngines.ini");
    const QStringList names = SearchEngines::names(shipped);
    QVERIFY(names.size() >= 20);
    QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), names.size());
    for (const QString &name : names) {
        const QString address = SearchEngines::addressTemplate(shipped, name);
        QVERIFY2(address.contains("<SearchString>"_L1), qPrintable(name));
        const QUrl url(SearchEngines::searchAddress(address, u"two words"_s));
        QVERIFY2(url.isValid() && url.scheme() == "https"_L1, qPrintable(name));
    }
    QCOMPARE(SearchEngines::preselected(shipped, int(names.size())), 0);
}

void tst_SearchEngines::shippedLines()
{
    QFile file(QStringLiteral(ORVANE_SOURCE_DIR "/appdata/SearchEngines.ini"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
    QVERIFY(bytes.endsWith("\r\n"));
    QVERIFY(QString::fromUtf8(bytes).toUtf8() == bytes);
}

QTEST_GUILESS_MAIN(tst_SearchEngines)
#include "tst_searchengines.moc"
