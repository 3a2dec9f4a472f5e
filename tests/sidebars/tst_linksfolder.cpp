#include "FavoritesHome.h"
#include "InternetShortcut.h"
#include "LinksFolder.h"

#include <QFileInfo>
#include <QTest>
#include <sys/stat.h>

namespace {

QList<FavoriteLink> linksOf(LinksReading &folder)
{
    QList<FavoriteLink> links;
    while (!folder.atEnd()) {
        if (const auto link = folder.readNext())
            links.append(*link);
    }
    return links;
}

QString urlOf(const QString &file)
{
    return InternetShortcut::urlOfPlainFile(file, QFileInfo(file).size());
}

}

class tst_LinksFolder : public QObject {
    Q_OBJECT

private slots:
    void init() { m_home = std::make_unique<FavoritesHome>(); }
    void cleanup() { m_home.reset(); }

    void captions_data();
    void captions();
    void shortcut_data();
    void shortcut();
    void millionCharacters();
    void addressAfterMegabytes();
    void tooLargeForAShortcut();
    void pipeDoesNotWait();
    void writtenShortcutIsRead();
    void lineBreaksCannotAddKeys();

    void linksInOrder();
    void linksWithoutAddressAreSeen();
    void subfoldersAreNotEntered();
    void missingFolder();
    void fiveThousandLinks();

private:
    std::unique_ptr<FavoritesHome> m_home;
};

void tst_LinksFolder::captions_data()
{
    QTest::addColumn<QString>("caption");
    QTest::newRow("News.url") << u"News"_s;
    QTest::newRow("a.url") << u"a"_s;
    QTest::newRow("NEWS.URL") << u"NEWS"_s;
    QTest::newRow("a.b.url") << u"a.b"_s;
    QTest::newRow(".url") << u""_s;
    QTest::newRow("url") << u""_s;
}

void tst_LinksFolder::captions()
{
    QFETCH(QString, caption);
    QCOMPARE(InternetShortcut::caption(QString::fromLatin1(QTest::currentDataTag())), caption);
}

void tst_LinksFolder::shortcut_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("url");
    QTest::newRow("plain") << "[InternetShortcut]\r\nURL=http://a/?b=c\r\n"_ba
                           << u"http://a/?b=c"_s;
    QTest::newRow("other keys")
        << "[DEFAULT]\nBASEURL=x\n[InternetShortcut]\nIconIndex=1\nurl=http://a/\n"_ba
        << u"http://a/"_s;
    QTest::newRow("no section") << "URL=http://a/\r\n"_ba << u""_s;
    QTest::newRow("other section") << "[Shortcut]\r\nURL=http://a/\r\n"_ba << u""_s;
    QTest::newRow("no key") << "[InternetShortcut]\r\nX=1\r\n"_ba << u""_s;
    QTest::newRow("empty value") << "[InternetShortcut]\r\nURL=\r\n"_ba << u""_s;
    QTest::newRow("empty file") << ""_ba << u""_s;
    QTest::newRow("Windows-1252") << "[InternetShortcut]\r\nURL=http://a/\xe9\r\n"_ba
                                  << u"http://a/é"_s;
    QTest::newRow("UTF-8") << "[InternetShortcut]\r\nURL=http://a/\xd0\xb6\r\n"_ba
                           << u"http://a/ж"_s;
    QTest::newRow("javascript") << "[InternetShortcut]\nURL=javascript:alert(1)\n"_ba
                                << u"javascript:alert(1)"_s;
    QTest::newRow("file") << "[InternetShortcut]\nURL=file:///etc/hosts\n"_ba
                          << u"file:///etc/hosts"_s;
    QTest::newRow("random bytes") << "\0\xff\x01[Inter\0netShortcut]URL=\0"_ba << u""_s;
    const QString text = u"[InternetShortcut]\r\nURL=http://a/ж\r\n"_s;
    const auto utf16 = reinterpret_cast<const char *>(text.utf16());
    const QByteArray littleEndian(utf16, 2 * text.size());
    QByteArray bigEndian = littleEndian;
    for (qsizetype i = 0; i < bigEndian.size(); i += 2)
        std::swap(bigEndian[i], bigEndian[i + 1]);
    QTest::newRow("UTF-16 LE") << "\xff\xfe"_ba + littleEndian << u"http://a/ж"_s;
    QTest::newRow("UTF-16 BE") << "\xfe\xff"_ba + bigEndian << u"http://a/ж"_s;
}

void tst_LinksFolder::shortcut()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, url);
    QVERIFY(m_home->write(u"x.url"_s, bytes));
    QCOMPARE(urlOf(m_home->path(u"x.url"_s)), url);
}

