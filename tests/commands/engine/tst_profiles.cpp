#include <QDropEvent>
#include <QMimeData>
#include <QStatusBar>
#include <QWebEnginePage>
#include <QWebEngineView>

#include "../Session.h"
#include "EngineTest.h"
#include "FileDialogRequest.h"

using namespace Qt::StringLiterals;

/// Profiles with real pages: what was open comes back.
class tst_Profiles : public QObject {
    Q_OBJECT

private slots:
    void init() { m_session = std::make_unique<Session>(); }
    void cleanup();

    void savedPagesComeBack();
    void sourceOfAPageComesBackAsThat();
    void commandLineOpensAProfile_data();
    void commandLineOpensAProfile();
    void profileWithoutAddressesOnTheCommandLineIsAnAddress();
    void countOfAddressesThatAreNotThereLeavesNoEmptyFrame_data();
    void countOfAddressesThatAreNotThereLeavesNoEmptyFrame();
    void droppedOnTheFrame();
    void droppedOnAPage();
    void otherDropsArePages();
    void folderDropDoesNothing();
    void pageThatMadeRoomComesAgain();
    void badAddressesEndTheirTurn();
    void sixtyPages();

private:
    QString profile(const QStringList &addresses) const;
    QString url(const QString &path) const { return m_session->server.url(path); }
    bool allShown() const;
    QWidget *page() const { return m_session->active()->browser()->widget()->focusProxy(); }
    static bool drop(QWidget *target, const QString &file);
    QStatusBar &strip() const { return *m_session->frame->findChild<QStatusBar *>(); }

    std::unique_ptr<Session> m_session;
};

void tst_Profiles::cleanup()
{
    setFileDialogAnswerer({});
    m_session.reset();
}

QString tst_Profiles::profile(const QStringList &addresses) const
{
    QByteArray bytes = "[Profile_URLS]\r\n";
    int number = 0;
    for (const QString &address : addresses)
        bytes += "URL" + QByteArray::number(++number) + '=' + address.toUtf8() + "\r\n";
    bytes += "[URL_Count]\r\nCount=" + QByteArray::number(number) + "\r\n";
    m_session->folder.write(u"Profiles/x.orp"_s, bytes);
    return m_session->folder.file(u"Profiles/x.orp"_s);
}

/// True once every window shows its page.
bool tst_Profiles::allShown() const
{
    const QList<BrowserWindow *> windows = browserForms();
    return std::all_of(windows.cbegin(), windows.cend(), [](const BrowserWindow *window) {
        const WebBrowser *browser = window->browser();
        return browser->hasDocument() && !browser->isBusy();
    });
}

/// Drags a file over the widget and drops it; false when the drag is refused.
bool tst_Profiles::drop(QWidget *target, const QString &file)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(QPointF(50, 50), Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(target, &event);
    return true;
}

void tst_Profiles::savedPagesComeBack()
{
    const QStringList addresses{url(u"/one"_s), url(u"/two?a=b;c&d=%C3%BC#part"_s),
                                url(u"/home"_s)};
    m_session->start(addresses.at(0));
    m_session->frame->openBrowserWindow(addresses.at(1), WindowState::AsOthers);
    m_session->frame->openBrowserWindow(addresses.at(2), WindowState::AsOthers);
    QTRY_VERIFY(allShown());
    const QString file = m_session->folder.file(u"Profiles/day.orp"_s);
    setFileDialogAnswerer([file](const FileDialogRequest &) -> std::optional<FileDialogAnswer> {
        return FileDialogAnswer{file, 1};
    });
    m_session->choose("mnuFileProfilesSave");
    m_session->choose("mnuFileProfiles");
    QCOMPARE(m_session->windows(), 6);
    QTRY_VERIFY(allShown());
    const QList<BrowserWindow *> windows = browserForms();
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(windows.at(i)->browser()->locationUrl(), addresses.at(i % 3));
        QVERIFY(!windows.at(i)->isMaximized());
        if (i > 0)
            QVERIFY(windows.at(i)->pos() != windows.at(i - 1)->pos());
    }
    QTRY_VERIFY(strip().isHidden());
}

