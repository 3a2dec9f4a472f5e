#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sys/wait.h>
#include <unistd.h>

#include "FileFaults.h"
#include "IniStore.h"
#include "UrlProfile.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldBytes =
    "[Profile_URLS]\r\nURL1=http://old.example/\r\n[URL_Count]\r\nCount=1\r\n";
const QStringList newAddresses{u"http://new.example/"_s, u"http://second.example/"_s};
const QByteArray newBytes = "[Profile_URLS]\r\nURL1=http://new.example/\r\n"
                            "URL2=http://second.example/\r\n[URL_Count]\r\nCount=2\r\n";
const QByteArray three =
    "[Profile_URLS]\r\nURL1=a\r\nURL2=b\r\nURL3=c\r\n[URL_Count]\r\nCount=3\r\n";

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What the keys hold, read one by one.
QStringList oneByOne(const QString &path, qint32 count)
{
    QStringList result;
    for (qint32 i = 1; i <= count; ++i) {
        const QString value = readIni(u"Profile_URLS"_s, u"URL"_s + QString::number(i), {}, path);
        if (!value.isEmpty())
            result.append(value);
    }
    return result;
}

}

/// Profile files as bytes.
class tst_UrlProfile : public QObject {
    Q_OBJECT

private slots:
    void init();
    void textIsExact();
    void noWindowAtAll();
    void addressMakesNoLineOfItsOwn();
    void savedAddressesComeBack();
    void reading_data();
    void reading();
    void counts_data();
    void counts();
    void hugeCountEndsAtOnce();
    void megabyteAddressIsCut();
    void notAFile();
    void unreadableFile();
    void folderIsNeverReplaced();
    void missingFolderIsNotMade();
    void failedOperationLeavesTheOldFile_data();
    void failedOperationLeavesTheOldFile();
    void interruptedSaveLeavesTheOldOrTheNewFile();

private:
    QString path() const { return m_folder->filePath(u"x.orp"_s); }
    void write(const QByteArray &bytes) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_UrlProfile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_UrlProfile::write(const QByteArray &bytes) const
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void tst_UrlProfile::textIsExact()
{
    QCOMPARE(UrlProfile::text({u"about:blank"_s, u""_s, u"file:///C:/pages/index.htm"_s}),
             u"[Profile_URLS]\r\nURL1=about:blank\r\nURL2=\r\nURL3=file:///C:/pages/index.htm\r\n"
             u"[URL_Count]\r\nCount=3\r\n"_s);
    QVERIFY(UrlProfile::save(path(), newAddresses));
    QCOMPARE(contents(path()), newBytes);
}

void tst_UrlProfile::noWindowAtAll()
{
    QCOMPARE(UrlProfile::text({}), u"[Profile_URLS]\r\n[URL_Count]\r\nCount=0\r\n"_s);
}

void tst_UrlProfile::addressMakesNoLineOfItsOwn()
{
    QVERIFY(UrlProfile::save(path(), {u"a\r\n[URL_Count]\rCount=9\n"_s + QChar(0) + u'b'}));
    QCOMPARE(contents(path()),
             "[Profile_URLS]\r\nURL1=a [URL_Count] Count=9  b\r\n[URL_Count]\r\nCount=1\r\n");
    QCOMPARE(UrlProfile::count(path()), 1);
}

void tst_UrlProfile::savedAddressesComeBack()
{
    const QStringList odd{u"http://h/?a=b&c=d=e"_s,
                          u"http://h/;x;y"_s,
                          u"http://h/p#part"_s,
                          u"\"http://h/quoted\""_s,
                          u"'single'"_s,
                          u"http://h/Gr\u00fc\u00dfe"_s,
                          u"http://\u65e5\u672c/\U0001F600"_s,
                          u"[section]"_s,
                          u";no comment"_s,
                          u"URL1=URL2"_s,
                          u"http://h/a b%20c"_s,
                          u"=leading"_s};
    QVERIFY(UrlProfile::save(path(), odd));
    QCOMPARE(UrlProfile::count(path()), odd.size());
    QCOMPARE(UrlProfile::addresses(path(), qint32(odd.size())), odd);
}

void tst_UrlProfile::reading_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint32>("count");
    QTest::addColumn<QStringList>("expected");
    const QStringList abc{u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("as written") << three << 3 << abc;
    QTest::newRow("line feeds") << QByteArray(three).replace("\r\n", "\n") << 3 << abc;
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + three << 3 << abc;
    QTest::newRow("no line end at the end") << three.chopped(2) << 3 << abc;
    QTest::newRow("other order and case") << QByteArray(
        "[url_count]\ncOUNT = 3 \n[PROFILE_urls]\nother=1\nurl3=c\n Url1 = a\nURL2\t=b")
                                          << 3 << abc;
    QTest::newRow("Windows-1252") << QByteArray("[Profile_URLS]\nURL1=gr\xFC\xDF\x80\n"
                                                "[URL_Count]\nCount=1")
                                  << 1 << QStringList{u"gr\u00fc\u00df\u20ac"_s};
    QTest::newRow("empty one") << QByteArray("[Profile_URLS]\nURL1=a\nURL2=\nURL3=c\n"
                                             "[URL_Count]\nCount=3")
                               << 3 << QStringList{u"a"_s, u"c"_s};
    QTest::newRow("missing one") << QByteArray("[Profile_URLS]\nURL1=a\nURL3=c\n"
                                               "[URL_Count]\nCount=3")
                                 << 3 << QStringList{u"a"_s, u"c"_s};
    QTest::newRow("beyond the count")
        << QByteArray(three).replace("Count=3", "Count=2") << 2 << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("count too large")
        << QByteArray(three).replace("Count=3", "Count=50") << 50 << abc;
    QTest::newRow("other names for numbers")
        << QByteArray("[Profile_URLS]\nURL01=x\nURL0=x\nURL+1=x\nURL=x\nURL1x=x\nURL1.0=x\n"
                      "URL99999999999=x\nURL 2=x\nURL2=b\n[URL_Count]\nCount=3")
        << 3 << QStringList{u"b"_s};
    QTest::newRow("keys of another section")
        << QByteArray("[Other]\nURL1=x\n[Profile_URLS]\nURL2=b\n[Profile_URLS]\nURL3=x\n"
                      "[URL_Count]\nCount=3")
        << 3 << QStringList{u"b"_s};
    QTest::newRow("key twice") << QByteArray("[Profile_URLS]\nURL1=a\nURL1=x\nURL2=\nURL2=x\n"
                                             "[URL_Count]\nCount=2")
                               << 2 << QStringList{u"a"_s};
    QTest::newRow("comment") << QByteArray(
        "[Profile_URLS]\n;URL1=x\nURL2=b;c\n[URL_Count]\nCount=2")
                             << 2 << QStringList{u"b;c"_s};
    QTest::newRow("nothing") << QByteArray() << 0 << QStringList();
    QTest::newRow("rubbish") << QByteArray::fromHex(
        "7f454c4602010100ff00fe0d0a5b5d3d3d0a55524c313d")
                             << 0 << QStringList();
}

void tst_UrlProfile::reading()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint32, count);
    QFETCH(QStringList, expected);
    write(bytes);
    QCOMPARE(UrlProfile::count(path()), count);
    QCOMPARE(UrlProfile::addresses(path(), count), expected);
    QCOMPARE(oneByOne(path(), count), expected);
}

