#include "../Session.h"
#include "DevToolsWindow.h"
#include "EngineTest.h"
#include "Inspector.h"
#include "Profiles.h"
#include "SleepRules.h"

#include <QWebEngineProfile>
#include <QWebEngineView>
#include <signal.h>

using namespace Qt::StringLiterals;

namespace {
QStringList warnings;
QtMessageHandler before = nullptr;

void note(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg)
        warnings.append(message);
    before(type, context, message);
}
}

/// The developer tools of a page, in the whole program with the real engine.
class tst_DevTools : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void showThePage();
    void oneForEachPage();
    void stayWithAPageThatNavigates();
    void goWithTheirWindow();
    void goWithTheProcess();
    void goBeforeTheirPage();
    void pageWithThemSleepsOnlyWhenTold();
    void ofPrivatePagesArePrivate();
    void keysAreTheToolsOwn();
    void noPageOpensThem();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    static QList<DevToolsWindow *> all()
    {
        QList<DevToolsWindow *> found;
        for (InnerWindow *each : innerForms()) {
            if (auto *tools = qobject_cast<DevToolsWindow *>(each))
                found.append(tools);
        }
        return found;
    }
    DevToolsWindow *open()
    {
        m_session->choose("mnuToolsDeveloper");
        return qobject_cast<DevToolsWindow *>(m_session->frame->activeChild());
    }
    static QWebEnginePage *pageOf(const QWidget *window)
    {
        return window->findChild<QWebEngineView *>()->page();
    }
    /// The tools have come, and know what page they are for.
    static bool areReady(const QWidget *tools)
    {
        const auto isReady = std::make_shared<bool>(false);
        pageOf(tools)->runJavaScript(
            u"document.body && document.body.children.length > 0"_s,
            [isReady](const QVariant &value) { *isReady = value.toBool(); });
        return QTest::qWaitFor([isReady] { return *isReady; }, 1000);
    }

    std::unique_ptr<Session> m_session;
};

