#include "IniStore.h"
#include "TempAppFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStringConverter>
#include <QTest>
#include <QThread>
#include <memory>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

class tst_inistore : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readsByTheRules_data();
    void readsByTheRules();
    void missingFileGivesTheDefault();
    void emptyValueBeatsTheDefault();
    void cutsAt999Characters();
    void readsTextOfEitherEncoding();

    void writesByTheRules_data();
    void writesByTheRules();
    void newFileIsUtf8WithCrLf();
    void missingFolderIsNotMade();
    void valuesRoundTrip_data();
    void valuesRoundTrip();
    void valueCannotMakeLines();
    void namesThatNoLineHoldsAreRefused_data();
    void namesThatNoLineHoldsAreRefused();
    void keepsTheEncoding();
    void becomesUtf8WhereItMust();
    void chanceUtf8IsNotWritten();
    void entriesAreOneReplacement();
    void sameBytesAreNotWritten();

    void linkStaysALink();
    void permissionsStay();
    void unreadableFileIsNotReplaced();
    void directoryOrPipeInItsPlace();
    void leavesNothingBehind();
    void sixteenBitsAreReadAndNeverWrittenInto_data();
    void sixteenBitsAreReadAndNeverWrittenInto();
    void writersAtOnceLoseNothing();

    void badFiles_data();
    void badFiles();

private:
    QString path() const { return m_folder->settingsFile(); }
    QString read(const char *key) const
    {
        return readIni(u"S"_s, QString::fromLatin1(key), u"default"_s, path());
    }
    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_inistore::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_inistore::cleanup()
{
    m_folder.reset();
}

void tst_inistore::readsByTheRules_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const QByteArray &file, const QString &value) {
        QTest::newRow(name) << file << value;
    };
    row("plain", "[S]\r\nk=v\r\n", u"v"_s);
    row("bare LF", "[S]\nk=v\n", u"v"_s);
    row("no last line end", "[S]\nk=v", u"v"_s);
    row("any case", "[s]\nK=v\n", u"v"_s);
    row("blanks around", " [ S ]\n \tk \t=  v w \t\r\n", u"v w"_s);
    row("text after the first equals sign", "[S]\nk=a=b\n", u"a=b"_s);
    row("quotes stay", "[S]\nk=\"v\"\n", u"\"v\""_s);
    row("semicolon in a value", "[S]\nk=v ; no comment\n", u"v ; no comment"_s);
    row("comment line", "[S]\n;k=x\nk=v\n", u"v"_s);
    row("hash is no comment", "[S]\n#k=x\nk=v\n", u"v"_s);
    row("line without equals sign", "[S]\nk\nk=v\n", u"v"_s);
    row("first key wins", "[S]\nk=v\nk=x\n", u"v"_s);
    row("first section wins", "[S]\nk=v\n[T]\n[S]\nk=x\n", u"v"_s);
    row("only the first section counts", "[S]\nj=v\n[S]\nk=x\n", u"default"_s);
    row("section ends at its bracket", "[S]x]\nk=v\n", u"v"_s);
    row("missing bracket", "[S\nk=v\n", u"v"_s);
    row("key before any section", "k=x\n[S]\n", u"default"_s);
    row("other section", "[T]\nk=x\n[S]\n[U]\nk=y\n", u"default"_s);
    row("bracket inside a line", "[T]\nx [S]\nk=x\n", u"default"_s);
    row("section in a comment", ";[S]\nk=x\n", u"default"_s);
    row("section of a longer name", "[SS]\nk=x\n[S]\nkk=y\n", u"default"_s);
    row("byte order mark", "\xef\xbb\xbf[S]\nk=v\n", u"v"_s);
    row("byte order mark, old code page", "\xef\xbb\xbf[S]\nk=\xe9\n", u"\u00e9"_s);
    row("empty file", "", u"default"_s);
    row("NUL ends a value", QByteArray("[S]\nk=v\0x\n", 10), u"v"_s);
    row("NUL in the name", QByteArray("[S]\nk\0=x\n", 9), u"default"_s);
}

void tst_inistore::readsByTheRules()
{
    QFETCH(const QByteArray, file);
    QFETCH(const QString, value);
    QVERIFY(m_folder->writeSettings(file));
    QCOMPARE(read("k"), value);
}

void tst_inistore::missingFileGivesTheDefault()
{
    QCOMPARE(read("k"), u"default"_s);
    QCOMPARE(readIni(u"S"_s, u"k"_s, QString(), path()), QString());
    QCOMPARE(readIni(u"S"_s, u"k"_s, u"default"_s, QString()), u"default"_s);
    QVERIFY(!m_folder->exists(u"AppData/Settings.ini"_s));
}

