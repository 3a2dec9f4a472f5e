#include <QAbstractButton>
#include <QMenu>
#include <QWebEngineView>

#include "../Session.h"
#include "EngineTest.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "StatusStrip.h"

using namespace Qt::StringLiterals;

/// The View menu on real pages.
class tst_ViewCommands : public QObject {
    Q_OBJECT

private slots:
    void init() { m_session = std::make_unique<Session>(); }
    void cleanup() { m_session.reset(); }

    void fontSizes_data();
    void fontSizes();
    void zoomThatIsNoLevelMarksNone();
    void keysZoom_data();
    void keysZoom();
    void stripSaysTheSize();
    void refreshReloadsThePage();
    void documentHTMLIsTheLiveMarkup();
    void documentHTMLWhileLoadingOpensNothing();
    void closedWindowGivesNoSource();

private:
    void openOne()
    {
        m_session->start(m_session->server.url(u"/one"_s));
        QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    }
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    QStringList marked() const
    {
        QMenu *menu = m_session->frame->findChild<QMenu *>(u"mnuViewFontSize"_s);
        emit menu->aboutToShow();
        QStringList captions;
        for (const QAction *action : menu->actions()) {
            if (action->isChecked())
                captions.append(action->text());
        }
        return captions;
    }

    std::unique_ptr<Session> m_session;
};

void tst_ViewCommands::fontSizes_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<qreal>("factor");
    QTest::newRow("smallest") << QByteArray("mnuViewFontSize20") << u"Smallest"_s << 0.75;
    QTest::newRow("small") << QByteArray("mnuViewFontSize21") << u"Small"_s << 0.9;
    QTest::newRow("medium") << QByteArray("mnuViewFontSize22") << u"Medium"_s << 1.0;
    QTest::newRow("large") << QByteArray("mnuViewFontSize23") << u"Large"_s << 1.25;
    QTest::newRow("largest") << QByteArray("mnuViewFontSize24") << u"Largest"_s << 1.5;
}

void tst_ViewCommands::fontSizes()
{
    QFETCH(QByteArray, item);
    QFETCH(QString, caption);
    QFETCH(qreal, factor);
    openOne();
    QCOMPARE(marked(), QStringList(u"Medium"_s));
    m_session->choose(item.constData());
    QCOMPARE(page().zoomFactor(), factor);
    QCOMPARE(marked(), QStringList(caption));
}

void tst_ViewCommands::zoomThatIsNoLevelMarksNone()
{
    openOne();
    page().setZoomFactor(1.1);
    QCOMPARE(marked(), QStringList());
    m_session->choose("mnuViewFontSize22");
    QCOMPARE(marked(), QStringList(u"Medium"_s));
}

void tst_ViewCommands::keysZoom_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("held");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    constexpr Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
    QTest::newRow("plus") << int(Qt::Key_Plus) << ctrl << 100 << 110;
    QTest::newRow("equals") << int(Qt::Key_Equal) << ctrl << 100 << 110;
    QTest::newRow("plus of the key pad")
        << int(Qt::Key_Plus) << (ctrl | Qt::KeypadModifier) << 100 << 110;
    QTest::newRow("minus") << int(Qt::Key_Minus) << ctrl << 100 << 90;
    QTest::newRow("minus of the key pad")
        << int(Qt::Key_Minus) << (ctrl | Qt::KeypadModifier) << 100 << 90;
    QTest::newRow("zero") << int(Qt::Key_0) << ctrl << 175 << 100;
    QTest::newRow("zero of the key pad")
        << int(Qt::Key_0) << (ctrl | Qt::KeypadModifier) << 50 << 100;
}

/// Wherever the keyboard is: in the page, too.
void tst_ViewCommands::keysZoom()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, held);
    QFETCH(int, before);
    QFETCH(int, after);
    openOne();
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    m_session->active()->browser()->setFocus();
    m_session->active()->browser()->setZoom(before);
    QTRY_COMPARE(qRound(100 * page().zoomFactor()), before);
    QTest::simulateEvent(m_session->frame->windowHandle(), true, key, held, {}, false);
    QTest::simulateEvent(m_session->frame->windowHandle(), false, key, held, {}, false);
    QTRY_COMPARE(qRound(100 * page().zoomFactor()), after);
}

void tst_ViewCommands::stripSaysTheSize()
{
    openOne();
    auto *mark = m_session->active()->statusBar()->findChild<QAbstractButton *>(u"cmdZoom"_s);
    QVERIFY(mark && mark->isHidden());
    m_session->choose("mnuViewZoomIn");
    QVERIFY(mark->isVisible());
    QCOMPARE(mark->text(), u"110%"_s);
    QCOMPARE(mark->accessibleName(), u"110%"_s);
    QVERIFY(!mark->accessibleDescription().isEmpty());
    m_session->choose("mnuViewFontSize24");
    QCOMPARE(mark->text(), u"150%"_s);
    QTest::mouseClick(mark, Qt::LeftButton);
    QCOMPARE(page().zoomFactor(), 1.0);
    QVERIFY(mark->isHidden());
    m_session->choose("mnuViewZoomOut");
    QCOMPARE(mark->text(), u"90%"_s);
    QTest::keyClick(mark, Qt::Key_Return);
    QCOMPARE(page().zoomFactor(), 1.0);
}

void tst_ViewCommands::refreshReloadsThePage()
{
    openOne();
    QCOMPARE(m_session->server.count("/one"), 1);
    m_session->choose("mnuViewRefresh");
    QTRY_COMPARE(m_session->server.count("/one"), 2);
}

void tst_ViewCommands::documentHTMLIsTheLiveMarkup()
{
    m_session->server.page("/live",
                           "<!doctype html><title>Live</title><p id=p>before"
                           "<script>p.textContent = 'after the script'</script>");
    m_session->start(m_session->server.url(u"/live"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/live"_s)));
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 2);
    const auto *source = qobject_cast<SourceWindow *>(Forms::named("frmSource").first());
    const QString text = source->editor().text();
    QVERIFY2(text.startsWith("<html><head><title>Live</title>"_L1), qPrintable(text));
    QVERIFY(text.contains("after the script</p>"_L1));
    QVERIFY(!text.contains("doctype"_L1, Qt::CaseInsensitive));
    QCOMPARE(source->editor().selStart(), 0);
    QCOMPARE(source->editor().selLength(), 0);
    QVERIFY(source->windowTitle().contains(m_session->server.url(u"/live"_s)));
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(Forms::named("frmSource").isEmpty());
    QCOMPARE(m_session->windows(), 0);
}

void tst_ViewCommands::documentHTMLWhileLoadingOpensNothing()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_session->server.reply("/silent", silent);
    openOne();
    m_session->typeAddress(m_session->server.url(u"/silent"_s));
    QTRY_COMPARE(m_session->server.count("/silent"), 1);
    QTRY_VERIFY(m_session->active()->browser()->isBusy());
    m_session->choose("mnuViewDocumentHTML");
    m_session->choose("mnuNavigationStop");
    QTRY_VERIFY(!m_session->active()->browser()->isBusy());
    QVERIFY(Forms::named("frmSource").isEmpty());
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
}

void tst_ViewCommands::closedWindowGivesNoSource()
{
    openOne();
    page().runJavaScript(u"for (const end = Date.now() + 300; Date.now() < end;);"_s);
    m_session->choose("mnuViewDocumentHTML");
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 0);
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    QVERIFY(Forms::named("frmSource").isEmpty());
}

ORVANE_ENGINE_TEST_MAIN(tst_ViewCommands)
#include "tst_viewcommands.moc"
