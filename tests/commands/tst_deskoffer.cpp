#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

#include "DeskOffer.h"
#include "ProgramWithoutEngine.h"

using namespace Qt::StringLiterals;

/// The list of the windows that were open, in the frame.
class tst_DeskOffer : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyWindowHasTitleAddressAndTick();
    void textsOfPagesAreHarmless();
    void takesNoFocusByItself();
    void worksFromTheKeyboard();
    void nothingTickedOpensNothing();
    void screenReadersAreToldWhatItIs();
    void speaksTheLanguageOfTheProgram();
    void holdsNoCommandUp();
    void aThousandWindowsLeaveRoomForThePages();

private:
    DeskOffer &offer(const Desk &desk, const QStringList &unticked = {}) const;
    static Desk deskOf(const QStringList &addresses);
    QTreeWidget &list() const { return *m_program->frame->findChild<QTreeWidget *>(u"lstDesk"_s); }
    QPushButton &button(const char *name) const
    {
        return *m_program->frame->findChild<QPushButton *>(QLatin1String(name));
    }

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

void tst_DeskOffer::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    m_program->start();
    QVERIFY(QTest::qWaitForWindowActive(m_program->frame.get()));
}

void tst_DeskOffer::cleanup()
{
    m_program.reset();
}

DeskOffer &tst_DeskOffer::offer(const Desk &desk, const QStringList &unticked) const
{
    auto *offer = new DeskOffer(desk, unticked);
    m_program->frame->addNotice(*offer);
    [offer] { QTRY_VERIFY(offer->isVisible()); }();
    return *offer;
}

Desk tst_DeskOffer::deskOf(const QStringList &addresses)
{
    Desk desk;
    for (const QString &address : addresses) {
        DeskWindow window;
        window.address = address;
        window.title = "Title of "_L1 + address;
        desk.windows.append(window);
    }
    return desk;
}

void tst_DeskOffer::everyWindowHasTitleAddressAndTick()
{
    const DeskOffer &strip =
        offer(deskOf({u"http://one.test/"_s, u"http://two.test/"_s}), {u"http://two.test/"_s});
    QCOMPARE(list().topLevelItemCount(), 2);
    QCOMPARE(list().topLevelItem(0)->text(0), u"Title of http://one.test/"_s);
    QCOMPARE(list().topLevelItem(0)->text(1), u"http://one.test/"_s);
    QCOMPARE(list().topLevelItem(0)->checkState(0), Qt::Checked);
    QCOMPARE(list().topLevelItem(1)->checkState(0), Qt::Unchecked);
    QSignalSpy accepted(&strip, &DeskOffer::accepted);
    QTest::mouseClick(&button("cmdOpen"), Qt::LeftButton);
    QCOMPARE(accepted.size(), 1);
    QCOMPARE(accepted.first().first().value<QList<qsizetype>>(), QList<qsizetype>{0});
}

void tst_DeskOffer::textsOfPagesAreHarmless()
{
    Desk desk = deskOf({u"http://bank.test@evil.test/"_s});
    desk.windows.first().title = u"<b>line\nbreak\u202e\0fdp"_s + QString(100'000, u'x');
    offer(desk);
    const QTreeWidgetItem *item = list().topLevelItem(0);
    QCOMPARE(item->text(1), u"http://evil.test/"_s);
    QVERIFY(item->text(0).startsWith("<b>line"_L1));
    QVERIFY(!item->text(0).contains(u'\n') && !item->text(0).contains(QChar(0x202e)));
    QVERIFY(item->text(0).size() < 10'000);
}

void tst_DeskOffer::takesNoFocusByItself()
{
    const QWidget *before = QApplication::focusWidget();
    QVERIFY(before);
    offer(deskOf({u"http://one.test/"_s}));
    QCOMPARE(QApplication::focusWidget(), before);
}

void tst_DeskOffer::worksFromTheKeyboard()
{
    const DeskOffer &strip = offer(deskOf({u"http://one.test/"_s, u"http://two.test/"_s}));
    QSignalSpy accepted(&strip, &DeskOffer::accepted);
    for (int i = 0; i < 20 && QApplication::focusWidget() != &list(); ++i)
        QTest::keyClick(m_program->frame.get(), Qt::Key_F6);
    QCOMPARE(QApplication::focusWidget(), &list());
    QTest::keyClick(&list(), Qt::Key_Space);
    QCOMPARE(list().topLevelItem(0)->checkState(0), Qt::Unchecked);
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), &button("cmdOpen"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(accepted.size(), 1);
    QCOMPARE(accepted.first().first().value<QList<qsizetype>>(), QList<qsizetype>{1});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), &button("cmdLater"));
}

void tst_DeskOffer::nothingTickedOpensNothing()
{
    offer(deskOf({u"http://one.test/"_s}));
    QVERIFY(button("cmdOpen").isEnabled());
    list().topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    QVERIFY(!button("cmdOpen").isEnabled());
    QVERIFY(button("cmdLater").isEnabled());
}

void tst_DeskOffer::screenReadersAreToldWhatItIs()
{
    DeskOffer &strip = offer(deskOf({u"http://one.test/"_s}));
    for (QWidget *widget : {static_cast<QWidget *>(&strip), static_cast<QWidget *>(&list())}) {
        const QAccessibleInterface *reader = QAccessible::queryAccessibleInterface(widget);
        QVERIFY(reader->text(QAccessible::Name).startsWith("Orvane was ended"_L1));
    }
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(&list());
    const QAccessibleInterface *cell = table->tableInterface()->cellAt(0, 0);
    QCOMPARE(cell->text(QAccessible::Name), u"Title of http://one.test/"_s);
    QVERIFY(cell->state().checkable && cell->state().checked);
}

void tst_DeskOffer::speaksTheLanguageOfTheProgram()
{
    DeskOffer &strip = offer(deskOf({u"http://one.test/"_s}));
    m_program->folder.writeLanguage(u"English"_s,
                                    "[DeskOffer]\r\ncmdOpen=Zurück\r\ncolTitle=Fenster\r\n");
    strip.translate();
    QCOMPARE(button("cmdOpen").text(), u"Zurück"_s);
    QCOMPARE(list().headerItem()->text(0), u"Fenster"_s);
}

void tst_DeskOffer::holdsNoCommandUp()
{
    offer(deskOf({u"http://one.test/"_s}));
    const qsizetype before = FakeWebBrowser::made().size();
    m_program->frame->openBrowserWindow(u"http://new.test/"_s, WindowState::AsOthers);
    QCOMPARE(FakeWebBrowser::made().size(), before + 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_DeskOffer::aThousandWindowsLeaveRoomForThePages()
{
    QStringList addresses;
    for (int i = 0; i < 1000; ++i)
        addresses.append(u"http://host%1.test/"_s.arg(i));
    const DeskOffer &strip = offer(deskOf(addresses));
    QTRY_VERIFY(strip.height() < m_program->frame->height() / 3);
}

QTEST_MAIN(tst_DeskOffer)
#include "tst_deskoffer.moc"
