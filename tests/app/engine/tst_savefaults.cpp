#include <QDir>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <csignal>

#include "../PageDialogs.h"
#include "Answer.h"
#include "EngineTest.h"
#include "SaveJob.h"
#include "SmallDisk.h"
#include "SourceJob.h"

using namespace Qt::StringLiterals;

/// What a saved page's source is, and that a save that fails says so once and leaves what was
/// there.
class tst_SaveFaults : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void sourceIsWhatTheServerSent_data();
    void sourceIsWhatTheServerSent();
    void sourceIsTheDocumentsThoughItsAddressChanged();
    void sourceOfAFormsAnswerIsNotAskedFor();
    void sourceThatIsNoLongerGivenIsTheMarkup();
    void sourceThatNeverComesCanBeCancelled();
    void sourceOfALocalFile();

    void readOnlyFolder_data() { kinds(); }
    void readOnlyFolder();
    void readOnlyFolderWithAnOldFile_data() { kinds(); }
    void readOnlyFolderWithAnOldFile();
    void fullDisk_data() { kinds(); }
    void fullDisk();
    void overAnOpenFile_data() { kinds(); }
    void overAnOpenFile();
    void completeReplacesTheOldParts();
    void cancelLeavesNothing();
    void rendererThatDies_data() { kinds(); }
    void rendererThatDies();

private:
    enum Kind { Complete, SingleFile, SourceOnly };

    static void kinds();
    void open(const QString &path);
    void openPageWithPicture();
    void waitForJobs();
    static QStringList in(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static bool write(const QString &file, const QByteArray &bytes)
    {
        QFile target(file);
        return target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size();
    }
    QString path(const QString &name) const { return m_files->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Session> m_session;
};

void tst_SaveFaults::init()
{
    m_files = std::make_unique<QTemporaryDir>();
    m_session = std::make_unique<Session>();
}

void tst_SaveFaults::kinds()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("complete") << int(Complete);
    QTest::newRow("single file") << int(SingleFile);
    QTest::newRow("source only") << int(SourceOnly);
}

void tst_SaveFaults::open(const QString &path)
{
    m_session->start(m_session->server.url(path));
    QTRY_VERIFY(m_session->shows(m_session->server.url(path)));
}

/// More than a small disk holds.
void tst_SaveFaults::openPageWithPicture()
{
    QByteArray picture = "<svg xmlns='http://www.w3.org/2000/svg' width='7' height='5'><!--";
    for (int i = 0; i < 100000; ++i)
        picture += QByteArray::number(i * 7919 % 100003, 36);
    m_session->server.reply("/picture.svg", {200, picture + "--></svg>", "image/svg+xml", {}});
    m_session->server.page("/big",
                           "<title>Big</title><p>words<img src='/picture.svg'><!--"
                               + QByteArray(400'000, 'x') + "-->");
    open(u"/big"_s);
}

void tst_SaveFaults::waitForJobs()
{
    const auto isIdle = [this] {
        const auto &page = PageDialogs::page(*m_session);
        return !page.findChild<SaveJob *>() && !page.findChild<SourceJob *>();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), 30000);
}

void tst_SaveFaults::sourceIsWhatTheServerSent_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("caching");
    QTest::addColumn<int>("requests");
    const QByteArray html = "text/html; charset=utf-8";
    QTest::newRow("without a mark") << QByteArray("<!DOCTYPE html>\r\n<title>A</title>gr\xc3\xbcn")
                                    << html << QByteArray("max-age=60") << 1;
    QTest::newRow("with a mark") << QByteArray("\xEF\xBB\xBF<title>A</title>x") << html
                                 << QByteArray("max-age=60") << 1;
    QTest::newRow("another encoding")
        << QByteArray("<title>A</title>\x80 gr\xfcn")
        << QByteArray("text/html; charset=windows-1252") << QByteArray("max-age=60") << 1;
    QTest::newRow("sixteen bits") << QByteArray("\xff\xfe<\0b\0>\0\xe9\0\n\0", 12)
                                  << QByteArray("text/html") << QByteArray("max-age=60") << 1;
    QTest::newRow("changed by a script")
        << QByteArray("<title>A</title><p id=p>before<script>p.textContent='after'</script>")
        << html << QByteArray("max-age=60") << 1;
    QTest::newRow("stale") << QByteArray("<title>A</title>stale") << html << QByteArray("max-age=0")
                           << 1;
    QTest::newRow("kept nowhere") << QByteArray("<title>A</title>secret") << html
                                  << QByteArray("no-store") << 2;
}

void tst_SaveFaults::sourceIsWhatTheServerSent()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, caching);
    QFETCH(int, requests);
    m_session->server.reply("/source", {200, bytes, type, {{"Cache-Control", caching}}});
    open(u"/source"_s);
    PageDialogs::save(*m_session, path(u"kept.html"_s), SourceOnly);
    waitForJobs();
    QCOMPARE(PageDialogs::read(path(u"kept.html"_s)), bytes);
    QCOMPARE(m_session->server.count("/source"), requests);
}

