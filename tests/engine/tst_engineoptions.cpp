#include <QDir>
#include <QtTest>

#include "CookieFile.h"
#include "EngineOptions.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

/// The file of the user's options for the engine.
class tst_EngineOptions : public QObject {
    Q_OBJECT

private slots:
    void init();
    void withoutAFileTheEngineIsAsItComes();
    void whatIsWrittenIsRead();
    void writingKeepsTheRestOfTheFile();
    void rubbishInEveryKeyIsLoggedAndLeftOut();
    void oneBadKeyLeavesTheOthers();
    void numbersOutOfRange_data();
    void numbersOutOfRange();
    void proxyNeedsAnAddress();
    void missingKeysAreAsTheyCome();
    void hugeFileIsLoggedAndLeftOut();
    void directoryInItsPlace();
    void unreadableFile();
    void bytesThatAreNoText();
    void writeFailsWithoutTheFolder();
    void hosts_data();
    void hosts();
    void languageLists_data();
    void languageLists();
    void userAgentsAreHeaderText();
    void foldersAreAbsolute();
    void cookieFileThatIsNone();

private:
    static constexpr char file[] = "AppData/Engine.ini";
    bool write(const QByteArray &bytes) const
    {
        return m_folder->write(QString::fromLatin1(file), bytes);
    }
    static void expectWarning(const char *pattern)
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString::fromLatin1(pattern)));
    }

    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_EngineOptions::init()
{
    m_folder.reset();
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void tst_EngineOptions::withoutAFileTheEngineIsAsItComes()
{
    QCOMPARE(EngineOptions::read(), EngineOptions());
    QVERIFY2(!m_folder->exists(QString::fromLatin1(file)), "reading writes nothing");
}

static EngineOptions unusual()
{
    EngineOptions options;
    options.cacheLimit = 50;
    options.refuseThirdPartyCookies = false;
    options.scripts = false;
    options.images = false;
    options.pdfInPage = false;
    options.hardwareRendering = false;
    options.standardFont = u"DejaVu Sans"_s;
    options.serifFont = u"Liberation Serif"_s;
    options.sansSerifFont = u"\u6587\u5b57"_s;
    options.fixedFont = u"DejaVu Sans Mono"_s;
    options.fontSize = 20;
    options.fixedFontSize = 18;
    options.minimumFontSize = 11;
    options.proxy = EngineOptions::Proxy::Socks5;
    options.proxyHost = u"::1"_s;
    options.proxyPort = 1080;
    options.languages = u"de-AT, de,en"_s;
    options.userAgent = u"Orvane/1 (=; [x])"_s;
    options.downloadFolder = u"/tmp/\U0001f600 here"_s;
    options.spelling = false;
    options.dictionaries = u"de-AT,en-GB"_s;
    return options;
}

void tst_EngineOptions::whatIsWrittenIsRead()
{
    const EngineOptions options = unusual();
    QVERIFY(options.write());
    QCOMPARE(EngineOptions::read(), options);
    QVERIFY(EngineOptions().write());
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_EngineOptions::writingKeepsTheRestOfTheFile()
{
    QVERIFY(write("; mine\r\n[Other]\r\nScripts=x\r\n"));
    QVERIFY(unusual().write());
    const QByteArray bytes = m_folder->read(QString::fromLatin1(file));
    QVERIFY(bytes.startsWith("; mine\r\n[Other]\r\nScripts=x\r\n"));
    QVERIFY(bytes.contains("\r\nScripts=False\r\n"));
}

void tst_EngineOptions::rubbishInEveryKeyIsLoggedAndLeftOut()
{
    QVERIFY(unusual().write());
    QByteArray bytes = m_folder->read(QString::fromLatin1(file));
    QByteArray rubbish;
    int keys = 0;
    for (const QByteArray &line : bytes.split('\n')) {
        const qsizetype sign = line.indexOf('=');
        if (sign < 0) {
            rubbish += line + '\n';
            continue;
        }
        rubbish += line.left(sign) + "=\x01\xff rubbish \x7f\r\n";
        ++keys;
    }
    QCOMPARE(keys, 21);
    QVERIFY(write(rubbish));
    for (int key = 0; key < keys; ++key)
        expectWarning("^Engine.ini: .* cannot be");
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_EngineOptions::oneBadKeyLeavesTheOthers()
{
    QVERIFY(write("[Engine]\r\nScripts=perhaps\r\nImages=0\r\nFontSize=20\r\n"));
    expectWarning("^Engine.ini: Scripts cannot be \"perhaps\"$");
    EngineOptions expected;
    expected.images = false;
    expected.fontSize = 20;
    QCOMPARE(EngineOptions::read(), expected);
}

void tst_EngineOptions::numbersOutOfRange_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line :
         {"CacheLimit=-1", "CacheLimit=2048", "CacheLimit=1e300", "FontSize=5", "FontSize=73",
          "FontSize=16.5", "MinimumFontSize=-3", "ProxyPort=0", "ProxyPort=65536", "ProxyPort=nan"})
        QTest::newRow(line) << QByteArray(line);
}

void tst_EngineOptions::numbersOutOfRange()
{
    QFETCH(QByteArray, line);
    QVERIFY(write("[Engine]\r\n" + line + "\r\n"));
    expectWarning("cannot be");
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_EngineOptions::proxyNeedsAnAddress()
{
    QVERIFY(write("[Engine]\r\nProxy=HTTP\r\n"));
    expectWarning("without an address");
    QCOMPARE(EngineOptions::read(), EngineOptions());
    QVERIFY(write("[Engine]\r\nProxy=http\r\nProxyHost=proxy.example\r\n"));
    const EngineOptions options = EngineOptions::read();
    QCOMPARE(options.proxy, EngineOptions::Proxy::Http);
    QCOMPARE(options.proxyHost, u"proxy.example"_s);
    QCOMPARE(options.proxyPort, 8080);
}

void tst_EngineOptions::missingKeysAreAsTheyCome()
{
    QVERIFY(write("[Engine]\r\nScripts=False\r\nUserAgent=\r\nFontSize=\r\n"));
    EngineOptions expected;
    expected.scripts = false;
    QCOMPARE(EngineOptions::read(), expected);
}

void tst_EngineOptions::hugeFileIsLoggedAndLeftOut()
{
    QVERIFY(write("[Engine]\r\nScripts=False\r\n" + QByteArray(2 * 1024 * 1024, 'x')));
    expectWarning("Engine.ini\" cannot be read or is too large");
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_EngineOptions::directoryInItsPlace()
{
    QVERIFY(QDir().mkpath(m_folder->file(QString::fromLatin1(file))));
    expectWarning("Engine.ini\" cannot be read or is too large");
    QCOMPARE(EngineOptions::read(), EngineOptions());
    expectWarning("cannot read");
    QVERIFY(!unusual().write());
}

void tst_EngineOptions::unreadableFile()
{
    QVERIFY(write("[Engine]\r\nScripts=False\r\n"));
    const QString path = m_folder->file(QString::fromLatin1(file));
    QVERIFY(QFile::setPermissions(path, {}));
    if (QFileInfo(path).isReadable())
        QSKIP("this user may read everything");
    expectWarning("Engine.ini\" cannot be read or is too large");
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_EngineOptions::bytesThatAreNoText()
{
    QByteArray bytes = "[Engine]\nScripts=\xff";
    for (int i = 0; i < 100000; ++i)
        bytes.append(char(i * 7919 >> 3));
    QVERIFY(write(bytes));
    expectWarning("^Engine.ini: Scripts cannot be");
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_EngineOptions::writeFailsWithoutTheFolder()
{
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    expectWarning("^cannot open");
    QVERIFY(!unusual().write());
    QVERIFY(!m_folder->exists(u"AppData"_s));
}

void tst_EngineOptions::hosts_data()
{
    QTest::addColumn<bool>("usable");
    QTest::newRow("proxy.example") << true;
    QTest::newRow("127.0.0.1") << true;
    QTest::newRow("::1") << true;
    QTest::newRow("b\u00fccher.example") << true;
    QTest::newRow("") << false;
    QTest::newRow("two words") << false;
    QTest::newRow("proxy.example:80") << false;
    QTest::newRow("http://proxy.example") << false;
    QTest::newRow("a/b") << false;
}

void tst_EngineOptions::hosts()
{
    QTEST(EngineOptionText::isHost(QString::fromUtf8(QTest::currentDataTag())), "usable");
}

void tst_EngineOptions::languageLists_data()
{
    QTest::addColumn<bool>("usable");
    QTest::newRow("de") << true;
    QTest::newRow("de-AT, de,en") << true;
    QTest::newRow("zh-Hant-TW") << true;
    QTest::newRow("") << false;
    QTest::newRow(",de") << false;
    QTest::newRow("de;q=0.5") << false;
    QTest::newRow("Deutsch und Englisch") << false;
    QTest::newRow("de-") << false;
}

void tst_EngineOptions::languageLists()
{
    QTEST(EngineOptionText::isLanguageList(QString::fromUtf8(QTest::currentDataTag())), "usable");
}

void tst_EngineOptions::userAgentsAreHeaderText()
{
    QVERIFY(EngineOptionText::isUserAgent(u"Mozilla/5.0 (~)"_s));
    QVERIFY(!EngineOptionText::isUserAgent(u"one\r\nCookie: two"_s));
    QVERIFY(!EngineOptionText::isUserAgent(u"\u00fc"_s));
    QVERIFY(!EngineOptionText::isUserAgent({}));
}

void tst_EngineOptions::foldersAreAbsolute()
{
    QVERIFY(EngineOptionText::isFolder(QDir::tempPath()));
    QVERIFY(!EngineOptionText::isFolder(u"Downloads"_s));
    QVERIFY(!EngineOptionText::isFolder({}));
    QVERIFY(!EngineOptionText::isFolder(QDir::rootPath() + u'\n'));
}

void tst_EngineOptions::cookieFileThatIsNone()
{
    QCOMPARE(readCookieFile(m_folder->file(u"missing"_s)).size(), 0);
    QVERIFY(m_folder->write(u"Cookies"_s, QByteArray(5000, 'x')));
    expectWarning("Cookies");
    QCOMPARE(readCookieFile(m_folder->file(u"Cookies"_s)).size(), 0);
}

QTEST_MAIN(tst_EngineOptions)
#include "tst_engineoptions.moc"