void tst_Profiles::sourceOfAPageComesBackAsThat()
{
    const QStringList addresses{"view-source:"_L1 + url(u"/one?a=b"_s), url(u"/two"_s),
                                "view-source:"_L1 + url(u"/two"_s)};
    m_session->start(addresses.at(0));
    QTRY_VERIFY(allShown());
    QCOMPARE(m_session->location(), addresses.at(0));
    m_session->frame->openBrowserWindow(addresses.at(1), WindowState::AsOthers);
    QTRY_VERIFY(allShown());
    m_session->frame->openBrowserWindow(addresses.at(2), WindowState::AsOthers);
    QCOMPARE(m_session->windows(), 3);
    QTRY_VERIFY(allShown());
    const QString file = m_session->folder.file(u"Profiles/day.orp"_s);
    setFileDialogAnswerer([file](const FileDialogRequest &) -> std::optional<FileDialogAnswer> {
        return FileDialogAnswer{file, 1};
    });
    m_session->choose("mnuFileProfilesSave");
    m_session->choose("mnuFileProfiles");
    QCOMPARE(m_session->windows(), 6);
    QTRY_VERIFY(allShown());
    const QList<BrowserWindow *> windows = browserForms();
    for (int i = 0; i < 6; ++i)
        QCOMPARE(windows.at(i)->browser()->locationUrl(), addresses.at(i % 3));
}

void tst_Profiles::commandLineOpensAProfile_data()
{
    QTest::addColumn<QString>("quote");
    QTest::newRow("plain") << u""_s;
    QTest::newRow("in quotes") << u"\""_s;
}