void tst_SaveFaults::sourceIsTheDocumentsThoughItsAddressChanged()
{
    const QByteArray bytes = "<title>A</title><script>history.pushState(0, '', '/moved')</script>";
    m_session->server.page("/source", bytes);
    m_session->start(m_session->server.url(u"/source"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/moved"_s)));
    PageDialogs::save(*m_session, path(u"kept.html"_s), SourceOnly);
    waitForJobs();
    QCOMPARE(PageDialogs::read(path(u"kept.html"_s)), bytes);
    QCOMPARE(m_session->server.count("/moved"), 0);
}

void tst_SaveFaults::sourceOfAFormsAnswerIsNotAskedFor()
{
    m_session->server.page("/form",
                           "<title>F</title><form id=f method=post action=/answer>"
                           "<input name=n value=v></form>");
    m_session->server.page("/answer", "<title>The answer</title>to the form");
    open(u"/form"_s);
    PageDialogs::page(*m_session).runJavaScript(u"f.submit()"_s);
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/answer"_s)));
    PageDialogs::save(*m_session, path(u"kept.html"_s), SourceOnly);
    waitForJobs();
    QCOMPARE(m_session->server.count("/answer"), 1);
    const QByteArray kept = PageDialogs::read(path(u"kept.html"_s));
    QVERIFY(kept.contains("to the form"));
}

void tst_SaveFaults::sourceThatIsNoLongerGivenIsTheMarkup()
{
    m_session->server.reply("/source",
                            {200,
                             "<title>A</title><p>gr\xfcn",
                             "text/html; charset=windows-1252",
                             {{"Cache-Control", "no-store"}}});
    open(u"/source"_s);
    m_session->server.reply("/source", {404, "gone", "text/html", {}});
    PageDialogs::save(*m_session, path(u"kept.html"_s), SourceOnly);
    waitForJobs();
    const QByteArray kept = PageDialogs::read(path(u"kept.html"_s));
    QVERIFY2(kept.startsWith("\xEF\xBB\xBF"), "the mark says what the markup does not");
    QVERIFY(kept.contains("<p>gr\xc3\xbcn"));
}

void tst_SaveFaults::sourceThatNeverComesCanBeCancelled()
{
    TestServer::Reply page{200, "<title>A</title>x", "text/html", {{"Cache-Control", "no-store"}}};
    m_session->server.reply("/source", page);
    open(u"/source"_s);
    page.silent = true;
    m_session->server.reply("/source", page);
    PageDialogs::save(*m_session, path(u"kept.html"_s), SourceOnly);
    QTRY_COMPARE(m_session->server.count("/source"), 2);
    auto *progress = m_session->frame->findChild<QProgressDialog *>(u"dlgSaving"_s);
    QVERIFY(progress);
    QTRY_VERIFY(progress->isVisible());
    QVERIFY(!progress->isModal());
    progress->findChild<QPushButton *>()->click();
    waitForJobs();
    QCOMPARE(in(m_files->path()), QStringList());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_SaveFaults::sourceOfALocalFile()
{
    const QByteArray bytes = "<title>F</title>\r\ngr\xfcn";
    QVERIFY(write(path(u"local.html"_s), bytes));
    const QString url = QUrl::fromLocalFile(path(u"local.html"_s)).toString();
    m_session->start(url);
    QTRY_VERIFY(m_session->shows(url));
    PageDialogs::save(*m_session, path(u"kept.html"_s), SourceOnly);
    waitForJobs();
    QCOMPARE(PageDialogs::read(path(u"kept.html"_s)), bytes);
}

void tst_SaveFaults::readOnlyFolder()
{
    QFETCH(int, kind);
    m_session->server.page("/page", "<title>A</title>x");
    open(u"/page"_s);
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, u"/proc/page.html"_s, kind);
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains("/proc/page.html"_L1));
    waitForJobs();
    QTRY_VERIFY2(!QApplication::activeModalWidget(), "told once");
}

void tst_SaveFaults::readOnlyFolderWithAnOldFile()
{
    QFETCH(int, kind);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const QString file = disk.path() + "/page.html"_L1;
    QVERIFY(write(file, "old"));
    QVERIFY(disk.makeReadOnly());
    m_session->server.page("/page", "<title>A</title>x");
    open(u"/page"_s);
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, file, kind);
    QTRY_COMPARE(ok.count(), 1);
    waitForJobs();
    QTRY_VERIFY2(!QApplication::activeModalWidget(), "told once");
    QCOMPARE(PageDialogs::read(file), "old");
}

