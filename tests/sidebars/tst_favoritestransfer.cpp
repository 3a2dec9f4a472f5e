#include "AppFolder.h"
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "FavoritesTransfer.h"
#include "FileDialogRequest.h"
#include "FileFaults.h"
#include "FolderLock.h"
#include "SearchBar.h"
#include "SideBarCommands.h"
#include "SkippedDialog.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QLabel>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

/// Favorites > Import and Export, with the dialogs answered by the test.
class tst_FavoritesTransfer : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void dialogsAreAskedAsDescribed_data();
    void dialogsAreAskedAsDescribed();
    void titlesAreTranslated();
    void cancelDoesNothing();
    void importTellsAndLists();
    void importDoesNotRefreshTheBar();
    void exportWritesTheFile();
    void exportThatCannotBeWritten();
    void stoppedImportIsTold();
    void stoppedExportLeavesTheFile();
    void stopWhileTheFolderIsLocked();
    void stopWhileWritingIsTooLate();
    void importOntoAFullDisk();
    void exportOntoAFullDisk();
    void importIntoAReadOnlyFolder();
    void importOfRandomBytes();
    void frameGoesWhileImporting();
    void interfaceIsNotHeld();
    void picture_data();
    void picture();

private:
    void run(const QString &item, const QString &file);
    QString write(const QByteArray &bytes) const;
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString told() const { return control<QLabel>(u"lblTransfer"_s)->text(); }
    template <typename Control> Control *control(const QString &name) const
    {
        return m_frame->window()->findChild<Control *>(name);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
    FavoritesBar *m_bar = nullptr;
    FavoritesTransfer *m_transfer = nullptr;
    QList<FileDialogRequest> m_asked;
};

void tst_FavoritesTransfer::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
    m_bar = new FavoritesBar(*m_frame, m_frame->window());
    registerSideBarCommands(*m_frame, *m_bar, *new SearchBar(m_frame->window()));
    m_transfer = m_frame->window()->findChild<FavoritesTransfer *>();
    m_asked.clear();
}

void tst_FavoritesTransfer::cleanup()
{
    setFileDialogAnswerer({});
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

// Chooses the menu item and answers its dialog; no file cancels it.
void tst_FavoritesTransfer::run(const QString &item, const QString &file)
{
    setFileDialogAnswerer(
        [this, file](const FileDialogRequest &request) -> std::optional<FileDialogAnswer> {
            m_asked.append(request);
            if (file.isNull())
                return {};
            return FileDialogAnswer{file, 2};
        });
    m_frame->run(item);
}

QString tst_FavoritesTransfer::write(const QByteArray &bytes) const
{
    QFile file(m_home->home() + "/in.html"_L1);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName()
                                                                                : QString();
}

void tst_FavoritesTransfer::dialogsAreAskedAsDescribed_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<bool>("save");
    QTest::addColumn<QString>("title");
    QTest::newRow("export") << u"mnuFavoritesExport"_s << true << u"Export Favorites"_s;
    QTest::newRow("import") << u"mnuFavoritesImport"_s << false << u"Import Favorites"_s;
}

void tst_FavoritesTransfer::dialogsAreAskedAsDescribed()
{
    QFETCH(QString, item);
    QFETCH(bool, save);
    run(item, {});
    QCOMPARE(m_asked.size(), 1);
    const FileDialogRequest &asked = m_asked.first();
    QCOMPARE(asked.kind, save ? FileDialogRequest::Kind::Save : FileDialogRequest::Kind::Open);
    QTEST(asked.title, "title");
    QCOMPARE(asked.defaultExt, u"html"_s);
    QCOMPARE(asked.initDir, AppFolder::path());
    QCOMPARE(asked.filterIndex, 2);
    QCOMPARE(asked.filters.size(), 2);
    QCOMPARE(asked.filters.at(0).description, u"HTM File (*.htm)"_s);
    QCOMPARE(asked.filters.at(0).patterns, u"*.htm"_s);
    QCOMPARE(asked.filters.at(1).description, u"HTML File (*.html)"_s);
    QCOMPARE(asked.filters.at(1).patterns, u"*.html"_s);
    QCOMPARE(asked.owner, m_frame->window());
}

