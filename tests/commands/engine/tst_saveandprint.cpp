#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPdfDocument>
#include <QPdfSelection>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>
#include <QWebEngineView>

#include "../Session.h"
#include "Answer.h"
#include "ConnectionCheck.h"
#include "EngineTest.h"
#include "PageJobs.h"
#include "PageSetup.h"
#include "PageSetupDialog.h"
#include "PrintPreview.h"
#include "SaveJob.h"

using namespace Qt::StringLiterals;

/// Saving, printing and describing real pages.
class tst_SaveAndPrint : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void saves_data();
    void saves();
    void savesAnImageWhereItWasAskedTo();
    void readOnlyPlaceIsTold();
    void printsToPdf();
    void jobsOfOnePageWaitForEachOther();
    void pageLivesUntilItsJobIsDone();
    void previewShowsTheSheets();
    void previewFollowsThePageSetUp();
    void previewOutlivesItsPage();
    void closeAllClosesThePreview();
    void pageSetUpIsKept();
    void propertiesOfAPage();
    void propertiesOfAFile();
    void modifiedIsWhatTheServerSaid_data();
    void modifiedIsWhatTheServerSaid();
    void printedFileHasAProperName_data();
    void printedFileHasAProperName();
    void choicesOfPaperAreNotOfferedForAFile();
    void certificatesOfAServer();
    void serverThatCannotBeAsked();
    void pageMayAskForPrinting();
    void cancelledPrintingWritesNothing();
    void deadPageRefuses();

private:
    void openLongPage();
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    template <typename Dialog> Dialog *waitFor()
    {
        Dialog *dialog = nullptr;
        const auto find = [&] {
            dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            return dialog != nullptr;
        };
        return QTest::qWaitFor(find, 10000) ? dialog : nullptr;
    }
    void save(const QString &file, int kind);
    PrintPreview *openPreview();
    QString path(const QString &name) const { return m_files->filePath(name); }
    static QByteArray read(const QString &file)
    {
        QFile source(file);
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }
    static QString textOf(QPdfDocument &document)
    {
        QString text;
        for (int i = 0; i < document.pageCount(); ++i)
            text += document.getAllText(i).text();
        return text;
    }

    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Session> m_session;
};

void tst_SaveAndPrint::init()
{
    m_files = std::make_unique<QTemporaryDir>();
    m_session = std::make_unique<Session>();
    PageSetup::setLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter));
}

/// Three sheets.
void tst_SaveAndPrint::openLongPage()
{
    m_session->server.page("/long",
                           "<title>A long / page</title><p>first sheet"
                           "<p style='break-before:page'>second sheet"
                           "<p style='break-before:page'>third sheet");
    m_session->start(m_session->server.url(u"/long"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/long"_s)));
}

void tst_SaveAndPrint::save(const QString &file, int kind)
{
    m_session->choose("mnuFileSaveAs");
    auto *dialog = waitFor<QFileDialog>();
    QVERIFY(dialog);
    QVERIFY(kind < dialog->nameFilters().size());
    dialog->selectNameFilter(dialog->nameFilters().at(kind));
    dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(file);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
}

void tst_SaveAndPrint::saves_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("picture");
    QTest::newRow("complete") << 0 << u"page.html"_s << true;
    QTest::newRow("single file") << 1 << u"page.mhtml"_s << true;
    QTest::newRow("source only") << 2 << u"page.html"_s << false;
}

void tst_SaveAndPrint::saves()
{
    QFETCH(int, kind);
    QFETCH(QString, name);
    QFETCH(bool, picture);
    TestServer &server = m_session->server;
    server.reply("/picture.svg",
                 {200,
                  "<svg xmlns='http://www.w3.org/2000/svg' width='7' height='5'/>",
                  "image/svg+xml",
                  {}});
    server.page("/saved",
                "<meta charset=utf-8><title>Saved</title><p id=p>gr\xc3\xbc\xc3\x9f"
                "e"
                "<img id=i src='/picture.svg'>");
    m_session->start(server.url(u"/saved"_s));
    QTRY_VERIFY(m_session->shows(server.url(u"/saved"_s)));
    save(path(name), kind);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(path(name)).size() > 0, 20000);
    QTRY_VERIFY(!page().findChild<SaveJob *>());
    QCOMPARE(QDir(path(u"page_files"_s)).exists(), kind == 0);

    server.reply("/picture.svg", {404, {}, "text/plain", {}});
    const QString local = QUrl::fromLocalFile(path(name)).toString();
    m_session->typeAddress(local);
    QTRY_VERIFY(m_session->shows(local));
    QString text;
    page().toPlainText([&text](const QString &plain) { text = plain; });
    QTRY_VERIFY(text.contains(u"gr\u00fc\u00dfe"_s));
    // Pages in a single file run no scripts.
    if (kind == 1) {
        QVERIFY(read(path(name)).contains("image/svg+xml"));
    } else {
        int width = -1;
        page().runJavaScript(u"i.naturalWidth"_s,
                             [&width](const QVariant &value) { width = value.toInt(); });
        QTRY_COMPARE(width, picture ? 7 : 0);
    }
    m_session->choose("mnuFileSaveAs");
    auto *again = waitFor<QFileDialog>();
    QVERIFY2(again, "what was saved can be saved again");
    again->reject();
}

