#include <QDir>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <csignal>

#include "../PageDialogs.h"
#include "Answer.h"
#include "EngineTest.h"
#include "PageHold.h"
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
    void textIsSavedAsItCame_data();
    void textIsSavedAsItCame();
    void textOfAFormsAnswer();
    void textThatIsNoLongerGiven_data();
    void textThatIsNoLongerGiven();
    void localText();
    void proposedNames_data();
    void proposedNames();
    void namesGetTheirEnding_data();
    void namesGetTheirEnding();
    void nameThatGetsItsEndingIsAskedFor();
    void nameFromTheDesktopsDialogIsAskedFor_data();
    void nameFromTheDesktopsDialogIsAskedFor();

    void readOnlyFolder_data() { kinds(); }
    void readOnlyFolder();
    void readOnlyFolderWithAnOldFile_data() { kinds(); }
    void readOnlyFolderWithAnOldFile();
    void fullDisk_data() { kinds(); }
    void fullDisk();
    void sourceOnAFullDisk_data();
    void sourceOnAFullDisk();
    void overAnOpenFile_data() { kinds(); }
    void overAnOpenFile();
    void completeLeavesWhatItDidNotWrite();
    void completeShowsItsParts_data();
    void completeShowsItsParts();
    void cancelLeavesNothing();
    void rendererThatDies_data() { kinds(); }
    void rendererThatDies();
    void windowClosedInTheMiddle_data() { kinds(); }
    void windowClosedInTheMiddle();
    void windowClosedBeforeItFails_data() { kinds(); }
    void windowClosedBeforeItFails();
    void cancelAfterTheWindowClosed_data();
    void cancelAfterTheWindowClosed();
    void programEndedInTheMiddle_data() { kinds(); }
    void programEndedInTheMiddle();

private:
    enum Kind { Complete, SingleFile, SourceOnly };

    static void kinds();
    void open(const QString &path);
    void openPageWithPicture();
    void waitForJobs();
    void saveAndCloseInTheMiddle(int kind);
    void showsItsPicture(const QString &file);
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
    /// `name` with the ending of that kind.
    static QString named(const QString &name, int kind)
    {
        return name + (kind == SingleFile ? u".mhtml"_s : u".html"_s);
    }

    QPointer<QWebEnginePage> m_page;
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
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), 120000);
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

void tst_SaveFaults::textIsSavedAsItCame_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray lines = "first\r\n<b>second</b>\n\tthird";
    QTest::newRow("text") << u"/notes.txt"_s << QByteArray("text/plain") << lines;
    QTest::newRow("log") << u"/today.log"_s << QByteArray("text/plain") << lines;
    QTest::newRow("script") << u"/app.js"_s << QByteArray("text/javascript") << lines;
    QTest::newRow("script of an application")
        << u"/app.mjs"_s << QByteArray("application/javascript") << lines;
    QTest::newRow("style") << u"/main.css"_s << QByteArray("text/css") << lines;
    QTest::newRow("JSON") << u"/data.json"_s << QByteArray("application/json")
                          << QByteArray("{ \"a\":\r\n [1, 2]}");
    QTest::newRow("JSON of a kind")
        << u"/ld.json"_s << QByteArray("application/ld+json") << QByteArray("{\"a\":1}");
    QTest::newRow("XML") << u"/feed.xml"_s << QByteArray("text/xml")
                         << QByteArray("<?xml version='1.0'?>\r\n<a  b='1'><c/></a>\n");
    QTest::newRow("XML of an application")
        << u"/feed.rss"_s << QByteArray("application/rss+xml") << QByteArray("<rss><a/></rss>");
    QTest::newRow("no ending") << u"/README"_s << QByteArray("text/plain") << lines;
    QTest::newRow("no name") << u"/"_s << QByteArray("text/plain; charset=utf-8")
                             << QByteArray("gr\xc3\xbcn");
    QTest::newRow("another encoding")
        << u"/old.txt"_s << QByteArray("text/plain; charset=windows-1252")
        << QByteArray("\x80 gr\xfcn\r\n");
    QTest::newRow("sixteen bits") << u"/wide.txt"_s << QByteArray("text/plain")
                                  << QByteArray("\xff\xfeg\0\xfc\0", 6);
    QTest::newRow("empty") << u"/empty.txt"_s << QByteArray("text/plain") << QByteArray();
}

