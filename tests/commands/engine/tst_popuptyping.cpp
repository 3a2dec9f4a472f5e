// What the user types while a page tries to open windows that are on his list.
#include "../EngineSession.h"
#include "EngineTest.h"
#include "PopupScene.h"

#include <QMdiArea>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_popuptyping : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { finish(); }
    void addressBarKeepsEveryKey_data() { targetRows(); }
    void addressBarKeepsEveryKey();
    void pageFieldKeepsEveryKey_data() { targetRows(); }
    void pageFieldKeepsEveryKey();
    void selectionInTheAddressBarStays();
    void windowsThatComeAndGoLeaveTheAddressBarAlone_data();
    void windowsThatComeAndGoLeaveTheAddressBarAlone();
    void whatWasSelectedToBeReplacedStaysSelected();

private:
    static void targetRows();
    BrowserWindow *openAttacker(const QByteArray &attempt);
    void waitUntilThePageTakesKeys(const BrowserWindow *form);
    int tried(const BrowserWindow *form);
};

namespace {
constexpr int keys = 200;

QLineEdit *addressField(const Session &session)
{
    return session.address().findChild<QLineEdit *>();
}

/// The focus is the field's; a box around it may hold it for the field.
bool typesInto(const QWidget *field)
{
    const QWidget *focus = QApplication::focusWidget();
    return focus && (focus == field || focus->isAncestorOf(field));
}

QWidget *engineWidget(const Session &session)
{
    return QWebEngineView::forPage(PopupScene::control(session.active())->page())->focusProxy();
}
}

void tst_popuptyping::init()
{
    begin();
    QVERIFY(m_session->folder.setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"True"_s));
    QVERIFY(m_session->folder.write(u"AppData/PopupURLs.txt"_s, "*/ads/*\r\n"));
    start();
}

void tst_popuptyping::targetRows()
{
    QTest::addColumn<QByteArray>("attempt");
    QTest::newRow("nothing") << QByteArray("0");
    QTest::newRow("address") << QByteArray("window.open('/ads/x')");
    QTest::newRow("with a size") << QByteArray("window.open('/ads/x','','width=300,height=200')");
    QTest::newRow("sent on") << QByteArray("window.open('').location='/ads/x'");
}

/// A page that tries every 150 ms, in the active window.
BrowserWindow *tst_popuptyping::openAttacker(const QByteArray &attempt)
{
    m_session->server.page("/attack",
                           "<title>attack</title><input id=f autofocus><script>tried=0;"
                           "setInterval(()=>{++tried;"
                               + attempt + "},150)</script>");
    go(url(u"/attack"_s));
    return m_session->active();
}

int tst_popuptyping::tried(const BrowserWindow *form)
{
    return PopupScene::script(form, u"tried"_s).toInt();
}

void tst_popuptyping::addressBarKeepsEveryKey()
{
    QFETCH(const QByteArray, attempt);
    BrowserWindow *attacker = openAttacker(attempt);
    QLineEdit *field = addressField(*m_session);
    field->setFocus();
    field->selectAll();
    QString typed;
    const QSignalSpy activated(m_session->frame->findChild<QMdiArea *>(),
                               &QMdiArea::subWindowActivated);
    const int before = tried(attacker);
    while (typed.size() < keys || tried(attacker) < before + 10) {
        QVERIFY(typesInto(field));
        const char letter = char('a' + typed.size() % 26);
        QTest::keyClick(field, letter);
        typed += QLatin1Char(letter);
        QCoreApplication::processEvents();
        QCOMPARE(field->text(), typed);
    }
    QCOMPARE(activated.size(), 0);
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(m_session->tabs().keys().size(), 1);
    QCOMPARE(m_session->server.count("/ads/x"), 0);
}