void tst_SaveAndPrint::savesAnImageWhereItWasAskedTo()
{
    const QByteArray bytes = "<svg xmlns='http://www.w3.org/2000/svg' width='7' height='5'/>";
    m_session->server.reply("/picture.svg", {200, bytes, "image/svg+xml", {}});
    m_session->start(m_session->server.url(u"/picture.svg"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/picture.svg"_s)));
    save(path(u"kept.svg"_s), 0);
    QTRY_COMPARE(read(path(u"kept.svg"_s)), bytes);
}

void tst_SaveAndPrint::readOnlyPlaceIsTold()
{
    openLongPage();
    const QString file = u"/proc/page.html"_s;
    Answer ok(QMessageBox::Ok);
    m_session->choose("mnuFileSaveAs");
    auto *dialog = waitFor<QFileDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(file);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains(file));
}

void tst_SaveAndPrint::printsToPdf()
{
    openLongPage();
    QTest::keyClick(m_session->frame.get(), Qt::Key_P, Qt::ControlModifier);
    auto *dialog = waitFor<QPrintDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(u"filename"_s)->setText(path(u"out.pdf"_s));
    dialog->accept();
    QPdfDocument document;
    const auto load = [&] {
        return document.load(path(u"out.pdf"_s)) == QPdfDocument::Error::None;
    };
    QTRY_VERIFY(load());
    QCOMPARE(document.pageCount(), 3);
    const QString text = textOf(document);
    for (const QString &sheet : {u"first sheet"_s, u"second sheet"_s, u"third sheet"_s})
        QVERIFY2(text.contains(sheet), qPrintable(text));
}

void tst_SaveAndPrint::jobsOfOnePageWaitForEachOther()
{
    openLongPage();
    QObject receiver;
    QList<qsizetype> sizes;
    for (int i = 0; i < 4; ++i)
        PageJobs::toPdf(&page(), PageSetup::layout(), {}, &receiver,
                        [&sizes](const QByteArray &pdf) { sizes.append(pdf.size()); });
    QTRY_COMPARE(sizes.size(), 4);
    for (const qsizetype size : sizes)
        QVERIFY(size > 1000);
}

void tst_SaveAndPrint::pageLivesUntilItsJobIsDone()
{
    openLongPage();
    QObject receiver;
    QList<QByteArray> made;
    const QPointer<QWebEnginePage> printed = &page();
    for (int i = 0; i < 2; ++i)
        PageJobs::toPdf(printed, PageSetup::layout(), {}, &receiver,
                        [&made](const QByteArray &pdf) { made.append(pdf); });
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 0);
    QTRY_COMPARE(made.size(), 2);
    QVERIFY(made.first().startsWith("%PDF"));
    QVERIFY(made.last().startsWith("%PDF"));
    QTRY_VERIFY(!printed);
}

