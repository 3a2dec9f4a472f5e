// What the address bar shows of addresses that would mislead, and that it still means them.
#include "AddressBox.h"
#include "ElidedAddress.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <QTest>
#include <memory>

using namespace Qt::StringLiterals;

class tst_addressshown : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shows_data();
    void shows();
    void editedTextIsWhatItShows();
    void chosenEntryIsShownAndMeant();
    void rowsOfTheList();
    void isNotCompleted();
    void pastedDirectionMarks();
    void narrowFieldShowsTheEndOfTheHost();
    void cutAddresses_data();
    void cutAddresses();

private:
    QLineEdit *edit() const { return m_field->findChild<QLineEdit *>(); }
    QComboBox *combo() const { return m_field->findChild<QComboBox *>(u"cboAddress"_s); }

    std::unique_ptr<QWidget> m_window;
    AddressBox *m_field = nullptr;
};

void tst_addressshown::init()
{
    m_window = std::make_unique<QWidget>();
    m_field = new AddressBox(m_window.get());
    m_field->resize(500, 30);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void tst_addressshown::cleanup()
{
    m_window.reset();
}

void tst_addressshown::shows_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const QString &address, const QString &shown) {
        QTest::addRow("%s", name) << address << shown;
    };
    const auto same = [&row](const char *name, const QString &address) {
        row(name, address, address);
    };
    same("plain", u"http://a.example/b?c=%20#d"_s);
    same("as typed", u"two words"_s);
    same("escaped", u"http://a.example/%E2%80%AEgpj.exe"_s);
    same("encoded host", u"https://xn--bcher-kva.example/"_s);
    same("letters of a page", u"http://a.example/stra\u00dfe"_s);
    same("mail", u"mailto:me@a.example"_s);
    same("no host", u"file:///a@b"_s);
    row("user name", u"https://www.bank.example@evil.example/login"_s,
        u"https://evil.example/login"_s);
    row("password", u"https://www.bank.example:80@evil.example:81/"_s,
        u"https://evil.example:81/"_s);
    row("its source", u"view-source:https://www.bank.example@evil.example/"_s,
        u"view-source:https://evil.example/"_s);
    row("mixed scripts", u"https://b\u0430nk.example/"_s, u"https://xn--bnk-6cd.example/"_s);
    row("direction", u"http://a.example/\u202Egpj.exe"_s, u"http://a.example/%E2%80%AEgpj.exe"_s);
    row("direction in words", u"a \u202Eb"_s, u"a %E2%80%AEb"_s);
}

void tst_addressshown::shows()
{
    QFETCH(const QString, address);
    QFETCH(const QString, shown);
    m_field->setText(address);
    QCOMPARE(edit()->text(), shown);
    QCOMPARE(m_field->text(), address);
    m_field->setText(u"http://another.example/"_s);
    QCOMPARE(m_field->text(), u"http://another.example/"_s);
    m_field->addItem(address, true);
    QCOMPARE(edit()->text(), shown);
    QCOMPARE(m_field->text(), address);
    QCOMPARE(m_field->listItem(0), address);
}

void tst_addressshown::editedTextIsWhatItShows()
{
    m_field->setText(u"https://www.bank.example@evil.example/"_s);
    edit()->setFocus();
    edit()->end(false);
    QTest::keyClick(edit(), Qt::Key_X);
    QCOMPARE(m_field->text(), u"https://evil.example/x"_s);
}

void tst_addressshown::chosenEntryIsShownAndMeant()
{
    const QString address = u"https://www.bank.example@evil.example/"_s;
    m_field->addItem(address, false);
    combo()->setCurrentIndex(0);
    emit combo()->activated(0);
    QCOMPARE(edit()->text(), u"https://evil.example/"_s);
    QCOMPARE(m_field->text(), address);
}

void tst_addressshown::rowsOfTheList()
{
    m_field->addItem(u"https://www.bank.example@evil.example/"_s, false);
    edit()->setFocus();
    combo()->showPopup();
    const auto *rows = qobject_cast<QStyledItemDelegate *>(combo()->view()->itemDelegate());
    QVERIFY(rows);
    QCOMPARE(rows->displayText(combo()->itemData(0, Qt::DisplayRole), QLocale()),
             u"https://evil.example/"_s);
    combo()->hidePopup();
}

void tst_addressshown::isNotCompleted()
{
    m_field->addItem(u"https://www.bank.example@evil.example/"_s, false);
    edit()->setFocus();
    QTest::keyClicks(edit(), u"https://www.bank"_s);
    QCOMPARE(edit()->text(), u"https://www.bank"_s);
}

void tst_addressshown::pastedDirectionMarks()
{
    edit()->setFocus();
    m_field->setSelText(u"http://a.example/\u202Egpj.exe\u2066"_s);
    QCOMPARE(edit()->text(), u"http://a.example/%E2%80%AEgpj.exe%E2%81%A6"_s);
}

/// A host can be as long as it likes on the left, where everybody may put anything.
void tst_addressshown::narrowFieldShowsTheEndOfTheHost()
{
    const QString start = u"http://www.bank.example."_s + QString(60, u'a') + u'.';
    m_field->resize(300, 30);
    combo()->clearFocus();
    QVERIFY(!edit()->hasFocus());
    m_field->setText(start + u"evil.test/login"_s);
    const QImage evil = edit()->grab().toImage();
    m_field->setText(start + u"good.test/login"_s);
    QVERIFY(edit()->grab().toImage() != evil);
}

void tst_addressshown::cutAddresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("room");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const QString &address, const QString &room,
                        const QString &shown) {
        QTest::addRow("%s", name) << address << room << shown;
    };
    const QString host = u"http://www.bank.example.evil.test"_s;
    row("fits", host, host, host);
    row("rest", host + u"/login/very/long"_s, host + u"/log…"_s, host + u"/log…"_s);
    row("host", host + u"/login"_s, u"http://…evil.test…"_s, u"http://…evil.test…"_s);
    row("whole labels", host, u"http://…le.evil.test"_s, u"http://…evil.test"_s);
    row("port", host + u":81"_s, u"http://…evil.test:81"_s, u"http://…evil.test:81"_s);
    row("inner", u"view-source:"_s + host, u"view-source:http://…evil.test"_s,
        u"view-source:http://…evil.test"_s);
    row("address of another in the rest", u"http://evil.test/?https://www.bank.example/"_s,
        u"http://evil.test/?ht…"_s, u"http://evil.test/?ht…"_s);
    row("number", u"http://192.168.111.222/"_s, u"http://192.16…"_s, u"http://192.16…"_s);
    row("no host", u"about:blank#http://www.bank.example"_s, u"about:bl…"_s, u"about:bl…"_s);
}

void tst_addressshown::cutAddresses()
{
    QFETCH(const QString, address);
    QFETCH(const QString, room);
    const QFontMetrics metrics = edit()->fontMetrics();
    // The widths of parts are rounded each by itself.
    const int width = metrics.horizontalAdvance(room) + 2;
    QTEST(elidedAddress(address, metrics, width, Qt::ElideRight), "shown");
}

QTEST_MAIN(tst_addressshown)
#include "tst_addressshown.moc"
