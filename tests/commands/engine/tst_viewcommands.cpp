#include <QMenu>
#include <QWebEngineView>

#include "../Session.h"
#include "EngineTest.h"
#include "SourceEditor.h"
#include "SourceWindow.h"

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