PrintPreview *tst_SaveAndPrint::openPreview()
{
    m_session->choose("mnuFilePrintPreview");
    auto *preview = qobject_cast<PrintPreview *>(Forms::named("frmPrintPreview").value(0));
    if (!preview || !QTest::qWaitFor([&] { return preview->document().pageCount() > 0; }, 20000))
        return nullptr;
    return preview;
}

void tst_SaveAndPrint::previewShowsTheSheets()
{
    openLongPage();
    PrintPreview *preview = openPreview();
    QVERIFY(preview);
    QCOMPARE(preview->document().pageCount(), 3);
    QVERIFY(textOf(preview->document()).contains("third sheet"_L1));
    auto *sheet = preview->findChild<QSpinBox *>(u"txtSheet"_s);
    QCOMPARE(sheet->value(), 1);
    QCOMPARE(preview->findChild<QLabel *>(u"lblSheets"_s)->text(), u"of 3"_s);
    QAction *next = preview->findChild<QAction *>(u"cmdNext"_s);
    QAction *previous = preview->findChild<QAction *>(u"cmdPrevious"_s);
    QVERIFY(!previous->isEnabled());
    next->trigger();
    QTRY_COMPARE(sheet->value(), 2);
    next->trigger();
    QTRY_COMPARE(sheet->value(), 3);
    QVERIFY(!next->isEnabled());
    previous->trigger();
    QTRY_COMPARE(sheet->value(), 2);
}

void tst_SaveAndPrint::previewFollowsThePageSetUp()
{
    openLongPage();
    PrintPreview *preview = openPreview();
    QVERIFY(preview);
    const QSizeF before = preview->document().pagePointSize(0);
    QVERIFY(before.width() < before.height());
    preview->findChild<QAction *>(u"cmdPageSetup"_s)->trigger();
    auto *dialog = waitFor<PageSetupDialog>();
    QVERIFY(dialog);
    auto *landscape = dialog->findChild<QAbstractButton *>(u"optLandscape"_s);
    QVERIFY(landscape);
    landscape->click();
    QSignalSpy renewed(preview, &PrintPreview::renewed);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QTRY_COMPARE(renewed.size(), 1);
    const QSizeF after = preview->document().pagePointSize(0);
    QVERIFY(after.width() > after.height());
}

void tst_SaveAndPrint::previewOutlivesItsPage()
{
    openLongPage();
    PrintPreview *preview = openPreview();
    QVERIFY(preview);
    m_session->choose("mnuFileClose");
    QAction *print = preview->findChild<QAction *>(u"cmdPrint"_s);
    QTRY_VERIFY(!print->isEnabled());
    QCOMPARE(preview->document().pageCount(), 3);
}

void tst_SaveAndPrint::closeAllClosesThePreview()
{
    openLongPage();
    const QPointer<PrintPreview> preview = openPreview();
    QVERIFY(preview);
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!preview);
}

void tst_SaveAndPrint::pageSetUpIsKept()
{
    openLongPage();
    m_session->choose("mnuFilePageSetup");
    auto *dialog = waitFor<PageSetupDialog>();
    QVERIFY(dialog);
    dialog->findChild<QAbstractButton *>(u"optLandscape"_s)->click();
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QCOMPARE(PageSetup::layout().orientation(), QPageLayout::Landscape);
    m_session->choose("mnuFilePageSetup");
    dialog = waitFor<PageSetupDialog>();
    QVERIFY(dialog);
    QVERIFY(dialog->findChild<QAbstractButton *>(u"optLandscape"_s)->isChecked());
    dialog->reject();
}

