// The program as it is installed: its user's files are among his settings, and its own folders stay
// as they are.
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "TestServer.h"

using namespace Qt::StringLiterals;

class tst_InstalledProgram : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstStart();
    void settingsAreTheUsers();
    void wordsAreInHisLanguage();
    void wordsMakeNothing();
    void homeThatMayNotBeWrittenTo();

private:
    QString at(const QString &name) const { return m_root->filePath(name); }
    QString user(const QString &name) const { return at("home/.config/orvane/"_L1 + name); }
    static bool write(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// All files of the installed program, with what tells of a change.
    QStringList installed() const
    {
        QStringList all;
        QDirIterator files(at(u"usr"_s), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QFileInfo file(files.next());
            all.append(file.filePath() + u' ' + QString::number(file.size()) + u' '
                       + file.lastModified().toString(Qt::ISODateWithMs));
        }
        all.sort();
        return all;
    }
    QProcess &start(const QStringList &arguments);
    bool opens(const char *path) const
    {
        return QTest::qWaitFor([this, path] { return m_server->count(path) == 1; }, 60'000);
    }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<QProcess> m_program;
};

void tst_InstalledProgram::init()
{
    m_server = std::make_unique<TestServer>();
    m_server->page("/home", "<title>home</title>");
    m_server->page("/one", "<title>one</title>");
    m_root = std::make_unique<QTemporaryDir>();
    for (const char *folder : {"usr/bin", "usr/share/orvane/AppData/Languages", "home", "session"})
        QVERIFY(QDir().mkpath(at(QString::fromLatin1(folder))));
    QFile::setPermissions(at(u"session"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(QFile::copy(QStringLiteral(ORVANE_PROGRAM), at(u"usr/bin/orvane"_s)));
    QVERIFY(write(at(u"usr/share/orvane/AppData/SearchEngines.ini"_s), "[Engines]\r\n"));
    QVERIFY(write(at(u"usr/share/orvane/AppData/Languages/German.ini"_s),
                  "[CommandLine]\r\nstrUsage=Aufruf: %1\r\n"));
}

void tst_InstalledProgram::cleanup()
{
    m_program.reset();
    m_root.reset();
    m_server.reset();
}

QProcess &tst_InstalledProgram::start(const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, at(u"home"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, at(u"session"_s));
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.remove(QLatin1String(name));
    m_program = std::make_unique<QProcess>();
    m_program->setProcessEnvironment(environment);
    m_program->start(at(u"usr/bin/orvane"_s), arguments);
    return *m_program;
}

void tst_InstalledProgram::firstStart()
{
    const QStringList before = installed();
    start({m_server->url(u"/one"_s)});
    QVERIFY(opens("/one"));
    QCOMPARE(read(user(u"AppData/SearchEngines.ini"_s)), "[Engines]\r\n"_ba);
    QVERIFY(QFileInfo(user(u"Profiles"_s)).isDir());
    QTRY_VERIFY_WITH_TIMEOUT(read(user(u"AppData/History.txt"_s)).contains("/one"), 30'000);
    QCOMPARE(installed(), before);
}

void tst_InstalledProgram::settingsAreTheUsers()
{
    QVERIFY(write(user(u"AppData/Settings.ini"_s),
                  "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nHome-URL="
                      + m_server->url(u"/home"_s).toUtf8() + "\r\n"));
    start({});
    QVERIFY(opens("/home"));
}

void tst_InstalledProgram::wordsAreInHisLanguage()
{
    QVERIFY(write(user(u"AppData/Settings.ini"_s), "[Options]\r\nLanguage=German\r\n"));
    QVERIFY(
        write(user(u"AppData/Languages/German.ini"_s), "[CommandLine]\r\nstrUsage=Aufruf: %1\r\n"));
    QProcess &program = start({u"--help"_s});
    QVERIFY(program.waitForFinished(30'000));
    QVERIFY(program.readAllStandardOutput().startsWith("Aufruf: orvane"));
}

/// As the superuser asks for them when he installs it.
void tst_InstalledProgram::wordsMakeNothing()
{
    for (const QString &option : {u"--version"_s, u"--help"_s}) {
        QProcess &program = start({option});
        QVERIFY(program.waitForFinished(30'000));
        QVERIFY(program.readAllStandardOutput().contains("rvane"));
        QVERIFY(!QFileInfo::exists(user({})));
    }
}

/// Then what ships is used as it is, and nothing can be kept.
void tst_InstalledProgram::homeThatMayNotBeWrittenTo()
{
    // A file in the place of the folder stops the superuser, too.
    QVERIFY(write(at(u"home/.config"_s), "in the way"));
    const QStringList before = installed();
    start({m_server->url(u"/one"_s)});
    QVERIFY(opens("/one"));
    QCOMPARE(m_program->state(), QProcess::Running);
    QCOMPARE(read(at(u"home/.config"_s)), "in the way"_ba);
    QCOMPARE(installed(), before);
}

QTEST_GUILESS_MAIN(tst_InstalledProgram)
#include "tst_installedprogram.moc"