void tst_UrlProfile::counts_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<qint32>("expected");
    QTest::newRow("number") << QByteArray("12") << 12;
    QTest::newRow("blanks") << QByteArray("  7 ") << 7;
    QTest::newRow("sign") << QByteArray("+3") << 3;
    QTest::newRow("negative") << QByteArray("-4") << -4;
    QTest::newRow("half to even") << QByteArray("2.5") << 2;
    QTest::newRow("fraction") << QByteArray("2.6") << 3;
    QTest::newRow("text") << QByteArray("many") << 0;
    QTest::newRow("number and text") << QByteArray("3 pages") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("zero") << QByteArray("0") << 0;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("too large") << QByteArray("2147483648") << 0;
    QTest::newRow("far too large") << QByteArray("1e300") << 0;
    QTest::newRow("too small") << QByteArray("-2147483649") << 0;
}

void tst_UrlProfile::counts()
{
    QFETCH(QByteArray, stored);
    QFETCH(qint32, expected);
    write("[URL_Count]\r\nCount=" + stored + "\r\n");
    QCOMPARE(UrlProfile::count(path()), expected);
    QVERIFY(UrlProfile::addresses(path(), expected).isEmpty());
}

void tst_UrlProfile::hugeCountEndsAtOnce()
{
    write("[Profile_URLS]\nURL1999999999=last\nURL1=first\n[URL_Count]\nCount=2000000000\n");
    QCOMPARE(UrlProfile::count(path()), 2000000000);
    QCOMPARE(UrlProfile::addresses(path(), 2000000000), (QStringList{u"first"_s, u"last"_s}));
    QVERIFY(UrlProfile::addresses(path(), -1).isEmpty());
}

