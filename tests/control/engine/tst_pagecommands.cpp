// Edit commands, zoom, picture, downloads, dialogs and full screen of a real page.
#include "BrowserHost.h"
#include "ControlScene.h"
#include "EngineTest.h"
#include "TempAppFolder.h"
#include "WebView.h"

#include <QClipboard>
#include <QDir>
#include <QLabel>
#include <QMimeData>

using namespace Qt::StringLiterals;

class tst_pagecommands : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothingWithoutAPage();
    void copyAndSelectAll();
    void cutNeedsAFieldWithASelection();
    void pasteComesFromTheClipboard();
    void undoTakesTypingBack();
    void readOnlyFieldIsNotCut();
    void zoomLevels();
    void pictureOfThePage();
    void downloadLandsInTheFolder();
    void downloadOfTheSameNameIsKeptApart();
    void downloadLeavesThePage();
    void fullScreenComesAndGoes();

private:
    int status(OleCmd command) { return m_scene->browser->queryStatus(command); }
    bool run(OleCmd command) { return m_scene->browser->execCommand(command, OleExecOpt::Default); }
    void open(const QString &path) { m_scene->open(m_scene->server.url(path)); }
    static QDir downloads()
    {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    }

    std::unique_ptr<ControlScene> m_scene;
};

void tst_pagecommands::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/field",
                         "<title>F</title><input id=i value='some text'><p id=p>words of the page"
                         "</p><input id=r readonly value=fixed>");
    m_scene->window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_scene->window));
}

void tst_pagecommands::cleanup()
{
    m_scene.reset();
}

void tst_pagecommands::nothingWithoutAPage()
{
    QVERIFY(!run(OleCmd::Copy));
    QCOMPARE(status(OleCmd::Paste), 0);
}

void tst_pagecommands::copyAndSelectAll()
{
    open(u"/field"_s);
    QVERIFY(run(OleCmd::SelectAll));
    QTRY_VERIFY(m_scene->browser->page()->hasSelection());
    QTRY_COMPARE(status(OleCmd::Copy), 3);
    QGuiApplication::clipboard()->setText(u"before"_s);
    QVERIFY(run(OleCmd::Copy));
    QTRY_VERIFY(QGuiApplication::clipboard()->text().contains("words of the page"_L1));
    QVERIFY(run(OleCmd::ClearSelection));
    QTRY_VERIFY(!m_scene->browser->page()->hasSelection());
    QVERIFY(status(OleCmd::Copy) != 3);
}

void tst_pagecommands::cutNeedsAFieldWithASelection()
{
    open(u"/field"_s);
    m_scene->browser->setFocus();
    run(OleCmd::SelectAll);
    QTRY_VERIFY(m_scene->browser->page()->hasSelection());
    QVERIFY(status(OleCmd::Cut) != 3);
    m_scene->script(u"i.focus(); i.select()"_s);
    QTRY_COMPARE(status(OleCmd::Cut), 3);
    QVERIFY(run(OleCmd::Cut));
    QTRY_COMPARE(QGuiApplication::clipboard()->text(), u"some text"_s);
    QTRY_COMPARE(m_scene->script(u"i.value"_s), QString());
}

void tst_pagecommands::pasteComesFromTheClipboard()
{
    open(u"/field"_s);
    m_scene->browser->setFocus();
    m_scene->script(u"i.focus(); i.select()"_s);
    QGuiApplication::clipboard()->setText(u"ümläut \u20ac"_s);
    QTRY_COMPARE(status(OleCmd::Paste), 3);
    QVERIFY(run(OleCmd::Paste));
    QTRY_COMPARE(m_scene->script(u"i.value"_s), u"ümläut \u20ac"_s);
}

void tst_pagecommands::undoTakesTypingBack()
{
    open(u"/field"_s);
    m_scene->browser->setFocus();
    m_scene->script(u"i.focus(); i.select()"_s);
    QGuiApplication::clipboard()->setText(u"new"_s);
    QTRY_COMPARE(status(OleCmd::Paste), 3);
    run(OleCmd::Paste);
    QTRY_COMPARE(m_scene->script(u"i.value"_s), u"new"_s);
    QVERIFY(run(OleCmd::Undo));
    QTRY_COMPARE(m_scene->script(u"i.value"_s), u"some text"_s);
}

void tst_pagecommands::readOnlyFieldIsNotCut()
{
    open(u"/field"_s);
    m_scene->browser->setFocus();
    m_scene->script(u"r.focus(); r.select()"_s);
    QTRY_COMPARE(status(OleCmd::Copy), 3);
    QVERIFY(status(OleCmd::Cut) != 3);
    QVERIFY(status(OleCmd::Paste) != 3);
}