void tst_inistore::emptyValueBeatsTheDefault()
{
    QVERIFY(m_folder->writeSettings("[S]\r\nk=\r\nj=  \r\nl="));
    QCOMPARE(read("k"), QString());
    QCOMPARE(read("j"), QString());
    QCOMPARE(read("l"), QString());
}

void tst_inistore::cutsAt999Characters()
{
    const QString whole(999, u'x');
    QVERIFY(m_folder->setSetting(u"S"_s, u"k"_s, whole));
    QCOMPARE(read("k"), whole);
    QVERIFY(m_folder->setSetting(u"S"_s, u"k"_s, whole + u'y'));
    QCOMPARE(read("k"), whole);
    // Characters, not bytes and not halves of a surrogate pair.
    const QString accents(1200, u'\u00e9');
    QVERIFY(m_folder->setSetting(u"S"_s, u"k"_s, accents));
    QCOMPARE(read("k"), accents.first(999));
    const QString faces = u"\U0001F600"_s.repeated(1200);
    QVERIFY(m_folder->setSetting(u"S"_s, u"k"_s, faces));
    QCOMPARE(read("k"), faces.first(2 * 999));
    QVERIFY(m_folder->setSetting(u"S"_s, u"k"_s, u'x' + faces));
    QCOMPARE(read("k"), u'x' + faces.first(2 * 998));
    QCOMPARE(readIni(u"S"_s, u"none"_s, whole + u'y', path()), whole);
}

void tst_inistore::readsTextOfEitherEncoding()
{
    QVERIFY(m_folder->writeSettings("[Gr\xc3\xb6\xc3\x9f"
                                    "e]\nT\xc3\xbcr=\xe2\x82\xac 5\n"));
    QCOMPARE(readIni(u"GR\u00d6\u00dfE"_s, u"t\u00dcR"_s, QString(), path()), u"\u20ac 5"_s);
    QVERIFY(m_folder->writeSettings("[Gr\xf6\xdf"
                                    "e]\nT\xfcr=\x80 5\n"));
    QCOMPARE(readIni(u"GR\u00d6\u00dfE"_s, u"t\u00dcR"_s, QString(), path()), u"\u20ac 5"_s);
}

void tst_inistore::writesByTheRules_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << before << after;
    };
    row("replaces in place", "[S]\r\na=1\r\nk=old\r\nb=2\r\n", "[S]\r\na=1\r\nk=v\r\nb=2\r\n");
    row("keeps case and blanks", "[s]\n K = old \nb=2\n", "[s]\n K = v \nb=2\n");
    row("fills an empty value", "[S]\r\nk=\r\n", "[S]\r\nk=v\r\n");
    row("fills an empty value at the end", "[S]\r\nk=", "[S]\r\nk=v");
    row("only the first key", "[S]\nk=1\nk=2\n", "[S]\nk=v\nk=2\n");
    row("after the section's last key", "[S]\n;c\na=1\n\n;end\n\n[T]\nk=x\n",
        "[S]\n;c\na=1\nk=v\n\n;end\n\n[T]\nk=x\n");
    row("section without keys", "[S]\r\n; c\r\n\r\n[T]\r\n", "[S]\r\nk=v\r\n; c\r\n\r\n[T]\r\n");
    row("missing last line end", "[S]\na=1", "[S]\na=1\nk=v\n");
    row("missing last line end after the section", "[S]", "[S]\r\nk=v\r\n");
    row("new section, no blank line", "[T]\r\na=1\r\n", "[T]\r\na=1\r\n[S]\r\nk=v\r\n");
    row("new section, missing line end", "[T]\na=1", "[T]\na=1\n[S]\nk=v\n");
    row("new section after blank lines", "[T]\n\n\n", "[T]\n\n\n[S]\nk=v\n");
    row("mixed line ends", "[S]\na=1\r\n\nb\r\n", "[S]\na=1\r\nk=v\n\nb\r\n");
    row("first section of the name", "[S]\na=1\n[S]\nk=x\n", "[S]\na=1\nk=v\n[S]\nk=x\n");
    row("byte order mark", "\xef\xbb\xbf[S]\nk=x\n", "\xef\xbb\xbf[S]\nk=v\n");
    row("byte order mark alone", "\xef\xbb\xbf", "\xef\xbb\xbf[S]\r\nk=v\r\n");
    row("empty file", "", "[S]\r\nk=v\r\n");
    row("NUL elsewhere", QByteArray("\0[x\n[S]\nk=x\n", 12), QByteArray("\0[x\n[S]\nk=v\n", 12));
    row("NUL in the value", QByteArray("[S]\nk=a\0b\n", 10), "[S]\nk=v\n");
    row("bytes of the old code page", "[S]\n\xe9=\xff\x81\nk=\xe9\n", "[S]\n\xe9=\xff\x81\nk=v\n");
}

