#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include "BrowserWindow.h"
#include "FakeWebBrowser.h"
#include "Forms.h"
#include "FrameOpener.h"
#include "MainWindow.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

/// The user may leave while the program still starts: loading lets pending events run.
class tst_CloseWhileLoading : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothingOpensInAClosedFrame_data();
    void nothingOpensInAClosedFrame();
    void openFrameIsNotClosed();

private:
    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<MainWindow> m_frame;
    WebBrowserMaker m_maker;
};

void tst_CloseWhileLoading::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(m_folder->writeSettings("[Settings]\r\nAskOnExit=0\r\n"));
    m_maker = setWebBrowserMaker([](QWidget *host) { return new FakeWebBrowser(host); });
    m_frame = std::make_unique<MainWindow>();
}

void tst_CloseWhileLoading::cleanup()
{
    m_frame.reset();
    setWebBrowserMaker(m_maker);
    m_folder.reset();
}

void tst_CloseWhileLoading::nothingOpensInAClosedFrame_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::newRow("home page") << QString();
    QTest::newRow("address") << u"http://one.example/"_s;
    QTest::newRow("profile") << u"pages.orp"_s;
}

void tst_CloseWhileLoading::nothingOpensInAClosedFrame()
{
    QFETCH(QString, commandLine);
    m_frame->setCommandLine(commandLine);
    int profiles = 0;
    m_frame->opener().setProfileOpener(
        [&profiles](const QString &, bool) { return ++profiles > 0; });
    QTimer::singleShot(0, m_frame.get(), [this] { m_frame->close(); });
    m_frame->load();
    m_frame->translate();
    QVERIFY(m_frame->isClosed());
    QVERIFY(!m_frame->isVisible());
    QVERIFY2(Forms::all().isEmpty(), "neither a splash nor a window is left over");
    QVERIFY(FakeWebBrowser::made().isEmpty());
    QCOMPARE(profiles, 0);

    m_frame->navigateActive(u"http://two.example/"_s);
    QVERIFY(FakeWebBrowser::made().isEmpty());
}

void tst_CloseWhileLoading::openFrameIsNotClosed()
{
    m_folder->setSetting(u"Options"_s, u"Show-Splash"_s, u"0"_s);
    m_frame->load();
    QVERIFY(!m_frame->isClosed());
    QCOMPARE(FakeWebBrowser::made().size(), 1);
}

QTEST_MAIN(tst_CloseWhileLoading)
#include "tst_closewhileloading.moc"