void tst_SaveFaults::fullDisk()
{
    QFETCH(int, kind);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const QString file = disk.path() + "/page.html"_L1;
    QVERIFY(write(file, "old"));
    openPageWithPicture();
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, file, kind);
    QTRY_COMPARE_WITH_TIMEOUT(ok.count(), 1, 30000);
    waitForJobs();
    QTRY_VERIFY2(!QApplication::activeModalWidget(), "told once");
    QCOMPARE(PageDialogs::read(file), "old");
    QCOMPARE(in(disk.path()), QStringList(u"page.html"_s));
}

void tst_SaveFaults::overAnOpenFile()
{
    QFETCH(int, kind);
    QVERIFY(write(path(u"page.html"_s), "old"));
    QFile reader(path(u"page.html"_s));
    QVERIFY(reader.open(QIODevice::ReadOnly));
    openPageWithPicture();
    PageDialogs::save(*m_session, path(u"page.html"_s), kind);
    waitForJobs();
    QCOMPARE(reader.readAll(), "old");
    QVERIFY(PageDialogs::read(path(u"page.html"_s)).contains("words"));
    const QStringList parts = kind == Complete ? QStringList(u"page_files"_s) : QStringList();
    QCOMPARE(in(m_files->path()), QStringList(u"page.html"_s) + parts);
}

void tst_SaveFaults::completeReplacesTheOldParts()
{
    QVERIFY(QDir(m_files->path()).mkpath(u"page_files"_s));
    QVERIFY(write(path(u"page_files/old.png"_s), "old"));
    openPageWithPicture();
    PageDialogs::save(*m_session, path(u"page.html"_s), Complete);
    waitForJobs();
    QCOMPARE(in(path(u"page_files"_s)), QStringList(u"picture.svg"_s));
    QVERIFY(PageDialogs::read(path(u"page.html"_s)).contains("page_files/picture.svg"));
}

void tst_SaveFaults::cancelLeavesNothing()
{
    TestServer::Reply picture{200,
                              "<svg xmlns='http://www.w3.org/2000/svg'/>",
                              "image/svg+xml",
                              {{"Cache-Control", "no-store"}}};
    m_session->server.reply("/late.svg", picture);
    m_session->server.page("/page", "<title>A</title>x<img src=/late.svg>");
    open(u"/page"_s);
    picture.silent = true;
    m_session->server.reply("/late.svg", picture);
    QVERIFY(write(path(u"page.html"_s), "old"));
    PageDialogs::save(*m_session, path(u"page.html"_s), Complete);
    auto *progress = m_session->frame->findChild<QProgressDialog *>(u"dlgSaving"_s);
    QVERIFY(progress);
    QTRY_VERIFY(progress->isVisible());
    progress->findChild<QPushButton *>()->click();
    QTRY_VERIFY(!m_session->frame->findChild<QProgressDialog *>(u"dlgSaving"_s));
    QCOMPARE(PageDialogs::read(path(u"page.html"_s)), "old");
    QCOMPARE(in(m_files->path()), QStringList(u"page.html"_s));
    QVERIFY(!QApplication::activeModalWidget());
    PageDialogs::save(*m_session, path(u"page.html"_s), SourceOnly);
    QTRY_VERIFY(PageDialogs::read(path(u"page.html"_s)).contains("late.svg"));
}

void tst_SaveFaults::rendererThatDies()
{
    QFETCH(int, kind);
    TestServer::Reply page{
        200, "<title>A</title>x<img src=/late.svg>", "text/html", {{"Cache-Control", "no-store"}}};
    TestServer::Reply picture{200,
                              "<svg xmlns='http://www.w3.org/2000/svg'/>",
                              "image/svg+xml",
                              {{"Cache-Control", "no-store"}}};
    m_session->server.reply("/page", page);
    m_session->server.reply("/late.svg", picture);
    open(u"/page"_s);
    page.silent = picture.silent = true;
    m_session->server.reply("/page", page);
    m_session->server.reply("/late.svg", picture);
    QVERIFY(write(path(u"page.html"_s), "old"));
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, path(u"page.html"_s), kind);
    ::kill(pid_t(PageDialogs::page(*m_session).renderProcessPid()), SIGKILL);
    QTRY_COMPARE(PageDialogs::page(*m_session).renderProcessPid(), 0);
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY2(!QApplication::activeModalWidget(), "told once");
    QCOMPARE(PageDialogs::read(path(u"page.html"_s)), "old");
    QCOMPARE(in(m_files->path()), QStringList(u"page.html"_s));
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    PageDialogs::save(*m_session, path(u"next.html"_s), kind);
    QTRY_VERIFY(PageDialogs::read(path(u"next.html"_s)).contains("quick brown fox"));
}

ORVANE_ENGINE_TEST_MAIN(tst_SaveFaults)
#include "tst_savefaults.moc"
