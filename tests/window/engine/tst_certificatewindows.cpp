// Servers that cannot prove who they are, in real windows.
#include "CertificateDetails.h"
#include "CertificateExceptions.h"
#include "CertificateNotice.h"
#include "EngineTest.h"
#include "PageAsks.h"
#include "PageLife.h"
#include "PageProperties.h"
#include "PopupScene.h"
#include "StatusStrip.h"
#include "TestCertificates.h"

#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QPushButton>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using TestCertificates::Shape;
using TestCertificates::Signer;

class tst_certificatewindows : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void statusSaysNotSecure();
    void noLockBehindTheNotice();
    void lockOpensTheCertificates();
    void openLockOpensTheCertificates();
    void propertiesOpenTheCertificates();
    void noLockOpensNothing();
    void serverThatIsGoneIsSaid();
    void dialogGoesWithItsWindow();
    void hundredPopupsToBadHosts();
    void fiftyWindowsOfTheUsers();
    void openerCannotPressGoOn();
    void pageThatClosesItself();
    void windowClosedWhileShown();
    void windowClosedWithTheFocusInside();
    void programEndsWhileShown();
    void escapeInTheWindow();
    void screenReaderHearsTheReason();
    void backAndForwardTellTheTruth();
    void goingOnHoldsForAllPorts();
    void commandsLeaveTheHiddenPageAlone();

private:
    std::unique_ptr<TestServer> serverOf(const Shape &shape) const
    {
        return std::make_unique<TestServer>(TestCertificates::shaped(m_folder.path(), shape));
    }
    static CertificateNotice *noticeIn(const BrowserWindow *form)
    {
        const auto all =
            form ? form->findChildren<CertificateNotice *>() : QList<CertificateNotice *>();
        for (CertificateNotice *each : all) {
            if (each->isVisible())
                return each;
        }
        return nullptr;
    }
    BrowserWindow *openBad(const QString &path = u"/a"_s)
    {
        BrowserWindow *form = m_scene->frame.open(m_bad->url(path, u"localhost"_s), true);
        [form] { QTRY_VERIFY(noticeIn(form)); }();
        return form;
    }
    static void goOn(BrowserWindow *form)
    {
        auto *button = noticeIn(form)->findChild<QPushButton *>(u"cmdGoOn"_s);
        QVERIFY(button);
        QTRY_VERIFY(button->isEnabled());
        button->click();
    }
    static CertificateDetails *detailsIn(const BrowserWindow *form)
    {
        return form->findChild<CertificateDetails *>();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<TestServer> m_bad;
    std::unique_ptr<PopupScene> m_scene;
};