void tst_FavoritesTransfer::titlesAreTranslated()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[frmMain]\nmnuFavoritesExport=Hinaus\n"
                                    "mnuFavoritesImport=Herein\n"_ba));
    run(u"mnuFavoritesExport"_s, {});
    run(u"mnuFavoritesImport"_s, {});
    QCOMPARE(m_asked.at(0).title, u"Hinaus"_s);
    QCOMPARE(m_asked.at(1).title, u"Herein"_s);
}

void tst_FavoritesTransfer::cancelDoesNothing()
{
    run(u"mnuFavoritesImport"_s, {});
    run(u"mnuFavoritesExport"_s, {});
    QVERIFY(!m_transfer->isRunning());
    QVERIFY(!QFileInfo::exists(m_home->favorites()));
}

void tst_FavoritesTransfer::importTellsAndLists()
{
    run(u"mnuFavoritesImport"_s,
        write("<A HREF=\"a:\">A</A>\n<A>bad</A>\n<A HREF=\"place:x\">query</A>"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QCOMPARE(told(), u"1 favorites and 0 folders imported, 0 already there, 2 skipped."_s);
    QVERIFY(!m_home->read(u"A.url"_s).isNull());
    QVERIFY(!QApplication::activeModalWidget());
    auto *button = control<QToolButton>(u"cmdTransferList"_s);
    QTRY_VERIFY(button->isVisible());
    button->click();
    auto *list = control<QTreeWidget>(u"lvSkipped"_s);
    QVERIFY(list->isVisible());
    QVERIFY(!list->window()->isModal());
    QCOMPARE(list->topLevelItemCount(), 2);
    QCOMPARE(list->topLevelItem(1)->text(0), u"3"_s);
    QCOMPARE(list->topLevelItem(1)->text(1), u"query"_s);
    control<QToolButton>(u"cmdCloseTransfer"_s)->click();
    QVERIFY(!button->isVisible());
}

void tst_FavoritesTransfer::importDoesNotRefreshTheBar()
{
    m_bar->show();
    QTRY_VERIFY(!m_bar->isRefreshing());
    const QSignalSpy refreshed(m_bar, &FavoritesBar::refreshed);
    run(u"mnuFavoritesImport"_s, write("<A HREF=\"a:\">A</A>"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QVERIFY(!m_bar->isRefreshing());
    QCOMPARE(refreshed.size(), 0);
}

void tst_FavoritesTransfer::exportWritesTheFile()
{
    QVERIFY(m_home->writeLink(u"F/A.url"_s, "http://a/"));
    const QString file = m_home->home() + "/out.html"_L1;
    run(u"mnuFavoritesExport"_s, file);
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QFile out(file);
    QVERIFY(out.open(QIODevice::ReadOnly));
    QVERIFY(out.readAll().contains("HREF=\"http://a/\""));
    QCOMPARE(told(), u"1 favorites in 1 folders exported, 0 without an address left out."_s);
}

void tst_FavoritesTransfer::exportThatCannotBeWritten()
{
    run(u"mnuFavoritesExport"_s, u"/proc/out.html"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QCOMPARE(told(), u"The favorites could not be exported."_s);
}

void tst_FavoritesTransfer::stoppedImportIsTold()
{
    QByteArray bytes;
    for (int i = 0; i < 200'000; ++i)
        bytes += "<DT><A HREF=\"http://a/\">A" + QByteArray::number(i) + "</A>\n";
    run(u"mnuFavoritesImport"_s, write(bytes));
    control<QToolButton>(u"cmdStopTransfer"_s)->click();
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QVERIFY(told().startsWith(u"Stopped. "_s));
    for (const QString &name : QDir(m_home->favorites()).entryList(QDir::Files))
        QVERIFY(m_home->read(name).endsWith("URL=http://a/\r\n"));
}

void tst_FavoritesTransfer::stoppedExportLeavesTheFile()
{
    for (int i = 0; i < 500; ++i)
        QVERIFY(m_home->writeLink(QString::number(i) + u".url"_s, "http://a/"));
    const QString file = write("mine");
    run(u"mnuFavoritesExport"_s, file);
    m_transfer->stop();
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QFile out(file);
    QVERIFY(out.open(QIODevice::ReadOnly));
    if (told().startsWith(u"Stopped."_s))
        QCOMPARE(out.readAll(), "mine"_ba);
    else
        QVERIFY(out.readAll().endsWith("</DL><p>\n"));
}

// An export that waits for another writer in the folder can still be stopped.
void tst_FavoritesTransfer::stopWhileTheFolderIsLocked()
{
    const QString file = write("mine");
    auto lock = std::make_unique<FolderLock>(m_home->home());
    QVERIFY(lock->isHeld());
    run(u"mnuFavoritesExport"_s, file);
    QVERIFY(m_transfer->isRunning());
    control<QToolButton>(u"cmdStopTransfer"_s)->click();
    lock.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QCOMPARE(told(), u"Stopped. Nothing was exported."_s);
    QCOMPARE(read(file), "mine"_ba);
}

void tst_FavoritesTransfer::stopWhileWritingIsTooLate()
{
    QVERIFY(m_home->writeLink(u"A.url"_s, "http://a/"));
    const QString file = write("mine");
    // Opening is the first operation, writing the second.
    FileFaults::call([this] { m_transfer->stop(); }, 2);
    run(u"mnuFavoritesExport"_s, file);
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QVERIFY(FileFaults::disarm());
    QVERIFY(read(file).contains("HREF=\"http://a/\""));
    QCOMPARE(told(), u"1 favorites in 0 folders exported, 0 without an address left out."_s);
}

void tst_FavoritesTransfer::importOntoAFullDisk()
{
    const Unlogged unlogged;
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += "<DT><A HREF=\"http://a/\">A" + QByteArray::number(i) + "</A>\n";
    const QString file = write(bytes);
    FileFaults::arm(FileFaults::Kind::FullDisk, 500);
    run(u"mnuFavoritesImport"_s, file);
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    FileFaults::disarm();
    const QStringList names = QDir(m_home->favorites()).entryList(QDir::Files);
    QVERIFY(names.size() > 100);
    for (const QString &name : names)
        QVERIFY(m_home->read(name).endsWith("URL=http://a/\r\n"));
    QCOMPARE(told(),
             u"The import could not be completed. %1 favorites and 0 folders imported, 0 already "
             "there, 100 skipped."_s.arg(names.size()));
    control<QToolButton>(u"cmdTransferList"_s)->click();
    auto *list = control<QTreeWidget>(u"lvSkipped"_s);
    QCOMPARE(list->topLevelItemCount(), 100);
    QCOMPARE(list->topLevelItem(0)->text(2), u"It could not be written"_s);
}

void tst_FavoritesTransfer::exportOntoAFullDisk()
{
    const Unlogged unlogged;
    QVERIFY(m_home->writeLink(u"A.url"_s, "http://a/"));
    int at = 0;
    int failures = 0;
    for (bool reached = true; reached;) {
        const QString path = write("mine");
        FileFaults::arm(FileFaults::Kind::Fail, ++at);
        run(u"mnuFavoritesExport"_s, path);
        QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
        reached = FileFaults::disarm();
        const bool failed = told() == u"The favorites could not be exported."_s;
        failures += failed ? 1 : 0;
        QCOMPARE(read(path).contains("http://a/"), !failed);
        QCOMPARE(read(path) == "mine", failed);
        QCOMPARE(QDir(m_home->home()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{u"in.html"_s});
        QVERIFY(reached || !failed);
    }
    QVERIFY2(failures >= 3, "making, writing and putting the file in place can each fail");
}

void tst_FavoritesTransfer::importIntoAReadOnlyFolder()
{
    const Unlogged unlogged;
    QVERIFY(m_home->makeFolder());
    const QString file = write("<A HREF=\"a:\">A</A><H3>F</H3><DL><A HREF=\"b:\">B</A></DL>");
    FileFaults::arm(FileFaults::Kind::ReadOnly, 1);
    run(u"mnuFavoritesImport"_s, file);
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    FileFaults::disarm();
    QCOMPARE(told(), u"0 favorites and 0 folders imported, 0 already there, 3 skipped."_s);
    // The strip lays its buttons out at the next turn of the event loop.
    QTRY_VERIFY(control<QToolButton>(u"cmdTransferList"_s)->isVisible());
    QVERIFY(QDir(m_home->favorites()).isEmpty());
}

void tst_FavoritesTransfer::importOfRandomBytes()
{
    QRandomGenerator random(3);
    QByteArray bytes(1'000'000, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(random.bounded(256));
    run(u"mnuFavoritesImport"_s, write(bytes));
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QVERIFY(told().contains(u"favorites and"_s));
}

void tst_FavoritesTransfer::frameGoesWhileImporting()
{
    QByteArray bytes;
    for (int i = 0; i < 100'000; ++i)
        bytes += "<DT><A HREF=\"http://a/\">A" + QByteArray::number(i) + "</A>\n";
    run(u"mnuFavoritesImport"_s, write(bytes));
    m_frame.reset();
    for (const QString &name : QDir(m_home->favorites()).entryList(QDir::Files))
        QVERIFY(m_home->read(name).endsWith("URL=http://a/\r\n"));
}

void tst_FavoritesTransfer::interfaceIsNotHeld()
{
    QByteArray bytes;
    for (int i = 0; i < 20'000; ++i)
        bytes += "<DT><A HREF=\"http://a/\">A" + QByteArray::number(i) + "</A>\n";
    const QString file = write(bytes);
    int beats = 0;
    QTimer beat;
    connect(&beat, &QTimer::timeout, this, [&beats] { ++beats; });
    beat.start(0);
    run(u"mnuFavoritesImport"_s, file);
    QVERIFY(m_transfer->isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    QVERIFY(beats > 10);
    QVERIFY(told().startsWith(u"20000 favorites"_s));
}

void tst_FavoritesTransfer::picture_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QPalette(QColor(0xee, 0xee, 0xee));
    QTest::newRow("dark") << QPalette(QColor(0x30, 0x30, 0x30));
}

// Nothing is cut off, in pictures that may be kept to be looked at.
void tst_FavoritesTransfer::picture()
{
    QFETCH(QPalette, palette);
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([before] { QApplication::setPalette(before); });
    QApplication::setPalette(palette);
    const auto keep = [](QWidget *widget, const char *name) {
        const QString folder = qEnvironmentVariable("ORVANE_PICTURES");
        return folder.isEmpty()
            || widget->grab().save(folder + u'/' + QLatin1StringView(name) + u'-'
                                   + QLatin1StringView(QTest::currentDataTag()) + u".png"_s);
    };
    QByteArray bytes = "<A>Nothing here</A>\n<A HREF=\"place:x\">Recent</A>\n"
                       "<A HREF=\"http://a/>Recipes</A>\n<DT>\n";
    for (int i = 0; i < 1000; ++i)
        bytes += "<DT><A HREF=\"http://a/\">A" + QByteArray::number(i) + "</A>\n";
    run(u"mnuFavoritesImport"_s, write(bytes));
    auto *bar = control<QProgressBar>(u"prgTransfer"_s);
    QTRY_VERIFY(bar->value() > 20 || !m_transfer->isRunning());
    QVERIFY(keep(m_frame->window(), "transfer-running"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_transfer->isRunning(), 60'000);
    for (const QToolButton *button : bar->parentWidget()->findChildren<QToolButton *>())
        QVERIFY(!button->isVisible() || button->width() >= button->minimumSizeHint().width());
    QVERIFY(keep(m_frame->window(), "transfer-ended"));
    control<QToolButton>(u"cmdTransferList"_s)->click();
    auto *list = control<QTreeWidget>(u"lvSkipped"_s);
    QTRY_VERIFY(list->isVisible());
    QVERIFY(keep(list->window(), "transfer-list"));
}

QTEST_MAIN(tst_FavoritesTransfer)
#include "tst_favoritestransfer.moc"