void tst_SaveFaults::textIsSavedAsItCame()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, bytes);
    m_session->server.reply(path.toUtf8(), {200, bytes, type, {{"Cache-Control", "max-age=60"}}});
    open(path);
    PageDialogs::save(*m_session, this->path(u"kept.txt"_s), 0);
    waitForJobs();
    QVERIFY(QFileInfo::exists(this->path(u"kept.txt"_s)));
    QCOMPARE(PageDialogs::read(this->path(u"kept.txt"_s)), bytes);
    QCOMPARE(in(m_files->path()), QStringList(u"kept.txt"_s));
}

void tst_SaveFaults::textOfAFormsAnswer()
{
    m_session->server.page("/form", "<title>F</title><form id=f method=post action=/answer>");
    m_session->server.reply("/answer",
                            {200, "a <b> & gr\xc3\xbcn\n", "text/plain; charset=utf-8", {}});
    open(u"/form"_s);
    PageDialogs::page(*m_session).runJavaScript(u"f.submit()"_s);
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/answer"_s)));
    PageDialogs::save(*m_session, path(u"kept.txt"_s), 0);
    waitForJobs();
    QCOMPARE(m_session->server.count("/answer"), 1);
    QCOMPARE(PageDialogs::read(path(u"kept.txt"_s)), "a <b> & gr\xc3\xbcn\n");
}

void tst_SaveFaults::textThatIsNoLongerGiven_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray("text/plain") << QByteArray("a <b> & c\nd");
    QTest::newRow("XML") << QByteArray("text/xml") << QByteArray("<a b=\"1\"><c/></a>");
}

void tst_SaveFaults::textThatIsNoLongerGiven()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, bytes);
    m_session->server.reply("/text", {200, bytes, type, {{"Cache-Control", "no-store"}}});
    open(u"/text"_s);
    m_session->server.reply("/text", {404, "gone", "text/plain", {}});
    PageDialogs::save(*m_session, path(u"kept.txt"_s), 0);
    waitForJobs();
    QCOMPARE(PageDialogs::read(path(u"kept.txt"_s)), bytes);
}

void tst_SaveFaults::localText()
{
    const QByteArray bytes = "first\r\ngr\xfcn";
    QVERIFY(write(path(u"local.txt"_s), bytes));
    const QString url = QUrl::fromLocalFile(path(u"local.txt"_s)).toString();
    m_session->start(url);
    QTRY_VERIFY(m_session->shows(url));
    PageDialogs::save(*m_session, path(u"kept.txt"_s), 0);
    waitForJobs();
    QCOMPARE(PageDialogs::read(path(u"kept.txt"_s)), bytes);
}

void tst_SaveFaults::proposedNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    const QByteArray html = "text/html; charset=utf-8";
    const QByteArray plain = "text/plain";
    QTest::newRow("dot") << u"/p"_s << html << u"News - v1.5 out"_s << u"News - v1.5 out.html"_s;
    QTest::newRow("path") << u"/p"_s << html << u"AC/DC: v1"_s << u"AC DC v1.html"_s;
    QTest::newRow("hidden") << u"/p"_s << html << u"...and then"_s << u"and then.html"_s;
    QTest::newRow("turned round") << u"/p"_s << html << u"a\u202elmth.exe"_s << u"almth.exe.html"_s;
    QTest::newRow("Japanese") << u"/p"_s << html << u"ニ"_s.repeated(200)
                              << u"ニ"_s.repeated(83) + u".html"_s;
    QTest::newRow("emoji") << u"/p"_s << html << u"😀"_s.repeated(200)
                           << u"😀"_s.repeated(62) + u".html"_s;
    QTest::newRow("text") << u"/today.log"_s << plain << QString() << u"today.log"_s;
    QTest::newRow("text without ending") << u"/README"_s << plain << QString() << u"README.txt"_s;
    QTest::newRow("text without name") << u"/"_s << plain << QString() << u"Page.txt"_s;
    QTest::newRow("JSON without ending")
        << u"/api/v1"_s << QByteArray("application/json") << QString() << u"v1.json"_s;
    QTest::newRow("name in the address")
        << u"/a%0Ab%2F..%2F%E2%80%AEtxt.log"_s << plain << QString() << u"a b .. txt.log"_s;
}

void tst_SaveFaults::proposedNames()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, type);
    QFETCH(QString, title);
    QFETCH(QString, name);
    const QByteArray body =
        title.isEmpty() ? QByteArray("text") : "<title>" + title.toUtf8() + "</title>x";
    m_session->server.reply(path.toUtf8(), {200, body, type, {}});
    m_session->start(m_session->server.url(path));
    QTRY_VERIFY(m_session->active()->browser()->hasDocument()
                && !m_session->active()->browser()->isBusy());
    m_session->choose("mnuFileSaveAs");
    auto *dialog = PageDialogs::waitFor<QFileDialog>();
    QVERIFY(dialog);
    QCOMPARE(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), name);
    dialog->setDirectory(m_files->path());
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    waitForJobs();
    QVERIFY2(QFileInfo(this->path(name)).size() > 0, qPrintable(in(m_files->path()).join(u'\n')));
}