void tst_LinksFolder::millionCharacters()
{
    QVERIFY(m_home->writeLink(u"x.url"_s, "http://a/" + QByteArray(1'000'000, 'b')));
    QCOMPARE(urlOf(m_home->path(u"x.url"_s)).size(), 999);
}

void tst_LinksFolder::addressAfterMegabytes()
{
    QVERIFY(m_home->write(u"x.url"_s,
                          "[Junk]\nX=" + QByteArray(5'000'000, 'b')
                              + "\n[InternetShortcut]\nURL=http://a/\n"));
    QCOMPARE(urlOf(m_home->path(u"x.url"_s)), u"http://a/"_s);
}

void tst_LinksFolder::tooLargeForAShortcut()
{
    QVERIFY(m_home->writeLink(u"x.url"_s, "http://a/"));
    QVERIFY(QFile::resize(m_home->path(u"x.url"_s), 20'000'000));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"too large for a shortcut"_s));
    QCOMPARE(urlOf(m_home->path(u"x.url"_s)), QString());
}

void tst_LinksFolder::pipeDoesNotWait()
{
    QVERIFY(m_home->makeFolder(u"Links"_s));
    const QString pipe = m_home->path(u"Links/x.url"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    LinksReading folder;
    QCOMPARE(folder.seen(), 1);
    QVERIFY(linksOf(folder).isEmpty());
}

void tst_LinksFolder::writtenShortcutIsRead()
{
    const QString url = u"https://a.example/p?q=1&r=%20#ж"_s;
    const QByteArray bytes = InternetShortcut::bytes(url);
    QCOMPARE(bytes, "[InternetShortcut]\r\nURL="_ba + url.toUtf8() + "\r\n");
    QVERIFY(m_home->write(u"x.url"_s, bytes));
    QCOMPARE(urlOf(m_home->path(u"x.url"_s)), url);
}

void tst_LinksFolder::lineBreaksCannotAddKeys()
{
    QCOMPARE(InternetShortcut::bytes(u"http://a/\r\nIconFile=x"_s),
             "[InternetShortcut]\r\nURL=http://a/IconFile=x\r\n"_ba);
}

void tst_LinksFolder::linksInOrder()
{
    QVERIFY(m_home->writeLink(u"Links/b.url"_s, "http://b/"));
    QVERIFY(m_home->writeLink(u"Links/C.URL"_s, "http://c/"));
    QVERIFY(m_home->writeLink(u"Links/a.url"_s, "http://a/"));
    QVERIFY(m_home->writeLink(u"other.url"_s, "http://o/"));
    LinksReading folder;
    QCOMPARE(folder.seen(), 3);
    const QList<FavoriteLink> links = linksOf(folder);
    QCOMPARE(links.size(), 3);
    QCOMPARE(links.at(0).caption, u"a"_s);
    QCOMPARE(links.at(0).url, u"http://a/"_s);
    QCOMPARE(links.at(1).caption, u"b"_s);
    QCOMPARE(links.at(2).caption, u"C"_s);
}

void tst_LinksFolder::linksWithoutAddressAreSeen()
{
    QVERIFY(m_home->write(u"Links/a.url"_s, "[InternetShortcut]\nURL=\n"));
    QVERIFY(m_home->makeFolder(u"Links/b.url"_s));
    QVERIFY(m_home->writeLink(u"Links/c.url"_s, "http://c/"));
    LinksReading folder;
    QCOMPARE(folder.seen(), 3);
    const QList<FavoriteLink> links = linksOf(folder);
    QCOMPARE(links.size(), 1);
    QCOMPARE(links.first().caption, u"c"_s);
}

void tst_LinksFolder::subfoldersAreNotEntered()
{
    QVERIFY(m_home->writeLink(u"Links/sub/a.url"_s, "http://a/"));
    QCOMPARE(LinksReading().seen(), 0);
}

void tst_LinksFolder::missingFolder()
{
    LinksReading folder;
    QCOMPARE(folder.seen(), 0);
    QVERIFY(folder.atEnd());
}

void tst_LinksFolder::fiveThousandLinks()
{
    for (int i = 0; i < 5000; ++i)
        QVERIFY(m_home->writeLink(u"Links/%1 %2.url"_s.arg(i).arg(QString(200, u'x')),
                                  "http://a/" + QByteArray::number(i)));
    LinksReading folder;
    QCOMPARE(folder.seen(), 5000);
    QCOMPARE(linksOf(folder).size(), 5000);
}

QTEST_GUILESS_MAIN(tst_LinksFolder)
#include "tst_linksfolder.moc"