void tst_certificatewindows::initTestCase()
{
    const QString wrong = TestCertificates::make(m_folder.path(), QDir::homePath());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_certificatewindows::init()
{
    m_scene = std::make_unique<PopupScene>();
    m_bad = serverOf({.signer = Signer::Stranger});
    m_bad->page("/a", "<title>Secret</title>");
}

void tst_certificatewindows::cleanup()
{
    m_scene.reset();
    m_bad.reset();
    CertificateExceptions::instance().clear();
}

void tst_certificatewindows::statusSaysNotSecure()
{
    BrowserWindow *form = openBad();
    StatusStrip *status = form->statusBar();
    QVERIFY(!status->unprovenShown() && status->unprovenRect().isEmpty());
    goOn(form);
    QTRY_VERIFY(status->unprovenShown());
    QVERIFY(!status->secureShown());
    QVERIFY(status->accessibleDescription().startsWith("Not secure"_L1));
    QVERIFY(status->rect().contains(status->unprovenRect()));
    form->browser()->navigate(u"about:blank"_s);
    QTRY_VERIFY(!status->unprovenShown());
}

void tst_certificatewindows::noLockBehindTheNotice()
{
    const auto good = serverOf({});
    good->page("/a", "<title>Good</title>");
    BrowserWindow *form = m_scene->frame.open(good->url(u"/a"_s), true);
    QTRY_VERIFY(form->statusBar()->secureShown());
    const QString address = m_bad->url(u"/b"_s, u"localhost"_s);
    form->browser()->navigate(address);
    QTRY_VERIFY(noticeIn(form));
    QVERIFY(!form->statusBar()->secureShown());
    QCOMPARE(form->shownAddress(), address);
    QCOMPARE(m_scene->frame.addressText, address);
    QVERIFY(!form->findChild<QWebEngineView *>()->isVisible());
}

void tst_certificatewindows::lockOpensTheCertificates()
{
    const auto good = serverOf({});
    good->page("/a", "<title>Good</title>");
    BrowserWindow *form = m_scene->frame.open(good->url(u"/a"_s, u"localhost"_s), true);
    StatusStrip *status = form->statusBar();
    QTRY_VERIFY(status->secureShown());
    QTest::mouseClick(status, Qt::LeftButton, {}, status->secureRect().center());
    QTRY_VERIFY(detailsIn(form));
    QListWidget *list = detailsIn(form)->findChild<QListWidget *>();
    QTRY_COMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), u"localhost"_s);
    const QString note = detailsIn(form)->findChild<QLabel *>(u"lblNote"_s)->text();
    QVERIFY2(note.startsWith("This is what the server shows now"_L1), qPrintable(note));
    QVERIFY2(note.contains("TLS"_L1), qPrintable(note));
    QCOMPARE(detailsIn(form)->windowTitle(),
             u"Certificate of https://localhost:%1"_s.arg(good->port()));
}

void tst_certificatewindows::openLockOpensTheCertificates()
{
    BrowserWindow *form = openBad();
    goOn(form);
    StatusStrip *status = form->statusBar();
    QTRY_VERIFY(status->unprovenShown());
    QTest::mouseClick(status, Qt::LeftButton, {}, status->unprovenRect().center());
    QTRY_VERIFY(detailsIn(form));
    QTRY_COMPARE(detailsIn(form)->findChild<QListWidget *>()->count(), 2);
    const QString note = detailsIn(form)->findChild<QLabel *>(u"lblNote"_s)->text();
    QVERIFY2(note.startsWith("This site could not prove who it is."_L1), qPrintable(note));
}

/// The way for the keyboard.
void tst_certificatewindows::propertiesOpenTheCertificates()
{
    const auto good = serverOf({});
    good->page("/a", "<title>Good</title>");
    BrowserWindow *form = m_scene->frame.open(good->url(u"/a"_s), true);
    QTRY_VERIFY(form->statusBar()->secureShown());
    auto *properties = new PageProperties(PopupScene::control(form)->page(), form);
    properties->open();
    auto *button = properties->findChild<QPushButton *>(u"cmdCertificates"_s);
    QVERIFY(button && button->isVisible());
    button->click();
    auto *details = properties->findChild<CertificateDetails *>();
    QVERIFY(details);
    QTRY_COMPARE(details->findChild<QListWidget *>()->count(), 2);
}

void tst_certificatewindows::noLockOpensNothing()
{
    m_scene->server.page("/a", "<title>Plain</title>");
    BrowserWindow *form = m_scene->frame.open(m_scene->server.url(u"/a"_s), true);
    PopupScene::waitUntilLoaded(form);
    StatusStrip *status = form->statusBar();
    QTest::mouseClick(status, Qt::LeftButton, {}, QPoint(status->width() - 10, 8));
    QVERIFY(!detailsIn(form));
    form->browser()->showCertificates();
    QVERIFY(!detailsIn(form));
}