void tst_SaveFaults::namesGetTheirEnding_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::newRow("none") << int(Complete) << u"page"_s << u"page.html"_s;
    QTest::newRow("dot") << int(Complete) << u"News - v1.5 out"_s << u"News - v1.5 out.html"_s;
    QTest::newRow("another") << int(SourceOnly) << u"page.txt"_s << u"page.txt.html"_s;
    QTest::newRow("short one") << int(SourceOnly) << u"page.htm"_s << u"page.htm"_s;
    QTest::newRow("capitals") << int(SourceOnly) << u"PAGE.HTML"_s << u"PAGE.HTML"_s;
    QTest::newRow("single file") << int(SingleFile) << u"v1.5"_s << u"v1.5.mhtml"_s;
    QTest::newRow("single file named as a page")
        << int(SingleFile) << u"page.html"_s << u"page.mhtml"_s;
    QTest::newRow("short one of a single file")
        << int(SingleFile) << u"page.mht"_s << u"page.mht"_s;
}

void tst_SaveFaults::namesGetTheirEnding()
{
    QFETCH(int, kind);
    QFETCH(QString, typed);
    QFETCH(QString, kept);
    m_session->server.page("/page", "<title>A</title>x");
    open(u"/page"_s);
    PageDialogs::save(*m_session, path(typed), kind);
    waitForJobs();
    QCOMPARE(in(m_files->path()), QStringList(kept));
}

/// Not only the name as typed: what is replaced is the file of the whole name.
void tst_SaveFaults::nameThatGetsItsEndingIsAskedFor()
{
    QVERIFY(write(path(u"v1.5.html"_s), "old"));
    m_session->server.page("/page", "<title>A</title>x");
    open(u"/page"_s);
    m_session->choose("mnuFileSaveAs");
    auto *dialog = PageDialogs::waitFor<QFileDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path(u"v1.5"_s));
    Answer no(QMessageBox::No);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QTRY_COMPARE(no.count(), 1);
    QVERIFY2(no.text().contains("v1.5.html"_L1), qPrintable(no.text()));
    QVERIFY(dialog->isVisible());
    QCOMPARE(PageDialogs::read(path(u"v1.5.html"_s)), "old");
    dialog->reject();
}

void tst_SaveFaults::nameFromTheDesktopsDialogIsAskedFor_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

/// It has asked for the name as typed only, and is gone when its answer comes.
void tst_SaveFaults::nameFromTheDesktopsDialogIsAskedFor()
{
    QFETCH(bool, yes);
    QVERIFY(write(path(u"v1.5.html"_s), "old"));
    m_session->server.page("/page", "<title>A</title>new");
    open(u"/page"_s);
    m_session->choose("mnuFileSaveAs");
    const QPointer<QFileDialog> dialog = PageDialogs::waitFor<QFileDialog>();
    QVERIFY(dialog);
    dialog->hide();
    Answer answer(yes ? QMessageBox::Yes : QMessageBox::No);
    emit dialog->fileSelected(path(u"v1.5"_s));
    dialog->close();
    QTRY_COMPARE(answer.count(), 1);
    QVERIFY(answer.text().contains("v1.5.html"_L1));
    QTRY_VERIFY(!dialog);
    if (yes)
        QTRY_VERIFY(PageDialogs::read(path(u"v1.5.html"_s)).contains("new"));
    waitForJobs();
    QCOMPARE(PageDialogs::read(path(u"v1.5.html"_s)) == "old", !yes);
    QVERIFY(!QFileInfo::exists(path(u"v1.5"_s)));
}

void tst_SaveFaults::readOnlyFolder()
{
    QFETCH(int, kind);
    m_session->server.page("/page", "<title>A</title>x");
    open(u"/page"_s);
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, named(u"/proc/page"_s, kind), kind);
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains(named(u"/proc/page"_s, kind)));
    waitForJobs();
    QTRY_VERIFY2(!QApplication::activeModalWidget(), "told once");
}

void tst_SaveFaults::readOnlyFolderWithAnOldFile()
{
    QFETCH(int, kind);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const QString file = named(disk.path() + u"/page"_s, kind);
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
    const QString file = named(disk.path() + u"/page"_s, kind);
    QVERIFY(write(file, "old"));
    openPageWithPicture();
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, file, kind);
    QTRY_COMPARE_WITH_TIMEOUT(ok.count(), 1, 30000);
    waitForJobs();
    QTRY_VERIFY2(!QApplication::activeModalWidget(), "told once");
    QCOMPARE(PageDialogs::read(file), "old");
    QCOMPARE(in(disk.path()), QStringList(named(u"page"_s, kind)));
}

