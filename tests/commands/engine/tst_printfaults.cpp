#include <QFileDialog>
#include <QPdfDocument>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <csignal>

#include "../PageDialogs.h"
#include "Answer.h"
#include "EngineTest.h"
#include "PageJobs.h"
#include "PageSetup.h"
#include "PrintPreview.h"
#include "PrintService.h"
#include "SmallDisk.h"

using namespace Qt::StringLiterals;

/// Enough for the progress to be seen, however quick the machine is.
constexpr int sheetsThatTakeTime = 4000;

/// Long prints, and page commands on pages that are still loading or whose process dies.
class tst_PrintFaults : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void fiveHundredSheets();
    void cancelOfFiveHundredSheets();
    void closedPreviewStillPrints();
    void readOnlyPlaceIsTold();
    void fullDiskIsTold();
    void rendererThatDiesWhilePrinting();
    void rendererThatDiesBeforeItPrints_data();
    void rendererThatDiesBeforeItPrints();
    void anotherSiteWhilePrinting();
    void rendererThatDiesUnderThePreview();
    void deadPageTakesAndTellsNoZoomWrongly();
    void pageThatIsStillLoading_data();
    void pageThatIsStillLoading();
    void choicesForThePrintService();
    void unknownPrinterIsRefused();

private:
    void openSheets(int count);
    void killRenderer();
    QProgressDialog *progress() const
    {
        return m_session->frame->findChild<QProgressDialog *>(u"dlgPrinting"_s);
    }
    PrintPreview *preview() const
    {
        return qobject_cast<PrintPreview *>(Forms::named("frmPrintPreview").value(0));
    }
    QWebEnginePage &page() const { return PageDialogs::page(*m_session); }
    void waitForJobs();
    QString path(const QString &name) const { return m_files->filePath(name); }
    static int sheetsOf(const QString &file)
    {
        QPdfDocument document;
        return document.load(file) == QPdfDocument::Error::None ? document.pageCount() : -1;
    }

    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Session> m_session;
};

void tst_PrintFaults::init()
{
    m_files = std::make_unique<QTemporaryDir>();
    m_session = std::make_unique<Session>();
    PageSetup::setLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter));
}

void tst_PrintFaults::openSheets(int count)
{
    QByteArray html = "<title>Long</title>";
    for (int sheet = 1; sheet <= count; ++sheet)
        html += "<p style='break-after:page'>sheet " + QByteArray::number(sheet)
            + QByteArray(" of words").repeated(100);
    m_session->server.page("/long", html + "<style>p:last-child{break-after:auto!important}");
    m_session->start(m_session->server.url(u"/long"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/long"_s)));
}

void tst_PrintFaults::killRenderer()
{
    ::kill(pid_t(page().renderProcessPid()), SIGKILL);
}

/// A job waits for those before it.
void tst_PrintFaults::waitForJobs()
{
    QObject receiver;
    bool done = false;
    PageJobs::toPdf(&page(), PageSetup::layout(), {}, &receiver,
                    [&](const QByteArray &) { done = true; });
    QTRY_VERIFY_WITH_TIMEOUT(done, 60000);
}

void tst_PrintFaults::fiveHundredSheets()
{
    openSheets(500);
    PageDialogs::print(*m_session, path(u"out.pdf"_s));
    const QPointer<QProgressDialog> shown = progress();
    QVERIFY(shown);
    QVERIFY(!shown->isModal());
    QCOMPARE(shown->maximum(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!shown, 60000);
    QCOMPARE(sheetsOf(path(u"out.pdf"_s)), 500);
}

void tst_PrintFaults::cancelOfFiveHundredSheets()
{
    openSheets(500);
    PageDialogs::print(*m_session, path(u"out.pdf"_s));
    const QPointer<QProgressDialog> shown = progress();
    QVERIFY(shown);
    QTRY_VERIFY_WITH_TIMEOUT(!shown || shown->isVisible(), 20000);
    if (!shown)
        QSKIP("Printed before there was time to cancel.");
    shown->findChild<QPushButton *>()->click();
    QTRY_VERIFY(!shown || !shown->isVisible());
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    m_session->choose("mnuFileClose");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/long"_s)));
    waitForJobs();
    QVERIFY(QDir(m_files->path()).isEmpty());
    QVERIFY(!QApplication::activeModalWidget());
    PageDialogs::print(*m_session, path(u"again.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(sheetsOf(path(u"again.pdf"_s)), 500, 60000);
}

void tst_PrintFaults::closedPreviewStillPrints()
{
    openSheets(3);
    m_session->choose("mnuFilePrintPreview");
    QVERIFY(preview());
    QTRY_COMPARE(preview()->document().pageCount(), 3);
    preview()->findChild<QAction *>(u"cmdPrint"_s)->trigger();
    auto *dialog = PageDialogs::waitFor<QPrintDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(u"filename"_s)->setText(path(u"out.pdf"_s));
    dialog->accept();
    preview()->close();
    QTRY_COMPARE(sheetsOf(path(u"out.pdf"_s)), 3);
}

void tst_PrintFaults::readOnlyPlaceIsTold()
{
    openSheets(1);
    Answer ok(QMessageBox::Ok);
    PageDialogs::print(*m_session, u"/proc/out.pdf"_s);
    QTRY_COMPARE(ok.count(), 1);
}

void tst_PrintFaults::fullDiskIsTold()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const QString file = disk.path() + "/out.pdf"_L1;
    QFile old(file);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3 && old.flush());
    QFile filler(disk.path() + "/filler"_L1);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) { }
    openSheets(1);
    Answer ok(QMessageBox::Ok);
    PageDialogs::print(*m_session, file);
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains(file));
    QCOMPARE(PageDialogs::read(file), "old");
}

void tst_PrintFaults::rendererThatDiesWhilePrinting()
{
    openSheets(sheetsThatTakeTime);
    Answer ok(QMessageBox::Ok);
    PageDialogs::print(*m_session, path(u"out.pdf"_s));
    const QPointer<QProgressDialog> shown = progress();
    QVERIFY(shown);
    QTRY_VERIFY_WITH_TIMEOUT(!shown || shown->isVisible(), 20000);
    QVERIFY2(shown, "it is printing");
    killRenderer();
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains(path(u"out.pdf"_s)));
    QTRY_VERIFY(!shown);
    QVERIFY(QDir(m_files->path()).isEmpty());
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    PageDialogs::print(*m_session, path(u"next.pdf"_s));
    QTRY_COMPARE(sheetsOf(path(u"next.pdf"_s)), 1);
}