void tst_inistore::writesByTheRules()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    QVERIFY(m_folder->writeSettings(before));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QCOMPARE(m_folder->readSettings(), after);
    QCOMPARE(read("k"), u"v"_s);
}

void tst_inistore::newFileIsUtf8WithCrLf()
{
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"\u20ac"_s, path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\r\nk=\xe2\x82\xac\r\n"));
}

void tst_inistore::missingFolderIsNotMade()
{
    const QString file = m_folder->file(u"None/x.ini"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot open"_s));
    QVERIFY(!writeIni(u"S"_s, u"k"_s, u"v"_s, file));
    QVERIFY(!m_folder->exists(u"None"_s));
}

void tst_inistore::valuesRoundTrip_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("quotes") << u"\"quoted\""_s;
    QTest::newRow("single quote") << u"'"_s;
    QTest::newRow("semicolon") << u"; no comment"_s;
    QTest::newRow("bracket") << u"[T]"_s;
    QTest::newRow("equals") << u"=a=b="_s;
    QTest::newRow("empty") << u""_s;
    QTest::newRow("address") << u"http://www.example.com/a?b=c&d=%20#e"_s;
    QTest::newRow("other scripts") << u"\u65e5\u672c \u0431 \U0001F600"_s;
    QTest::newRow("no-break space") << u"\u00a0x\u00a0"_s;
    QTest::newRow("line separators that end no line") << u"a\u2028b\u0085c\fd\ve"_s;
    QTest::newRow("byte order mark") << u"\ufeffx"_s;
}

void tst_inistore::valuesRoundTrip()
{
    QFETCH(const QString, value);
    for (const QByteArray before : {"", "[S]\nk=x\n", "[S]\nk=\xe9\n[T]\na=\xe9\n"}) {
        QVERIFY(m_folder->writeSettings(before));
        QVERIFY(writeIni(u"S"_s, u"k"_s, value, path()));
        QCOMPARE(read("k"), value);
    }
}

void tst_inistore::valueCannotMakeLines()
{
    QVERIFY(m_folder->writeSettings("[S]\nk=x\nz=1\n"));
    const QString value = u"a\r\nz=2\n[T]\rz=3"_s + QChar(0) + u"b"_s;
    QVERIFY(writeIni(u"S"_s, u"k"_s, value, path()));
    QCOMPARE(read("k"), u"a z=2 [T] z=3 b"_s);
    QCOMPARE(read("z"), u"1"_s);
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\nk=a z=2 [T] z=3 b\nz=1\n"));
}

void tst_inistore::namesThatNoLineHoldsAreRefused_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::newRow("section with a line break") << u"S\n[T]"_s << u"k"_s;
    QTest::newRow("section with a bracket") << u"S]T"_s << u"k"_s;
    QTest::newRow("key with a line break") << u"S"_s << u"a\nk"_s;
    QTest::newRow("key with a carriage return") << u"S"_s << u"a\rk"_s;
    QTest::newRow("key with NUL") << u"S"_s << u"a"_s + QChar(0);
    QTest::newRow("key with an equals sign") << u"S"_s << u"a=b"_s;
    QTest::newRow("key like a section") << u"S"_s << u"[a"_s;
    QTest::newRow("key like a comment") << u"S"_s << u" ;a"_s;
    QTest::newRow("empty key") << u"S"_s << u" "_s;
}