void tst_SaveAndPrint::propertiesOfAPage()
{
    openLongPage();
    QTest::keyClick(m_session->frame.get(), Qt::Key_I, Qt::ControlModifier);
    auto *dialog = waitFor<QDialog>();
    QVERIFY(dialog);
    QCOMPARE(dialog->objectName(), u"dlgProperties"_s);
    const auto value = [&](const char *name) {
        return dialog->findChild<QLabel *>(QLatin1String(name))->text();
    };
    QCOMPARE(value("lblTitle"), u"A long / page"_s);
    QCOMPARE(value("lblAddress"), m_session->server.url(u"/long"_s));
    QTRY_COMPARE(value("lblKind"), u"text/html"_s);
    QCOMPARE(value("lblEncoding"), u"UTF-8"_s);
    QVERIFY2(value("lblSize").contains("bytes"_L1), qPrintable(value("lblSize")));
    QVERIFY(!value("lblOpened").isEmpty());
    QCOMPARE(value("lblConnection"), u"Not encrypted"_s);
    dialog->reject();
}

void tst_SaveAndPrint::propertiesOfAFile()
{
    m_session->folder.write(u"page.html"_s, "<title>F</title>0123456789");
    const QUrl url = QUrl::fromLocalFile(m_session->folder.file(u"page.html"_s));
    m_session->start(url.toString());
    QTRY_VERIFY(m_session->shows(url.toString()));
    m_session->choose("mnuFileProperties");
    auto *dialog = waitFor<QDialog>();
    QVERIFY(dialog);
    QLabel *size = dialog->findChild<QLabel *>(u"lblSize"_s);
    QTRY_VERIFY2(size->text() == "26 bytes"_L1, qPrintable(size->text()));
    dialog->reject();
}

void tst_SaveAndPrint::modifiedIsWhatTheServerSaid_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QString>("shown");
    const QDateTime date(QDate(2001, 2, 3), QTime(4, 5, 6), Qt::UTC);
    QTest::newRow("said") << QByteArray("Sat, 03 Feb 2001 04:05:06 GMT")
                          << QLocale().toString(date.toLocalTime(), QLocale::ShortFormat);
    QTest::newRow("not said") << QByteArray() << u"Not known"_s;
}