void tst_certificatewindows::serverThatIsGoneIsSaid()
{
    auto good = serverOf({});
    good->page("/a", "<title>Good</title>");
    BrowserWindow *form = m_scene->frame.open(good->url(u"/a"_s), true);
    QTRY_VERIFY(form->statusBar()->secureShown());
    good.reset();
    form->browser()->showCertificates();
    QTRY_VERIFY(detailsIn(form));
    const QLabel *note = detailsIn(form)->findChild<QLabel *>(u"lblNote"_s);
    QTRY_VERIFY(note->text().startsWith("The server could not be asked"_L1));
    QCOMPARE(detailsIn(form)->findChild<QListWidget *>()->count(), 0);
}

void tst_certificatewindows::dialogGoesWithItsWindow()
{
    const auto good = serverOf({});
    good->page("/a", "<title>Good</title>");
    good->hold("/a");
    QPointer<BrowserWindow> form = m_scene->frame.open(good->url(u"/a"_s), true);
    good->release();
    QTRY_VERIFY(good->count("/a") > 0);
    good->release();
    QTRY_VERIFY(form->statusBar()->secureShown());
    form->browser()->showCertificates();
    const QPointer<CertificateDetails> details = detailsIn(form);
    QVERIFY(details);
    form->unload();
    QTRY_VERIFY(!form && !details);
}

void tst_certificatewindows::hundredPopupsToBadHosts()
{
    BrowserWindow *opener =
        m_scene->openPage("<script>setTimeout(() => { for (let n = 0; n < 100; ++n) window.open('"
                          + m_bad->url(u"/a"_s, u"localhost"_s).toUtf8()
                          + "?' + n); document.title = 'through'; })</script>");
    QTRY_COMPARE_WITH_TIMEOUT(opener->windowTitle(), u"through"_s, 60000);
    const QList<BrowserWindow *> windows = PopupScene::popups();
    QVERIFY2(!windows.isEmpty() && windows.size() < 100,
             qPrintable(QString::number(windows.size())));
    for (BrowserWindow *each : windows)
        QTRY_VERIFY(noticeIn(each));
    QVERIFY(!noticeIn(opener));
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_bad->requests().size(), 0);
}

/// As a network that asks for a sign-in of its own gives them. Each tells of its own, one goes on
/// for itself alone, and all end with the program.
void tst_certificatewindows::fiftyWindowsOfTheUsers()
{
    QList<BrowserWindow *> windows;
    for (int i = 0; i < 50; ++i)
        windows.append(m_scene->frame.open(m_bad->url(u"/a"_s, u"site%1.localhost"_s.arg(i))));
    for (const BrowserWindow *each : windows)
        QTRY_VERIFY_WITH_TIMEOUT(noticeIn(each), PopupScene::patience);
    QVERIFY(!QApplication::activeModalWidget());
    for (const int at : {10, 20}) {
        m_scene->frame.area->setActiveSubWindow(windows.at(at));
        goOn(windows.at(at));
        QTRY_COMPARE(windows.at(at)->windowTitle(), u"Secret"_s);
    }
    QCOMPARE(m_bad->count("/a"), 2);
    PageLife::dropAll();
    for (const BrowserWindow *each : windows)
        QVERIFY(!noticeIn(each));
}

/// It sends its window there and back, and there again: each notice begins its time anew.
void tst_certificatewindows::openerCannotPressGoOn()
{
    m_scene->server.page("/between", "<title>between</title>");
    BrowserWindow *opener = m_scene->openPage({});
    const QString bad = m_bad->url(u"/a"_s, u"localhost"_s);
    PopupScene::script(opener, u"window.w = window.open('%1'); 1"_s.arg(bad));
    BrowserWindow *popup = PopupScene::waitForPopup();
    QTRY_VERIFY(noticeIn(popup));
    for (int i = 0; i < 5; ++i) {
        const QPointer<CertificateNotice> before = noticeIn(popup);
        PopupScene::script(opener, u"w.location = '%1?%2'; 1"_s.arg(bad).arg(i));
        QTRY_VERIFY(!before && noticeIn(popup));
        QVERIFY(!noticeIn(popup)->findChild<QPushButton *>(u"cmdGoOn"_s)->isEnabled());
        QCOMPARE(popup->findChildren<CertificateNotice *>().size(), 1);
    }
    PopupScene::script(opener, u"w.location = '/between'; 1"_s);
    QTRY_COMPARE(popup->windowTitle(), u"between"_s);
    QTRY_VERIFY(!noticeIn(popup));
    QVERIFY(popup->findChild<QWebEngineView *>()->isVisible());
    QCOMPARE(m_bad->requests().size(), 0);
}