void tst_inistore::namesThatNoLineHoldsAreRefused()
{
    QFETCH(const QString, section);
    QFETCH(const QString, key);
    QVERIFY(m_folder->writeSettings("[S]\nk=x\n"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no INI file can hold"_s));
    QVERIFY(!writeIni(section, key, u"v"_s, path()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no INI file can hold"_s));
    QVERIFY(!writeIniEntries({{u"S"_s, u"k"_s, u"v"_s}, {section, key, u"v"_s}}, path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\nk=x\n"));
    QCOMPARE(readIni(section, key, u"default"_s, path()), u"default"_s);
}

void tst_inistore::keepsTheEncoding()
{
    QVERIFY(m_folder->writeSettings("[S]\na=\xe9\nk=x\n"));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"\u20ac\u00fc"_s, path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\na=\xe9\nk=\x80\xfc\n"));
    QCOMPARE(read("k"), u"\u20ac\u00fc"_s);
}

void tst_inistore::becomesUtf8WhereItMust()
{
    QVERIFY(m_folder->writeSettings("[S]\na=\xe9\x81\nk=x\n"));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"\u0431"_s, path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\na=\xc3\xa9\xc2\x81\nk=\xd0\xb1\n"));
    QCOMPARE(read("a"), u"\u00e9\u0081"_s);
    // The mark stays a mark, so that the first section is found as before.
    QVERIFY(m_folder->writeSettings("\xef\xbb\xbf[S]\na=\xe9\nk=x\n"));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"\u0431"_s, path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("\xef\xbb\xbf[S]\na=\xc3\xa9\nk=\xd0\xb1\n"));
}

void tst_inistore::chanceUtf8IsNotWritten()
{
    // Written in the old code page, both files would be valid UTF-8 and read as other text.
    QVERIFY(m_folder->writeSettings("[S]\nk=\xe9\n"));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"\u00c3\u00a9"_s, path()));
    QCOMPARE(read("k"), u"\u00c3\u00a9"_s);
    QVERIFY(m_folder->writeSettings("[S]\na=\xc3\xa9\nk=\xe9\n"));
    QCOMPARE(read("a"), u"\u00c3\u00a9"_s);
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"plain"_s, path()));
    QCOMPARE(read("a"), u"\u00c3\u00a9"_s);
}

void tst_inistore::entriesAreOneReplacement()
{
    QVERIFY(m_folder->writeSettings("[S]\nk=x\n"));
    QVERIFY(writeIniEntries({{u"S"_s, u"a"_s, u"1"_s},
                             {u"T"_s, u"b"_s, u"2"_s},
                             {u"S"_s, u"k"_s, u"3"_s},
                             {u"S"_s, u"a"_s, u"4"_s}},
                            path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\nk=3\na=4\n[T]\nb=2\n"));
    QVERIFY(writeIniEntries({}, path()));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\nk=3\na=4\n[T]\nb=2\n"));
}

void tst_inistore::sameBytesAreNotWritten()
{
    QVERIFY(m_folder->writeSettings("[S]\nk=v\n"));
    // A replaced file would be another one: its time would be the time of the replacement.
    QFile file(path());
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QDateTime old = QDateTime::currentDateTimeUtc().addDays(-2);
    QVERIFY(file.setFileTime(old, QFileDevice::FileModificationTime));
    file.close();
    const QDateTime before = QFileInfo(path()).lastModified();
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QCOMPARE(QFileInfo(path()).lastModified(), before);
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"w"_s, path()));
    QVERIFY(QFileInfo(path()).lastModified() > before);
}

void tst_inistore::linkStaysALink()
{
    QVERIFY(m_folder->write(u"Real/real.ini"_s, "[S]\nk=x\n"));
    QVERIFY(QFile::link(m_folder->file(u"Real/real.ini"_s), path()));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QVERIFY(QFileInfo(path()).isSymLink());
    QCOMPARE(m_folder->read(u"Real/real.ini"_s), QByteArray("[S]\nk=v\n"));
    // A link to a file still to be made.
    const QString dangling = m_folder->file(u"AppData/dangling.ini"_s);
    QVERIFY(QFile::link(m_folder->file(u"Real/new.ini"_s), dangling));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"v"_s, dangling));
    QVERIFY(QFileInfo(dangling).isSymLink());
    QCOMPARE(m_folder->read(u"Real/new.ini"_s), QByteArray("[S]\r\nk=v\r\n"));
}

void tst_inistore::permissionsStay()
{
    QVERIFY(m_folder->writeSettings("[S]\nk=x\n"));
    const QFile::Permissions wanted = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(path(), wanted));
    const QFile::Permissions before = QFile::permissions(path());
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QCOMPARE(QFile::permissions(path()), before);
}

