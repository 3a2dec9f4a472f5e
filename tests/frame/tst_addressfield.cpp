#include "AddressBox.h"
#include "BrowserWindow.h"
#include "FakeWebBrowser.h"
#include "FavoritesHome.h"
#include "MainWindow.h"
#include "TempAppFolder.h"

#include <QInputMethodEvent>
#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;

/// The frame's address field while pages put their addresses into it.
class tst_AddressField : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void allSelectedStaysSo_data();
    void allSelectedStaysSo();
    void emptyFieldIsReplaced();
    void pressedButNotReleased();
    void longAddress();
    void caretGoesWhereItDid();
    void editedTextStays_data();
    void editedTextStays();
    void fieldWithoutTheKeyboardIsNotSelected();

private:
    enum class Change { Arrival, Address };
    /// What a page of the active window does to the field.
    void change(Change how, const QString &url) const
    {
        if (how == Change::Arrival)
            m_frame->addAddress(url, true);
        else
            m_frame->setAddressText(url);
    }
    AddressBox &bar() const { return *m_frame->findChild<AddressBox *>(u"brwURL1"_s); }
    QLineEdit &field() const { return *bar().findChild<QLineEdit *>(); }
    void click() const { QTest::mouseClick(&field(), Qt::LeftButton, {}, QPoint(20, 5)); }
    void type(const QString &text) const { QTest::keyClicks(&field(), text); }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_AddressField::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n"));
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<MainWindow>();
    m_frame->setCommandLine(u"http://one.example/"_s);
    m_frame->load();
    m_frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_frame.get()));
    m_frame->setFocus();
}

void tst_AddressField::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_AddressField::allSelectedStaysSo_data()
{
    QTest::addColumn<bool>("byMouse");
    QTest::addColumn<QList<int>>("changes");
    const int arrival = int(Change::Arrival);
    const int address = int(Change::Address);
    for (const bool byMouse : {true, false}) {
        const QByteArray by = byMouse ? "mouse: " : "key: ";
        QTest::newRow(by + "arrival") << byMouse << QList<int>{arrival};
        QTest::newRow(by + "address") << byMouse << QList<int>{address};
        QTest::newRow(by + "all kinds")
            << byMouse << QList<int>{address, arrival, arrival, address};
    }
}

void tst_AddressField::allSelectedStaysSo()
{
    QFETCH(bool, byMouse);
    QFETCH(QList<int>, changes);
    if (byMouse)
        click();
    else
        bar().setFocus(Qt::TabFocusReason);
    QCOMPARE(field().selectedText(), u"http://one.example/"_s);
    QString shown;
    for (const int how : std::as_const(changes)) {
        shown = u"http://late.example/%1"_s.arg(shown.size());
        change(Change(how), shown);
        QCOMPARE(field().selectedText(), shown);
    }
    type(u"xyz"_s);
    QCOMPARE(bar().text(), u"xyz"_s);
    change(Change::Arrival, u"http://latest.example/"_s);
    QCOMPARE(bar().text(), u"xyz"_s);
}

void tst_AddressField::emptyFieldIsReplaced()
{
    change(Change::Address, QString());
    click();
    change(Change::Arrival, u"http://late.example/"_s);
    type(u"xyz"_s);
    QCOMPARE(bar().text(), u"xyz"_s);
}

void tst_AddressField::pressedButNotReleased()
{
    QTest::mousePress(&field(), Qt::LeftButton, {}, QPoint(20, 5));
    change(Change::Arrival, u"http://late.example/"_s);
    QTest::mouseRelease(&field(), Qt::LeftButton, {}, QPoint(20, 5));
    type(u"xyz"_s);
    QCOMPARE(bar().text(), u"xyz"_s);
}

void tst_AddressField::longAddress()
{
    const QString address = u"http://late.example/"_s + QString(100'000, u'x');
    click();
    change(Change::Arrival, address);
    QCOMPARE(bar().text(), address);
    change(Change::Address, u"http://short.example/"_s);
    QCOMPARE(field().selectedText(), u"http://short.example/"_s);
    type(u"xyz"_s);
    QCOMPARE(bar().text(), u"xyz"_s);
}

void tst_AddressField::caretGoesWhereItDid()
{
    click();
    bar().setSelStart(3);
    change(Change::Arrival, u"http://late.example/"_s);
    QVERIFY(!field().hasSelectedText());
    QCOMPARE(field().cursorPosition(), int(bar().text().size()));
    bar().setSelStart(2);
    bar().setSelLength(3);
    change(Change::Address, u"http://later.example/"_s);
    QVERIFY(!field().hasSelectedText());
}

void tst_AddressField::editedTextStays_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("typed over all") << u"typed"_s;
    QTest::newRow("changed inside") << u"inside"_s;
    QTest::newRow("all deleted") << u"deleted"_s;
    QTest::newRow("typed and all selected") << u"selected"_s;
    QTest::newRow("being composed") << u"composed"_s;
}

void tst_AddressField::editedTextStays()
{
    QFETCH(QString, how);
    click();
    if (how == "inside"_L1) {
        bar().setSelStart(4);
        type(u"s"_s);
    } else if (how == "deleted"_L1) {
        QTest::keyClick(&field(), Qt::Key_Delete);
    } else if (how == "composed"_L1) {
        QInputMethodEvent composing(u"ka"_s, {});
        QApplication::sendEvent(&field(), &composing);
    } else {
        type(u"xyz"_s);
        if (how == "selected"_L1)
            field().selectAll();
    }
    const QString before = bar().text();
    const QString selected = field().selectedText();
    change(Change::Arrival, u"http://late.example/"_s);
    change(Change::Address, u"http://later.example/"_s);
    QCOMPARE(bar().text(), before);
    QCOMPARE(field().selectedText(), selected);
}

void tst_AddressField::fieldWithoutTheKeyboardIsNotSelected()
{
    change(Change::Address, QString());
    change(Change::Arrival, u"http://late.example/"_s);
    QVERIFY(!field().hasSelectedText());
}

QTEST_MAIN(tst_AddressField)
#include "tst_addressfield.moc"