void tst_pagecommands::zoomLevels()
{
    const TempAppFolder folder;
    QVERIFY(folder.isValid());
    open(u"/field"_s);
    QVariant level;
    const auto current = [&] {
        level = QVariant();
        m_scene->browser->execCommand(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, nullptr, &level);
        return level.toInt();
    };
    QCOMPARE(current(), 2);
    const int middle = m_scene->script(u"innerWidth"_s).toInt();
    QList<int> widths;
    for (int wanted = 0; wanted <= 4; ++wanted) {
        const QVariant in = wanted;
        QVERIFY(m_scene->browser->execCommand(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, &in));
        QCOMPARE(current(), wanted);
        if (wanted != 2)
            QTRY_VERIFY(m_scene->script(u"innerWidth"_s).toInt() != middle);
        else
            QTRY_COMPARE(m_scene->script(u"innerWidth"_s).toInt(), middle);
        widths.append(m_scene->script(u"innerWidth"_s).toInt());
    }
    QVERIFY(std::is_sorted(widths.crbegin(), widths.crend()));
    QVERIFY(widths.first() > middle && widths.last() < middle);
    // The size is the site's.
    m_scene->server.page("/a", "<title>A</title>");
    m_scene->open(m_scene->server.url(u"/a"_s));
    QCOMPARE(current(), 4);
    m_scene->open(m_scene->server.url(u"/a"_s, u"localhost"_s));
    QCOMPARE(current(), 2);
    m_scene->open(m_scene->server.url(u"/a"_s));
    QCOMPARE(current(), 4);
}

void tst_pagecommands::pictureOfThePage()
{
    TestServer::Reply picture;
    picture.type = "image/svg+xml";
    picture.body = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                   "<rect width='16' height='16' fill='#ff0000'/></svg>";
    m_scene->server.reply("/picture.svg", picture);
    m_scene->server.page("/with", "<title>W</title><link rel=icon href=/picture.svg>");
    open(u"/with"_s);
    QTRY_VERIFY(!m_scene->events.lastIcon.isNull());
    const QImage image = m_scene->events.lastIcon.pixmap(16, 16).toImage();
    QCOMPARE(image.pixelColor(8, 8), QColor(Qt::red));
    open(u"/field"_s);
    QTRY_VERIFY(m_scene->events.lastIcon.isNull());
}

void tst_pagecommands::downloadLandsInTheFolder()
{
    TestServer::Reply file;
    file.type = "application/octet-stream";
    file.body = "the bytes";
    file.headers = {{"Content-Disposition", "attachment; filename=\"some file.bin\""}};
    m_scene->server.reply("/get", file);
    open(u"/field"_s);
    m_scene->browser->navigate(m_scene->server.url(u"/get"_s));
    const QString path = downloads().filePath(u"some file.bin"_s);
    QTRY_VERIFY(QFileInfo::exists(path));
    QTRY_COMPARE(QFileInfo(path).size(), 9);
    QFile saved(path);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), "the bytes");
}

void tst_pagecommands::downloadOfTheSameNameIsKeptApart()
{
    TestServer::Reply file;
    file.type = "application/octet-stream";
    file.body = "one";
    file.headers = {{"Content-Disposition", "attachment; filename=twice.bin"}};
    m_scene->server.reply("/get", file);
    open(u"/field"_s);
    for (int count = 1; count <= 3; ++count) {
        m_scene->browser->navigate(m_scene->server.url(u"/get"_s));
        QTRY_COMPARE(downloads().entryList({u"twice*.bin"_s}, QDir::Files).size(), count);
        QTRY_VERIFY(!m_scene->browser->isBusy());
    }
}

void tst_pagecommands::downloadLeavesThePage()
{
    TestServer::Reply file;
    file.type = "application/octet-stream";
    file.body = "x";
    m_scene->server.reply("/blob.bin", file);
    open(u"/field"_s);
    m_scene->browser->navigate(m_scene->server.url(u"/blob.bin"_s));
    QTRY_VERIFY(downloads().exists(u"blob.bin"_s));
    QTRY_VERIFY(!m_scene->browser->isBusy());
    QCOMPARE(m_scene->browser->locationUrl(), m_scene->server.url(u"/field"_s));
    QCOMPARE(m_scene->script(u"document.title"_s), u"F"_s);
}

/// Runs `script` later, so that it does not wait for the dialog that it opens.
void tst_pagecommands::fullScreenComesAndGoes()
{
    m_scene->server.page("/full",
                         "<title>F</title><body style='margin:0'>text<script>"
                         "onclick = () => document.body.requestFullscreen();"
                         "document.onfullscreenchange = () => document.title = "
                         "document.fullscreenElement ? 'full' : 'back'</script>");
    open(u"/full"_s);
    QWidget *host = m_scene->browser->widget();
    auto *view = host->findChild<WebView *>();
    QVERIFY(view);
    QTRY_VERIFY(view->focusProxy());
    // The page takes a click only once it is painted.
    [&] {
        QTRY_VERIFY([&] {
            if (m_scene->events.titles.last() != "full"_L1)
                QTest::mouseClick(view->focusProxy(), Qt::LeftButton, {}, QPoint(50, 50));
            return m_scene->events.titles.last() == "full"_L1;
        }());
    }();
    QVERIFY(view->isWindow() && view->isFullScreen());
    // Nothing else says whose page it is now.
    const QPointer<QLabel> notice = view->findChild<QLabel *>(u"lblFullScreen"_s);
    QVERIFY(notice && notice->isVisible());
    const QString site = m_scene->server.url(u"/"_s).chopped(1);
    QVERIFY2(notice->accessibleName().startsWith(site + u' '),
             qUtf8Printable(notice->accessibleName()));
    QVERIFY(notice->text().contains(u"Esc"_s));
    QVERIFY(view->rect().contains(notice->geometry()));
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_COMPARE(m_scene->events.titles.last(), u"back"_s);
    QTRY_COMPARE(view->parentWidget(), host);
    QCOMPARE(view->geometry(), host->rect());
    QVERIFY(!notice);
}

ORVANE_ENGINE_TEST_MAIN(tst_pagecommands)
#include "tst_pagecommands.moc"