void tst_inistore::unreadableFileIsNotReplaced()
{
#ifdef Q_OS_UNIX
    if (::geteuid() == 0)
        QSKIP("every file can be read as root");
#endif
    QVERIFY(m_folder->writeSettings("[S]\nk=x\n"));
    QVERIFY(QFile::setPermissions(path(), QFile::WriteOwner));
    QCOMPARE(read("k"), u"default"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QVERIFY(!writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(m_folder->readSettings(), QByteArray("[S]\nk=x\n"));
}

void tst_inistore::directoryOrPipeInItsPlace()
{
    QVERIFY(QDir().mkpath(path()));
    QCOMPARE(read("k"), u"default"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QVERIFY(!writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QVERIFY(QFileInfo(path()).isDir());
#ifdef Q_OS_UNIX
    const QString pipe = m_folder->file(u"AppData/pipe.ini"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(readIni(u"S"_s, u"k"_s, u"default"_s, pipe), u"default"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QVERIFY(!writeIni(u"S"_s, u"k"_s, u"v"_s, pipe));
#endif
}

void tst_inistore::leavesNothingBehind()
{
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"v"_s, path()));
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"w"_s, path()));
    const QStringList names =
        QDir(m_folder->file(u"AppData"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    QCOMPARE(names, (QStringList{u"Languages"_s, u"Settings.ini"_s}));
}

void tst_inistore::sixteenBitsAreReadAndNeverWrittenInto_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto encoded = [](QStringConverter::Encoding encoding) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        return QByteArray(encoder(u"[S]\r\nk=gr\u00fcn\r\n"_s));
    };
    QTest::newRow("low byte first") << encoded(QStringConverter::Utf16LE);
    QTest::newRow("high byte first") << encoded(QStringConverter::Utf16BE);
}

void tst_inistore::sixteenBitsAreReadAndNeverWrittenInto()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(m_folder->writeSettings(bytes));
    QCOMPARE(read("k"), u"gr\u00fcn"_s);
    QCOMPARE(readIniValues(u"S"_s, {u"k"_s}, path()), QStringList(u"gr\u00fcn"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is UTF-16"_s));
    const WriteResult one = writeIni(u"S"_s, u"k"_s, u"v"_s, path());
    QVERIFY(one.isFailure(WriteResult::Failure::SixteenBits));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is UTF-16"_s));
    QVERIFY(!writeIniEntries({{u"S"_s, u"a"_s, u"1"_s}, {u"S"_s, u"b"_s, u"2"_s}}, path()));
    QCOMPARE(m_folder->readSettings(), bytes);
}

void tst_inistore::writersAtOnceLoseNothing()
{
    constexpr int writers = 4;
    constexpr int values = 25;
    const QString file = path();
    std::vector<std::unique_ptr<QThread>> threads;
    for (int writer = 0; writer < writers; ++writer) {
        threads.emplace_back(QThread::create([file, writer] {
            for (int i = 0; i < values; ++i) {
                const QString key = u"k%1-%2"_s.arg(writer).arg(i);
                writeIni(u"S"_s, key, QString::number(i), file).leaveToLog();
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait(60000));
    for (int writer = 0; writer < writers; ++writer) {
        for (int i = 0; i < values; ++i) {
            const QString key = u"k%1-%2"_s.arg(writer).arg(i);
            QCOMPARE(readIni(u"S"_s, key, u"lost"_s, file), QString::number(i));
        }
    }
}

void tst_inistore::badFiles_data()
{
    QTest::addColumn<QByteArray>("noise");
    QTest::newRow("ten megabytes") << QByteArray("name=some value of a line\r\n").repeated(380'000);
    QTest::newRow("a line of a million") << "x=" + QByteArray(1'000'000, 'y') + "\r\n";
    QTest::newRow("a million brackets") << QByteArray(1'000'000, '[') + "\r\n";
    QTest::newRow("a million blanks and brackets") << QByteArray(" [").repeated(500'000) + "\n";
    QTest::newRow("NULs") << QByteArray(1'000'000, '\0') + "\n";
    QByteArray random(1'000'000, Qt::Uninitialized);
    QRandomGenerator generator(20260101);
    for (char &byte : random)
        byte = static_cast<char>(generator.bounded(256));
    QTest::newRow("random bytes") << random + "\n";
}

void tst_inistore::badFiles()
{
    QFETCH(const QByteArray, noise);
    QVERIFY(m_folder->writeSettings(noise + "[S]\nk=v\n" + noise));
    QCOMPARE(read("k"), u"v"_s);
    QCOMPARE(read("missing"), u"default"_s);
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"\u00e9"_s, path()));
    QCOMPARE(read("k"), u"\u00e9"_s);
    QVERIFY(writeIni(u"S"_s, u"k"_s, u"w"_s, path()));
    QCOMPARE(read("k"), u"w"_s);
    QCOMPARE(m_folder->readSettings(), noise + "[S]\nk=w\n" + noise);
}

QTEST_GUILESS_MAIN(tst_inistore)
#include "tst_inistore.moc"