void tst_certificatewindows::pageThatClosesItself()
{
    BrowserWindow *opener = m_scene->openPage({});
    PopupScene::script(
        opener, u"window.w = window.open('%1'); 1"_s.arg(m_bad->url(u"/a"_s, u"localhost"_s)));
    QPointer<BrowserWindow> popup = PopupScene::waitForPopup();
    QTRY_VERIFY(noticeIn(popup));
    noticeIn(popup)->findChild<QPushButton *>(u"cmdDetails"_s)->click();
    QTRY_VERIFY(detailsIn(popup));
    PopupScene::script(opener, u"w.close(); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(popup));
    QVERIFY(noticeIn(popup));
    popup->unload();
    QTRY_VERIFY(!popup);
}

void tst_certificatewindows::windowClosedWhileShown()
{
    const QPointer<BrowserWindow> form = openBad();
    noticeIn(form)->findChild<QPushButton *>(u"cmdDetails"_s)->click();
    QTRY_VERIFY(detailsIn(form));
    form->close();
    QTRY_VERIFY(!form);
}

void tst_certificatewindows::windowClosedWithTheFocusInside()
{
    const QPointer<BrowserWindow> form = openBad();
    form->focusContents();
    auto *back = noticeIn(form)->findChild<QPushButton *>(u"cmdBack"_s);
    QTRY_VERIFY(back->hasFocus());
    delete form.data();
    QVERIFY(!form);
}

void tst_certificatewindows::programEndsWhileShown()
{
    const QPointer<BrowserWindow> form = openBad();
    form->focusContents();
    PageLife::dropAll();
    QVERIFY(!noticeIn(form));
}

void tst_certificatewindows::escapeInTheWindow()
{
    m_scene->server.page("/before", "<title>before</title>");
    BrowserWindow *form = m_scene->frame.open(m_scene->server.url(u"/before"_s), true);
    PopupScene::waitUntilLoaded(form);
    form->focusContents();
    form->browser()->navigate(m_bad->url(u"/a"_s, u"localhost"_s));
    QTRY_VERIFY(noticeIn(form));
    QTRY_VERIFY(noticeIn(form)->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_COMPARE(form->windowTitle(), u"before"_s);
    QTRY_VERIFY(!noticeIn(form));
    // The page has the keyboard again.
    QTRY_VERIFY(form->findChild<QWebEngineView *>()->isAncestorOf(QApplication::focusWidget()));
}

void tst_certificatewindows::screenReaderHearsTheReason()
{
    BrowserWindow *form = openBad();
    const CertificateNotice *notice = noticeIn(form);
    QCOMPARE(notice->accessibleName(),
             u"https://localhost:%1 could not prove who it is"_s.arg(m_bad->port()));
    QVERIFY(notice->accessibleDescription().contains("issued by Stranger"_L1));
    for (const QString &name : {u"cmdBack"_s, u"cmdDetails"_s, u"cmdGoOn"_s}) {
        const auto *button = notice->findChild<QPushButton *>(name);
        QVERIFY(button->focusPolicy() & Qt::TabFocus);
        QVERIFY(!button->text().isEmpty());
    }
}

void tst_certificatewindows::backAndForwardTellTheTruth()
{
    const auto good = serverOf({});
    good->page("/a", "<title>Good</title>");
    BrowserWindow *form = m_scene->frame.open(good->url(u"/a"_s), true);
    const StatusStrip *status = form->statusBar();
    QTRY_VERIFY(status->secureShown());
    form->browser()->navigate(m_bad->url(u"/a"_s, u"localhost"_s));
    for (int i = 0; i < 2; ++i) {
        QTRY_VERIFY(noticeIn(form));
        QVERIFY(!status->secureShown() && !status->unprovenShown());
        form->browser()->goBack();
        QTRY_VERIFY(!noticeIn(form) && status->secureShown());
        QVERIFY(!status->unprovenShown());
        QTRY_COMPARE(form->windowTitle(), u"Good"_s);
        form->browser()->goForward();
    }
    QTRY_VERIFY(noticeIn(form));
    goOn(form);
    for (int i = 0; i < 2; ++i) {
        QTRY_VERIFY(status->unprovenShown() && !status->secureShown());
        QTRY_COMPARE(form->windowTitle(), u"Secret"_s);
        form->browser()->goBack();
        QTRY_VERIFY(status->secureShown() && !status->unprovenShown());
        form->browser()->goForward();
    }
}

/// The engine keeps what it was told by the host's name.
void tst_certificatewindows::goingOnHoldsForAllPorts()
{
    const auto shaped = TestCertificates::shaped(m_folder.path(), {.signer = Signer::Stranger});
    TestServer one(shaped);
    TestServer other(shaped);
    one.page("/a", "<title>one</title>");
    other.page("/a", "<title>other</title>");
    BrowserWindow *form = m_scene->frame.open(one.url(u"/a"_s, u"localhost"_s), true);
    QTRY_VERIFY(noticeIn(form));
    const auto *scope = noticeIn(form)->findChild<QLabel *>(u"lblScope"_s);
    QVERIFY(scope && scope->isVisible());
    QCOMPARE(scope->text(),
             u"If you go on, this certificate passes at every port of localhost until Orvane "
             "ends."_s);
    QVERIFY(noticeIn(form)->accessibleDescription().contains(scope->text()));
    goOn(form);
    QTRY_COMPARE(form->windowTitle(), u"one"_s);
    form->browser()->navigate(other.url(u"/a"_s, u"localhost"_s));
    QTRY_COMPARE(form->windowTitle(), u"other"_s);
    QVERIFY(!noticeIn(form));
    QTRY_VERIFY(form->statusBar()->unprovenShown());
}

/// What is behind the notice is an error's page, which the user does not see.
void tst_certificatewindows::commandsLeaveTheHiddenPageAlone()
{
    BrowserWindow *form = openBad();
    WebBrowser &browser = *form->browser();
    const WebPage &page = *PopupScene::control(form)->page();
    const qsizetype windows = QApplication::topLevelWidgets().size();
    for (const OleCmd command : {OleCmd::SaveAs, OleCmd::Print, OleCmd::PrintPreview,
                                 OleCmd::Properties, OleCmd::SelectAll}) {
        QVERIFY(!browser.execCommand(command, OleExecOpt::Default));
        QCOMPARE(browser.queryStatus(command), 0);
    }
    QCOMPARE(QApplication::topLevelWidgets().size(), windows);
    const QVariant largest = 4;
    QVERIFY2(browser.execCommand(OleCmd::Zoom, OleExecOpt::DoNotPromptUser, &largest),
             "for what the window shows next");
    const qreal zoom = page.zoomFactor();
    QVERIFY(zoom > 1);
    QString markup = u"not told yet"_s;
    browser.outerHtml([&markup](const QString &text) { markup = text; });
    QTRY_COMPARE(markup, QString());
    goOn(form);
    QTRY_COMPARE(form->windowTitle(), u"Secret"_s);
    QVERIFY(browser.queryStatus(OleCmd::SelectAll) != 0);
    QCOMPARE(page.zoomFactor(), zoom);
}

ORVANE_ENGINE_TEST_MAIN(tst_certificatewindows)
#include "tst_certificatewindows.moc"