void tst_SaveFaults::sourceOnAFullDisk_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {20, 16384, 1024 * 1024})
        QTest::addRow("%d", size) << size;
}

/// What is less than a buffer fails only as that is put out.
void tst_SaveFaults::sourceOnAFullDisk()
{
    QFETCH(int, size);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const QString file = disk.path() + "/page.html"_L1;
    QVERIFY(write(file, "old"));
    QFile filler(disk.path() + "/filler"_L1);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) { }
    m_session->server.page("/sized", "<title>A</title>" + QByteArray(size - 16, 'x'));
    open(u"/sized"_s);
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, file, SourceOnly);
    QTRY_COMPARE(ok.count(), 1);
    waitForJobs();
    QCOMPARE(PageDialogs::read(file), "old");
    QCOMPARE(in(disk.path()), QStringList({u"filler"_s, u"page.html"_s}));
}

void tst_SaveFaults::overAnOpenFile()
{
    QFETCH(int, kind);
    QVERIFY(write(path(named(u"page"_s, kind)), "old"));
    QFile reader(path(named(u"page"_s, kind)));
    QVERIFY(reader.open(QIODevice::ReadOnly));
    openPageWithPicture();
    PageDialogs::save(*m_session, path(named(u"page"_s, kind)), kind);
    waitForJobs();
    QCOMPARE(reader.readAll(), "old");
    QVERIFY(PageDialogs::read(path(named(u"page"_s, kind))).contains("words"));
    const QStringList parts = kind == Complete ? QStringList(u"page_files"_s) : QStringList();
    QCOMPARE(in(m_files->path()), QStringList(named(u"page"_s, kind)) + parts);
}

void tst_SaveFaults::completeLeavesWhatItDidNotWrite()
{
    QVERIFY(QDir(m_files->path()).mkpath(u"page_files"_s));
    QVERIFY(write(path(u"page_files/photo.png"_s), "photo"));
    openPageWithPicture();
    for (int time = 1; time <= 3; ++time) {
        PageDialogs::save(*m_session, path(u"page.html"_s), Complete);
        waitForJobs();
        QCOMPARE(in(path(u"page_files"_s)), QStringList(u"photo.png"_s));
        QCOMPARE(PageDialogs::read(path(u"page_files/photo.png"_s)), "photo");
        QCOMPARE(in(m_files->path()).size(), 3);
        showsItsPicture(path(u"page.html"_s));
    }
}

void tst_SaveFaults::completeShowsItsParts_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"page"_s;
    QTest::newRow("dots") << u"News - v1.5 out"_s;
    QTest::newRow("signs of addresses") << u"100% C# why? a&b;c+d=e"_s;
    QTest::newRow("quotes and markup") << u"it's <b> 'x' `y` | *"_s;
    QTest::newRow("scripts") << u"ニュース новости أخبار 😀"_s;
    QTest::newRow("as long as can be") << u"ニ"_s.repeated(83);
}

void tst_SaveFaults::completeShowsItsParts()
{
    QFETCH(QString, name);
    openPageWithPicture();
    for (int time = 1; time <= 2; ++time) {
        const QString file = path(name + u".html"_s);
        m_session->typeAddress(m_session->server.url(u"/big"_s));
        QTRY_VERIFY(m_session->shows(m_session->server.url(u"/big"_s)));
        PageDialogs::save(*m_session, file, Complete);
        waitForJobs();
        showsItsPicture(file);
    }
    QCOMPARE(in(m_files->path()).size(), 2);
}