void tst_PrintFaults::rendererThatDiesBeforeItPrints_data()
{
    QTest::addColumn<bool>("hangs");
    QTest::newRow("its script does not end") << true;
    QTest::newRow("at once") << false;
}

void tst_PrintFaults::rendererThatDiesBeforeItPrints()
{
    QFETCH(bool, hangs);
    openSheets(hangs ? 1 : 500);
    if (hangs)
        page().runJavaScript(u"for (;;);"_s);
    Answer ok(QMessageBox::Ok);
    PageDialogs::print(*m_session, path(u"out.pdf"_s));
    const QPointer<QProgressDialog> shown = progress();
    QVERIFY(shown);
    if (hangs)
        QTRY_VERIFY_WITH_TIMEOUT(shown->isVisible(), 20000);
    killRenderer();
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains(path(u"out.pdf"_s)));
    QTRY_VERIFY(!shown);
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    PageDialogs::print(*m_session, path(u"next.pdf"_s));
    QTRY_COMPARE(sheetsOf(path(u"next.pdf"_s)), 1);
}

/// The next page has a process of its own, and the one that was printed is gone.
void tst_PrintFaults::anotherSiteWhilePrinting()
{
    openSheets(sheetsThatTakeTime);
    Answer ok(QMessageBox::Ok);
    PageDialogs::print(*m_session, path(u"out.pdf"_s));
    const QPointer<QProgressDialog> shown = progress();
    QVERIFY(shown);
    QTRY_VERIFY_WITH_TIMEOUT(!shown || shown->isVisible(), 20000);
    QVERIFY2(shown, "it is printing");
    const QString next = m_session->server.url(u"/one"_s).replace(u"127.0.0.1"_s, u"localhost"_s);
    m_session->frame->navigateActive(next);
    QTRY_COMPARE_WITH_TIMEOUT(ok.count(), 1, 20000);
    QTRY_VERIFY(!shown);
    QTRY_VERIFY(m_session->shows(next));
    QVERIFY(QDir(m_files->path()).isEmpty());
    PageDialogs::print(*m_session, path(u"next.pdf"_s));
    QTRY_COMPARE(sheetsOf(path(u"next.pdf"_s)), 1);
    QVERIFY(m_session->shows(next));
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 0);
}

void tst_PrintFaults::rendererThatDiesUnderThePreview()
{
    openSheets(3);
    m_session->choose("mnuFilePrintPreview");
    QVERIFY(preview());
    QSignalSpy renewed(preview(), &PrintPreview::renewed);
    killRenderer();
    QTRY_COMPARE(renewed.size(), 1);
    QCOMPARE(preview()->document().pageCount(), 0);
    QCOMPARE(preview()->statusBar()->currentMessage(), u"The page cannot be shown."_s);
    preview()->renew();
    QTRY_COMPARE(renewed.size(), 2);
    preview()->close();
    QTRY_VERIFY(!preview());
}