void tst_DevTools::init()
{
    m_session = std::make_unique<Session>();
    m_session->start(url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    warnings.clear();
    before = qInstallMessageHandler(note);
}

void tst_DevTools::cleanup()
{
    m_session->end();
    QTRY_COMPARE(Profiles::all().size(), 1);
    qInstallMessageHandler(before);
    QVERIFY2(warnings.filter(u"profile"_s).isEmpty(), qPrintable(warnings.join(u'\n')));
    m_session.reset();
}

void tst_DevTools::showThePage()
{
    const BrowserWindow *page = m_session->active();
    const DevToolsWindow *tools = open();
    QVERIFY(tools);
    QCOMPARE(pageOf(tools)->inspectedPage(), pageOf(page));
    QTRY_VERIFY(areReady(tools));
    QCOMPARE(tools->windowTitle(), u"home page - Developer Tools"_s);
    QCOMPARE(m_session->address().text(), QString());
    QVERIFY(m_session->tabs().isPressed(tools->tabKey()));
    // Nothing listens for them.
    QVERIFY(qEnvironmentVariableIsEmpty("QTWEBENGINE_REMOTE_DEBUGGING"));
}

void tst_DevTools::oneForEachPage()
{
    BrowserWindow *page = m_session->active();
    const DevToolsWindow *tools = open();
    QVERIFY(tools);
    page->mdiArea()->setActiveSubWindow(page);
    QCOMPARE(open(), tools);
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    const DevToolsWindow *other = open();
    QVERIFY(other && other != tools);
    QCOMPARE(all().size(), 2);
}

void tst_DevTools::stayWithAPageThatNavigates()
{
    BrowserWindow *page = m_session->active();
    const DevToolsWindow *tools = open();
    QTRY_VERIFY(areReady(tools));
    for (const QString &there :
         {url(u"/one"_s), m_session->server.url(u"/two"_s, u"localhost"_s)}) {
        page->browser()->navigate(there);
        QTRY_COMPARE(page->browser()->locationUrl(), there);
        QTRY_VERIFY(!page->browser()->isBusy());
        QCOMPARE(all().size(), 1);
        QCOMPARE(pageOf(tools)->inspectedPage(), pageOf(page));
    }
    QTRY_COMPARE(tools->windowTitle(), u"Two - Developer Tools"_s);
}

void tst_DevTools::goWithTheirWindow()
{
    BrowserWindow *page = m_session->active();
    QVERIFY(open());
    page->close();
    QTRY_COMPARE(all().size(), 0);
    QCOMPARE(m_session->windows(), 0);
}

void tst_DevTools::goWithTheProcess()
{
    const BrowserWindow *page = m_session->active();
    const DevToolsWindow *tools = open();
    QTRY_VERIFY(areReady(tools));
    ::kill(pid_t(pageOf(page)->renderProcessPid()), SIGKILL);
    QTRY_COMPARE(all().size(), 0);
    QCOMPARE(m_session->windows(), 1);
    page->browser()->refresh();
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
}

void tst_DevTools::goBeforeTheirPage()
{
    const BrowserWindow *page = m_session->active();
    DevToolsWindow *tools = open();
    QTRY_VERIFY(areReady(tools));
    tools->close();
    QTRY_COMPARE(all().size(), 0);
    QTRY_VERIFY(!pageOf(page)->devToolsPage());
    page->browser()->refresh();
    QTRY_COMPARE(m_session->server.count("/home"), 2);
    QVERIFY(open());
}

void tst_DevTools::pageWithThemSleepsOnlyWhenTold()
{
    BrowserWindow *page = m_session->active();
    QVERIFY(open());
    QVERIFY(!SleepRules::maySleep(*page, SleepRules::Why::Unseen));
    page->fallAsleep();
    QTRY_COMPARE(all().size(), 0);
    QVERIFY(page->isAsleep());
}

void tst_DevTools::ofPrivatePagesArePrivate()
{
    m_session->choose("mnuFileNewPrivate");
    BrowserWindow *page = m_session->active();
    page->browser()->navigate(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    const DevToolsWindow *tools = open();
    QVERIFY(tools && tools->isPrivate());
    QCOMPARE(pageOf(tools)->profile(), pageOf(page)->profile());
    QVERIFY(m_session->tabs().tab(tools->tabKey())->accessibleName().endsWith(u", private"_s));
    QTRY_VERIFY(areReady(tools));
    page->close();
    QTRY_COMPARE(all().size(), 0);
    QTRY_COMPARE(Profiles::all().size(), 1);
}

void tst_DevTools::keysAreTheToolsOwn()
{
    DevToolsWindow *tools = open();
    auto *view = tools->findChild<QWebEngineView *>();
    const auto keeps = [view](int key, Qt::KeyboardModifiers held) {
        QKeyEvent event(QEvent::ShortcutOverride, key, held);
        event.ignore();
        QCoreApplication::sendEvent(view, &event);
        return event.isAccepted();
    };
    for (const int key : {Qt::Key_F, Qt::Key_C, Qt::Key_P, Qt::Key_S})
        QVERIFY(keeps(key, Qt::ControlModifier));
    QVERIFY(keeps(Qt::Key_F8, Qt::NoModifier));
    for (const int key : {Qt::Key_Tab, Qt::Key_W, Qt::Key_L, Qt::Key_1})
        QVERIFY(!keeps(key, Qt::ControlModifier));
    QVERIFY(!keeps(Qt::Key_F6, Qt::NoModifier));
    // The key that opened them.
    QVERIFY(keeps(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier));
    QTRY_COMPARE(all().size(), 0);
}

void tst_DevTools::noPageOpensThem()
{
    QWebEnginePage *page = pageOf(m_session->active());
    page->runJavaScript(u"window.open('devtools://devtools/bundled/devtools_app.html');"
                        u"const f = document.createElement('iframe');"
                        u"f.src = 'devtools://devtools/bundled/devtools_app.html';"
                        u"document.body.append(f);"
                        u"location = 'devtools://devtools/bundled/devtools_app.html'"_s);
    m_session->active()->browser()->refresh();
    QTRY_COMPARE(m_session->server.count("/home"), 2);
    QVERIFY(all().isEmpty());
    QCOMPARE(m_session->location(), url(u"/home"_s));
    QCOMPARE(m_session->windows(), 1);
}

ORVANE_ENGINE_TEST_MAIN(tst_DevTools)
#include "tst_devtools.moc"