/// The engine lets keys go that come before the page was painted.
void tst_popuptyping::waitUntilThePageTakesKeys(const BrowserWindow *form)
{
    const auto takes = [form, this] {
        QTest::keyClick(engineWidget(*m_session), Qt::Key_X);
        return !PopupScene::script(form, u"document.getElementById('f').value"_s)
                    .toString()
                    .isEmpty();
    };
    QTRY_VERIFY(takes());
    PopupScene::script(form, u"document.getElementById('f').value=''; 1"_s);
}

void tst_popuptyping::pageFieldKeepsEveryKey()
{
    QFETCH(const QByteArray, attempt);
    BrowserWindow *attacker = openAttacker(attempt);
    PopupScene::click(attacker, u"f"_s);
    QTRY_COMPARE(PopupScene::script(attacker, u"document.activeElement.id"_s).toString(), u"f"_s);
    waitUntilThePageTakesKeys(attacker);
    QString typed;
    const int before = tried(attacker);
    while (typed.size() < keys || tried(attacker) < before + 10) {
        QCOMPARE(QApplication::focusWidget(), engineWidget(*m_session));
        const char letter = char('a' + typed.size() % 26);
        QTest::keyClick(QApplication::focusWidget(), letter);
        typed += QLatin1Char(letter);
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(PopupScene::script(attacker, u"document.getElementById('f').value"_s).toString(),
                 typed);
    QCOMPARE(m_session->windows(), 1);
}

void tst_popuptyping::selectionInTheAddressBarStays()
{
    BrowserWindow *attacker = openAttacker("window.open('/ads/x')");
    QLineEdit *field = addressField(*m_session);
    field->setFocus();
    field->setSelection(2, 5);
    const QString text = field->text();
    const int before = tried(attacker);
    QTRY_VERIFY(tried(attacker) >= before + 10);
    QCOMPARE(field->text(), text);
    QCOMPARE(field->selectionStart(), 2);
    QCOMPARE(field->selectedText().size(), 5);
    QVERIFY(typesInto(field));
}

void tst_popuptyping::windowsThatComeAndGoLeaveTheAddressBarAlone_data()
{
    QTest::addColumn<QByteArray>("attempt");
    QTest::newRow("come") << QByteArray("window.open('/p?'+tried)");
    QTest::newRow("empty") << QByteArray("window.open('')");
    QTest::newRow("go again") << QByteArray("window.open('/none')");
    QTest::newRow("one goes again") << QByteArray("window.open('/none','one')");
}

/// Windows that are on no list come up in front; what is typed around them is not theirs.
void tst_popuptyping::windowsThatComeAndGoLeaveTheAddressBarAlone()
{
    QFETCH(const QByteArray, attempt);
    m_session->server.page("/p", "<title>popup</title><input autofocus>");
    TestServer::Reply none;
    none.status = 204;
    m_session->server.reply("/none", none);
    BrowserWindow *attacker = openAttacker("if (window.mayOpen) " + attempt);
    QLineEdit *field = addressField(*m_session);
    field->setFocus();
    field->selectAll();
    PopupScene::script(attacker, u"mayOpen = true"_s);
    QString typed;
    // Not yet as many as the user is asked for.
    const int before = tried(attacker);
    while (tried(attacker) < before + 20) {
        QVERIFY(typesInto(field));
        const char letter = char('a' + typed.size() % 26);
        QTest::keyClick(field, letter);
        typed += QLatin1Char(letter);
        QCoreApplication::processEvents();
        QCOMPARE(field->text(), typed);
    }
}

void tst_popuptyping::whatWasSelectedToBeReplacedStaysSelected()
{
    m_session->server.page("/p", "<title>popup</title><input autofocus>");
    openAttacker("if (tried == 1) window.open('/p')");
    QLineEdit *field = addressField(*m_session);
    field->setFocus();
    field->selectAll();
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(field->text(), url(u"/p"_s));
    QVERIFY(typesInto(field));
    QCOMPARE(field->selectedText(), field->text());
}

ORVANE_ENGINE_TEST_MAIN(tst_popuptyping)
#include "tst_popuptyping.moc"