void tst_SaveAndPrint::modifiedIsWhatTheServerSaid()
{
    QFETCH(QByteArray, header);
    QFETCH(QString, shown);
    TestServer::Reply reply{200, "<title>D</title>x", "text/html", {}};
    if (!header.isEmpty())
        reply.headers = {{"Last-Modified", header}};
    m_session->server.reply("/dated", reply);
    m_session->start(m_session->server.url(u"/dated"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/dated"_s)));
    m_session->choose("mnuFileProperties");
    auto *dialog = waitFor<QDialog>();
    QVERIFY(dialog);
    QLabel *modified = dialog->findChild<QLabel *>(u"lblModified"_s);
    QTRY_VERIFY(!modified->text().isEmpty());
    QCOMPARE(modified->text(), shown);
    dialog->reject();
}

void tst_SaveAndPrint::printedFileHasAProperName_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::newRow("path") << u"AC/DC: v1"_s << u"AC DC v1.pdf"_s;
    QTest::newRow("dot") << u"News - v1.5 out"_s << u"News - v1.5 out.pdf"_s;
    QTest::newRow("turned round") << u"a\u202efdp.b"_s << u"afdp.b.pdf"_s;
    QTest::newRow("endless") << u"ニ"_s.repeated(200) << u"ニ"_s.repeated(83) + u".pdf"_s;
}

void tst_SaveAndPrint::printedFileHasAProperName()
{
    QFETCH(QString, title);
    QFETCH(QString, name);
    m_session->server.page("/titled", "<title>" + title.toUtf8() + "</title>x");
    m_session->start(m_session->server.url(u"/titled"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/titled"_s)));
    m_session->choose("mnuFilePrint");
    auto *dialog = waitFor<QPrintDialog>();
    QVERIFY(dialog);
    auto *field = dialog->findChild<QLineEdit *>(u"filename"_s);
    QCOMPARE(field->text(), QDir::homePath() + u'/' + name);
    field->setText(path(name));
    dialog->accept();
    QTRY_VERIFY(read(path(name)).startsWith("%PDF"));
}

void tst_SaveAndPrint::choicesOfPaperAreNotOfferedForAFile()
{
    openLongPage();
    m_session->choose("mnuFilePrint");
    auto *dialog = waitFor<QPrintDialog>();
    QVERIFY(dialog);
    // Behind the button for more choices.
    auto *tabs = dialog->findChild<QTabWidget *>(u"tabs"_s);
    tabs->parentWidget()->show();
    QTRY_VERIFY(dialog->findChild<QWidget *>(u"gbPrintRange"_s)->isVisible());
    for (const char *name : {"copies", "collate", "reverse"})
        QVERIFY2(!dialog->findChild<QWidget *>(QLatin1String(name))->isVisible(), name);
    dialog->reject();
}

void tst_SaveAndPrint::certificatesOfAServer()
{
    TestServer secure(TestServer::Kind::Https);
    ConnectionCheck check;
    QSignalSpy answered(&check, &ConnectionCheck::answered);
    check.ask(QUrl(secure.url()));
    QTRY_COMPARE(answered.size(), 1);
    const QString chain = answered.first().at(1).toString();
    QVERIFY2(chain.startsWith("As the server shows them now"_L1), qPrintable(chain));
    QVERIFY2(chain.contains("issued by"_L1), qPrintable(chain));
}

void tst_SaveAndPrint::serverThatCannotBeAsked()
{
    TestServer::Reply hangUp;
    hangUp.hangUp = true;
    m_session->server.reply("/", hangUp);
    ConnectionCheck check;
    QSignalSpy answered(&check, &ConnectionCheck::answered);
    QUrl url(m_session->server.url());
    url.setScheme(u"https"_s);
    check.ask(url);
    QTRY_COMPARE_WITH_TIMEOUT(answered.size(), 1, 20000);
    QVERIFY(answered.first().at(1).toString().startsWith("The server could not be asked"_L1));
}

void tst_SaveAndPrint::pageMayAskForPrinting()
{
    openLongPage();
    page().runJavaScript(u"window.print()"_s);
    QPrintDialog *dialog = nullptr;
    QTRY_VERIFY((dialog = m_session->frame->findChild<QPrintDialog *>()));
    QVERIFY(dialog->isVisible() && !dialog->isModal());
    dialog->reject();
}

void tst_SaveAndPrint::cancelledPrintingWritesNothing()
{
    openLongPage();
    m_session->choose("mnuFilePrint");
    auto *dialog = waitFor<QPrintDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(u"filename"_s)->setText(path(u"out.pdf"_s));
    dialog->accept();
    auto *progress = m_session->frame->findChild<QProgressDialog *>(u"dlgPrinting"_s);
    QVERIFY(progress);
    progress->cancel();
    QObject receiver;
    bool laterJobIsDone = false;
    PageJobs::toPdf(&page(), PageSetup::layout(), {}, &receiver,
                    [&](const QByteArray &) { laterJobIsDone = true; });
    QTRY_VERIFY(laterJobIsDone);
    QVERIFY(!QFileInfo::exists(path(u"out.pdf"_s)));
}

void tst_SaveAndPrint::deadPageRefuses()
{
    openLongPage();
    QSignalSpy ended(&page(), &QWebEnginePage::renderProcessTerminated);
    page().load(QUrl(u"chrome://crash"_s));
    QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, 20000);
    for (const char *item :
         {"mnuFileSaveAs", "mnuFilePrint", "mnuFilePrintPreview", "mnuFileProperties"})
        m_session->choose(item);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(Forms::named("frmPrintPreview").isEmpty());
    m_session->choose("mnuViewFontSize24");
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

ORVANE_ENGINE_TEST_MAIN(tst_SaveAndPrint)
#include "tst_saveandprint.moc"