void tst_UrlProfile::megabyteAddressIsCut()
{
    const QString huge = u"http://h/"_s + QString(1 << 20, u'x');
    QVERIFY(UrlProfile::save(path(), {huge, u"b"_s}));
    QCOMPARE(UrlProfile::addresses(path(), 2), (QStringList{huge.left(999), u"b"_s}));
}

void tst_UrlProfile::notAFile()
{
    QCOMPARE(UrlProfile::count(path()), 0);
    QVERIFY(UrlProfile::addresses(path(), 3).isEmpty());
    QVERIFY(QDir().mkpath(path()));
    QCOMPARE(UrlProfile::count(path()), 0);
    QVERIFY(UrlProfile::addresses(path(), 3).isEmpty());
}

/// No account may read through a link that leads to itself; every account but the system's own is
/// kept out by the rights.
void tst_UrlProfile::unreadableFile()
{
    QVERIFY(QFile::link(path(), path()));
    QCOMPARE(UrlProfile::count(path()), 0);
    QVERIFY(UrlProfile::addresses(path(), 3).isEmpty());
    QVERIFY(QFile::remove(path()));
    write(oldBytes);
    QVERIFY(QFile::setPermissions(path(), QFile::WriteOwner));
    if (QFile(path()).open(QIODevice::ReadOnly))
        return;
    QCOMPARE(UrlProfile::count(path()), 0);
    QVERIFY(UrlProfile::addresses(path(), 3).isEmpty());
}

void tst_UrlProfile::folderIsNeverReplaced()
{
    QVERIFY(QDir().mkpath(path()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QVERIFY(!UrlProfile::save(path(), newAddresses));
    QVERIFY(QFileInfo(path()).isDir());
}

void tst_UrlProfile::missingFolderIsNotMade()
{
    const QString inside = m_folder->filePath(u"none/x.orp"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot open"_s));
    QVERIFY(!UrlProfile::save(inside, newAddresses));
    QVERIFY(!QFileInfo::exists(m_folder->filePath(u"none"_s)));
}

void tst_UrlProfile::failedOperationLeavesTheOldFile_data()
{
    QTest::addColumn<FileFaults::Kind>("kind");
    QTest::addColumn<int>("leastFailures");
    // Making, writing and putting the file in place can each fail.
    QTest::newRow("one operation") << FileFaults::Kind::Fail << 3;
    QTest::newRow("full disk") << FileFaults::Kind::FullDisk << 1;
}

void tst_UrlProfile::failedOperationLeavesTheOldFile()
{
    QFETCH(FileFaults::Kind, kind);
    QFETCH(int, leastFailures);
    int failures = 0;
    for (int at = 1;; ++at) {
        write(oldBytes);
        FileFaults::arm(kind, at);
        const bool saved(UrlProfile::save(path(), newAddresses));
        const bool reached = FileFaults::disarm();
        QCOMPARE(contents(path()), saved ? newBytes : oldBytes);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{u"x.orp"_s});
        failures += saved ? 0 : 1;
        if (!reached)
            break;
    }
    QVERIFY(failures >= leastFailures);
}

void tst_UrlProfile::interruptedSaveLeavesTheOldOrTheNewFile()
{
    int interruptions = 0;
    for (int at = 1;; ++at) {
        write(oldBytes);
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            FileFaults::arm(FileFaults::Kind::Kill, at);
            UrlProfile::save(path(), newAddresses).leaveToLog();
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        const QByteArray left = contents(path());
        if (WEXITSTATUS(status) != FileFaults::killed) {
            QCOMPARE(left, newBytes);
            break;
        }
        ++interruptions;
        QVERIFY(left == oldBytes || left == newBytes);
        QVERIFY2(UrlProfile::save(path(), newAddresses), "a dead writer holds up nobody");
        QCOMPARE(contents(path()), newBytes);
    }
    QVERIFY(interruptions >= 3);
}

QTEST_GUILESS_MAIN(tst_UrlProfile)
#include "tst_urlprofile.moc"
