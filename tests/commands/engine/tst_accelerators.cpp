#include <QWebEngineView>

#include "../Session.h"
#include "EngineTest.h"

using namespace Qt::StringLiterals;

/// The keys of the menus while a field of a page has the keyboard.
class tst_Accelerators : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }
    void menuKeysReachTheMenu_data();
    void menuKeysReachTheMenu();
    void editingKeysStayInTheField();
    void copyingAndCuttingStayWithThePage();

private:
    QWidget *field() const
    {
        return m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    }
    QString fieldText() const;

    std::unique_ptr<Session> m_session;
};

void tst_Accelerators::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.page("/field",
                           "<title>-</title><textarea id='f' autofocus>one two</textarea>"
                           "<script>f.focus(); f.setSelectionRange(4, 4);</script>");
    m_session->start(m_session->server.url(u"/field"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/field"_s)));
    m_session->active()->browser()->setFocus();
    QTRY_VERIFY(field()->hasFocus());
    QTRY_VERIFY2(field()->inputMethodQuery(Qt::ImEnabled).toBool(), "the field takes text");
}

QString tst_Accelerators::fieldText() const
{
    QString text;
    bool there = false;
    auto *page = m_session->active()->findChild<QWebEngineView *>()->page();
    page->runJavaScript(u"f.value"_s, [&](const QVariant &value) {
        text = value.toString();
        there = true;
    });
    return QTest::qWaitFor([&] { return there; }) ? text : QString();
}

void tst_Accelerators::menuKeysReachTheMenu_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Ctrl+K") << QByteArray("mnuToolsKillPopUps") << int(Qt::Key_K)
                            << int(Qt::ControlModifier);
    QTest::newRow("Ctrl+M") << QByteArray("mnuToolsMaximizeCatcher") << int(Qt::Key_M)
                            << int(Qt::ControlModifier);
    QTest::newRow("F3") << QByteArray("mnuViewSearchBar") << int(Qt::Key_F3) << 0;
}

void tst_Accelerators::menuKeysReachTheMenu()
{
    QFETCH(QByteArray, item);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    const QSignalSpy ran(m_session->item(item.constData()), &QAction::triggered);
    QTest::keyClick(field(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTRY_COMPARE(ran.count(), 1);
}

void tst_Accelerators::editingKeysStayInTheField()
{
    QTest::keyClick(field(), Qt::Key_X);
    QTRY_COMPARE(fieldText(), u"one xtwo"_s);
    QTest::keyClick(field(), Qt::Key_Backspace, Qt::ControlModifier);
    QTRY_COMPARE(fieldText(), u"one two"_s);
}

void tst_Accelerators::copyingAndCuttingStayWithThePage()
{
    const QSignalSpy stopped(m_session->item("mnuNavigationStopAll"), &QAction::triggered);
    const QSignalSpy opened(m_session->item("mnuFileNewFromClipboard"), &QAction::triggered);
    QTest::keyClick(field(), Qt::Key_Delete, Qt::ShiftModifier);
    QTest::keyClick(field(), Qt::Key_Insert, Qt::ControlModifier);
    // A key that shows its effect comes after them.
    QTest::keyClick(field(), Qt::Key_X);
    QTRY_VERIFY(fieldText().contains(u'x'));
    QCOMPARE(stopped.count(), 0);
    QCOMPARE(opened.count(), 0);
}

ORVANE_ENGINE_TEST_MAIN(tst_Accelerators)
#include "tst_accelerators.moc"