/// What the saved page shows comes from beside it.
void tst_SaveFaults::showsItsPicture(const QString &file)
{
    const QUrl url = QUrl::fromLocalFile(file);
    QWebEnginePage page;
    QSignalSpy loaded(&page, &QWebEnginePage::loadFinished);
    page.load(url);
    QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, 30000);
    int width = -1;
    page.runJavaScript(u"document.querySelector('img').naturalWidth"_s,
                       [&width](const QVariant &value) { width = value.toInt(); });
    QTRY_COMPARE(width, 7);
    QString source;
    page.runJavaScript(u"document.querySelector('img').src"_s,
                       [&source](const QVariant &value) { source = value.toString(); });
    QTRY_VERIFY(!source.isEmpty());
    QVERIFY2(QFileInfo(QUrl(source).toLocalFile()).path().startsWith(m_files->path()),
             qPrintable(source));
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
    QVERIFY(write(path(named(u"page"_s, kind)), "old"));
    Answer ok(QMessageBox::Ok);
    PageDialogs::save(*m_session, path(named(u"page"_s, kind)), kind);
    ::kill(pid_t(PageDialogs::page(*m_session).renderProcessPid()), SIGKILL);
    QTRY_COMPARE(PageDialogs::page(*m_session).renderProcessPid(), 0);
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY2(!QApplication::activeModalWidget(), "told once");
    QCOMPARE(PageDialogs::read(path(named(u"page"_s, kind))), "old");
    QCOMPARE(in(m_files->path()), QStringList(named(u"page"_s, kind)));
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    PageDialogs::save(*m_session, path(named(u"next"_s, kind)), kind);
    QTRY_VERIFY(PageDialogs::read(path(named(u"next"_s, kind))).contains("quick brown fox"));
}

/// The server keeps back what is asked for last, until it is released.
void tst_SaveFaults::saveAndCloseInTheMiddle(int kind)
{
    const auto fresh = [this](const QByteArray &path, const QByteArray &bytes,
                              const QByteArray &type) {
        m_session->server.reply(path, {200, bytes, type, {{"Cache-Control", "no-store"}}});
    };
    fresh("/page", "<title>A</title>words<img src=/late.svg>", "text/html");
    fresh("/late.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='7' height='5'/>",
          "image/svg+xml");
    open(u"/page"_s);
    const QByteArray last = kind == SourceOnly ? "/page" : "/late.svg";
    m_session->server.hold(last);
    const QPointer page(&PageDialogs::page(*m_session));
    PageDialogs::save(*m_session, path(named(u"page"_s, kind)), kind);
    // An archive is made of what is at hand.
    if (kind != SingleFile)
        QTRY_COMPARE(m_session->server.count(last), 2);
    m_session->active()->close();
    QTRY_COMPARE(m_session->windows(), 0);
    QVERIFY(page);
    m_page = page;
}

void tst_SaveFaults::windowClosedInTheMiddle()
{
    QFETCH(int, kind);
    saveAndCloseInTheMiddle(kind);
    m_session->server.release();
    QTRY_VERIFY(!m_page);
    QVERIFY(PageDialogs::read(path(named(u"page"_s, kind))).contains("words"));
    if (kind == Complete)
        showsItsPicture(path(u"page.html"_s));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_SaveFaults::windowClosedBeforeItFails()
{
    QFETCH(int, kind);
    saveAndCloseInTheMiddle(kind);
    QVERIFY(QDir(m_files->path()).removeRecursively());
    // Or the engine makes the folder again.
    QVERIFY(write(m_files->path(), "x"));
    const auto removed = qScopeGuard([this] { QFile::remove(m_files->path()); });
    Answer ok(QMessageBox::Ok);
    m_session->server.release();
    QTRY_COMPARE(ok.count(), 1);
    QTRY_VERIFY(!m_page);
    QVERIFY2(!QApplication::activeModalWidget(), "told once");
}

/// A single file is made at once.
void tst_SaveFaults::cancelAfterTheWindowClosed_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("complete") << int(Complete);
    QTest::newRow("source only") << int(SourceOnly);
}

void tst_SaveFaults::cancelAfterTheWindowClosed()
{
    QFETCH(int, kind);
    saveAndCloseInTheMiddle(kind);
    auto *progress = m_session->frame->findChild<QProgressDialog *>(u"dlgSaving"_s);
    QVERIFY(progress);
    QTRY_VERIFY(progress->isVisible());
    progress->findChild<QPushButton *>()->click();
    QTRY_VERIFY(!m_page);
    QCOMPARE(in(m_files->path()), QStringList());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_SaveFaults::programEndedInTheMiddle()
{
    QFETCH(int, kind);
    saveAndCloseInTheMiddle(kind);
    m_session->end();
    const auto exit = [] { QCoreApplication::exit(); };
    QMetaObject::invokeMethod(qApp, exit, Qt::QueuedConnection);
    QMetaObject::invokeMethod(&m_session->server, &TestServer::release, Qt::QueuedConnection);
    PageHold::finishAll();
    QTRY_VERIFY(!m_page);
    // Loops run again after that.
    QMetaObject::invokeMethod(qApp, exit, Qt::QueuedConnection);
    QCoreApplication::exec();
    QVERIFY(PageDialogs::read(path(named(u"page"_s, kind))).contains("words"));
}

ORVANE_ENGINE_TEST_MAIN(tst_SaveFaults)
#include "tst_savefaults.moc"