void tst_Profiles::commandLineOpensAProfile()
{
    QFETCH(QString, quote);
    m_session->start(quote + profile({url(u"/one"_s), url(u"/two"_s)}) + quote);
    QCOMPARE(m_session->windows(), 2);
    QTRY_VERIFY(allShown());
    QVERIFY(m_session->shows(url(u"/two"_s)));
    QCOMPARE(m_session->server.count("/home"), 0);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_Profiles::profileWithoutAddressesOnTheCommandLineIsAnAddress()
{
    m_session->start(profile({}));
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(!m_session->active()->isMaximized());
}

void tst_Profiles::countOfAddressesThatAreNotThereLeavesNoEmptyFrame_data()
{
    QTest::addColumn<QByteArray>("count");
    QTest::newRow("too many") << QByteArray("3");
    QTest::newRow("negative") << QByteArray("-1");
}

void tst_Profiles::countOfAddressesThatAreNotThereLeavesNoEmptyFrame()
{
    QFETCH(QByteArray, count);
    m_session->folder.write(u"Profiles/x.orp"_s,
                            "[Profile_URLS]\r\nURL1=\r\n[URL_Count]\r\nCount=" + count + "\r\n");
    m_session->start(m_session->folder.file(u"Profiles/x.orp"_s));
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(!m_session->active()->isMaximized());
    QVERIFY(m_session->frame->openProfile(m_session->folder.file(u"Profiles/x.orp"_s), true));
    QCOMPARE(m_session->windows(), 1);
}

void tst_Profiles::droppedOnTheFrame()
{
    m_session->start(url(u"/home"_s));
    QVERIFY(drop(m_session->frame.get(), profile({url(u"/one"_s), url(u"/two"_s)})));
    QTRY_COMPARE(m_session->windows(), 3);
    QTRY_VERIFY(allShown());
}

void tst_Profiles::droppedOnAPage()
{
    m_session->start(url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QVERIFY(page()->acceptDrops());
    QVERIFY(drop(page(), profile({url(u"/one"_s), url(u"/two"_s)})));
    QTRY_COMPARE(m_session->windows(), 3);
    QTRY_VERIFY(allShown());
    QCOMPARE(browserForms().first()->browser()->locationUrl(), url(u"/home"_s));
}

void tst_Profiles::otherDropsArePages()
{
    m_session->start(url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    m_session->folder.write(u"local.html"_s, "<title>local</title>");
    QVERIFY2(drop(page(), m_session->folder.file(u"local.html"_s)), "the page takes it");
    QVERIFY2(!drop(m_session->frame.get(), m_session->folder.file(u"local.html"_s)),
             "the frame takes profiles only");
    QCOMPARE(m_session->windows(), 1);
}

void tst_Profiles::folderDropDoesNothing()
{
    m_session->start(url(u"/home"_s));
    const QString folder = m_session->folder.file(u"folder.orp"_s);
    QVERIFY(QDir().mkpath(folder));
    drop(m_session->frame.get(), folder);
    QCoreApplication::processEvents();
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_Profiles::pageThatMadeRoomComesAgain()
{
    m_session->start(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    WebBrowser *browser = m_session->active()->browser();
    browser->navigateLater(browser->locationUrl());
    QVERIFY(browser->isWaiting());
    QCOMPARE(browser->locationUrl(), url(u"/one"_s));
    QVERIFY(!browser->hasDocument());
    browser->refresh();
    QVERIFY(browser->isWaiting());
    QSignalSpy ended(browser, &WebBrowser::loadEnded);
    browser->navigateNow();
    QVERIFY(!browser->isWaiting());
    QCOMPARE(browser->locationUrl(), url(u"/one"_s));
    QTRY_COMPARE(ended.count(), 1);
    QVERIFY(m_session->shows(url(u"/one"_s)));
    QCOMPARE(m_session->server.count("/one"), 2);
    browser->navigate(url(u"/two"_s));
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QVERIFY(browser->goBack());
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_Profiles::badAddressesEndTheirTurn()
{
    TestServer::Reply nothing;
    nothing.status = 204;
    m_session->server.reply("/nothing", nothing);
    TestServer::Reply gone;
    gone.hangUp = true;
    m_session->server.reply("/gone", gone);
    const QString self = m_session->folder.file(u"Profiles/x.orp"_s);
    m_session->start(
        profile({u"about:blank"_s, u"http://127.0.0.1:1/"_s, url(u"/nothing"_s), url(u"/gone"_s),
                 u"::::"_s, self, u"http://"_s, u"http://h/"_s + QString(2000, u'x'),
                 u"chrome://inducebrowsercrashforrealz"_s, url(u"/one"_s)}));
    QCOMPARE(m_session->windows(), 10);
    QTRY_VERIFY(strip().isHidden());
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QCOMPARE(m_session->windows(), 10);
}

void tst_Profiles::sixtyPages()
{
    QStringList addresses;
    for (int i = 1; i <= 60; ++i) {
        const QString path = u"/page"_s + QString::number(i);
        m_session->server.page(path.toUtf8(),
                               "<script>document.title = 'p" + QByteArray::number(i)
                                   + "' + name + sessionStorage.length; name = 'used';"
                                     "sessionStorage.used = 1</script>");
        addresses.append(url(path));
    }
    m_session->start(profile(addresses));
    int most = 0;
    const auto came = [&] {
        most = std::max(most, int(m_session->frame->findChildren<QWebEngineView *>().size()));
        return strip().isHidden();
    };
    QTRY_VERIFY_WITH_TIMEOUT(came(), 60000);
    QVERIFY2(most <= 100, qPrintable(QString::number(most)));
    QTRY_VERIFY(m_session->frame->findChildren<QWebEngineView *>().size() <= 50);
    for (const QString &address : std::as_const(addresses))
        QCOMPARE(m_session->server.count(QUrl(address).path().toUtf8()), 1);
    const QList<BrowserWindow *> forms = browserForms();
    for (int i = 1; i <= 60; ++i)
        QTRY_COMPARE(forms.at(i - 1)->windowTitle(), u"p"_s + QString::number(i) + u"0"_s);
    QVERIFY(forms.last()->browser()->historySteps().isEmpty());
    QVERIFY(browserForms().first()->browser()->isWaiting());
    QTest::mouseClick(m_session->tabs().tab(browserForms().first()->tabKey()), Qt::LeftButton);
    QTRY_VERIFY(m_session->shows(addresses.first()));
}

ORVANE_ENGINE_TEST_MAIN(tst_Profiles)
#include "tst_profiles.moc"