void tst_PrintFaults::deadPageTakesAndTellsNoZoomWrongly()
{
    openSheets(1);
    QSignalSpy ended(&page(), &QWebEnginePage::renderProcessTerminated);
    killRenderer();
    QTRY_COMPARE(ended.size(), 1);
    m_session->choose("mnuViewFontSize24");
    QVariant level;
    WebBrowser &browser = *m_session->active()->browser();
    QVERIFY(browser.execCommand(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, nullptr, &level));
    QCOMPARE(level.toInt(), 4);
    for (const char *item :
         {"mnuFileSaveAs", "mnuFilePrint", "mnuFilePrintPreview", "mnuFileProperties",
          "mnuEditFind", "mnuEditCopy", "mnuEditPaste", "mnuEditSelectAll", "mnuViewDocumentHTML"})
        m_session->choose(item);
    QVERIFY(!QApplication::activeModalWidget());
    browser.refresh();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/long"_s)));
    QCOMPARE(page().zoomFactor(), 1.5);
}

void tst_PrintFaults::pageThatIsStillLoading_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("silent");
    QTest::newRow("nothing yet") << QByteArray() << true;
    QTest::newRow("headers") << QByteArray() << false;
    QTest::newRow("a part") << QByteArray("<title>Part</title><p>the first words") << false;
}

/// Each command does its work on what there is, or nothing; none of them hangs, and what comes
/// after works.
void tst_PrintFaults::pageThatIsStillLoading()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, silent);
    TestServer::Reply stall;
    stall.body = body;
    stall.silent = silent;
    stall.stallAfterHeaders = true;
    m_session->server.reply("/stall", stall);
    m_session->start(m_session->server.url(u"/stall"_s));
    QTRY_COMPARE(m_session->server.count("/stall"), 1);
    QTRY_VERIFY(m_session->active()->browser()->isBusy());
    if (!body.isEmpty())
        QTRY_COMPARE(page().title(), u"Part"_s);

    PageDialogs::save(*m_session, path(u"kept.html"_s), 2);
    PageDialogs::print(*m_session, path(u"out.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(sheetsOf(path(u"out.pdf"_s)), 1, 20000);
    m_session->choose("mnuFilePrintPreview");
    QVERIFY(preview());
    QTRY_COMPARE(preview()->document().pageCount(), 1);
    for (const char *item : {"mnuFilePageSetup", "mnuFileProperties"}) {
        m_session->choose(item);
        auto *dialog = PageDialogs::waitFor<QDialog>();
        QVERIFY2(dialog, item);
        dialog->reject();
    }
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 0);
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
}

void tst_PrintFaults::choicesForThePrintService()
{
    QPrinter printer;
    printer.setPageSize(QPageSize(QPageSize::A5));
    printer.setCopyCount(3);
    printer.setCollateCopies(true);
    PrintService::Options options = PrintService::optionsOf(printer);
    QVERIFY(options.contains(qMakePair(QByteArray("media"), QByteArray("A5"))));
    QVERIFY(options.contains(qMakePair(QByteArray("copies"), QByteArray("3"))));
    QVERIFY(options.contains(qMakePair(QByteArray("Collate"), QByteArray("True"))));
    QVERIFY(options.contains(qMakePair(QByteArray("sides"), QByteArray("one-sided"))));
    printer.setPageOrder(QPrinter::LastPageFirst);
    printer.setColorMode(QPrinter::GrayScale);
    options = PrintService::optionsOf(printer);
    QVERIFY(options.contains(qMakePair(QByteArray("outputorder"), QByteArray("reverse"))));
    QVERIFY(options.contains(qMakePair(QByteArray("print-color-mode"), QByteArray("monochrome"))));
}

void tst_PrintFaults::unknownPrinterIsRefused()
{
    if (!PrintService::isAvailable())
        QSKIP("no print service here");
    QPrinter printer;
    printer.setDocName(u"A test"_s);
    QObject receiver;
    std::optional<bool> sent;
    PrintService::send("%PDF-1.4", printer, &receiver, [&](bool result) { sent = result; });
    QTRY_VERIFY_WITH_TIMEOUT(sent.has_value(), 30000);
    QVERIFY(!*sent);
}

ORVANE_ENGINE_TEST_MAIN(tst_PrintFaults)
#include "tst_printfaults.moc"
