#include "AddressBox.h"
#include "AddressSuggestions.h"
#include "BrowserWindow.h"
#include "ProgramWithoutEngine.h"
#include "SmallDisk.h"
#include "TabStrip.h"
#include "VisitFile.h"
#include "VisitHistory.h"
#include "VisitView.h"
#include "VisitsWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

/// The window with the pages visited, and what the address bar proposes of them.
class tst_VisitsWindow : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keyOpensTheOneWindow();
    void pagesStandByDay();
    void aPageOnceADay();
    void searchesAsOneTypes();
    void newVisitsComeIn();
    void enterOpensInTheLastPageWindow();
    void controlEnterOpensANewWindow();
    void enterInTheFieldOpensTheFirst();
    void deleteKeyDeletesThePage();
    void deletesSite();
    void deletesDayAndOlder();
    void deletesAllAndNothingUnasked();
    void deletingThatFailsIsTold();
    void copiesAddresses();
    void chosenRowsStayChosen();
    void windowClosedWhileItAsks();
    void hostileTitles();
    void manyVisitsAreCut();
    void screenReaderKnowsAll();
    void programThatKeepsNoneSaysSo();

    void visitsAreWritten();
    void visitsThatAreNotWritten_data();
    void visitsThatAreNotWritten();

    void barProposesVisits();
    void arrowsChooseWhatIsProposed();
    void escapeGivesBackWhatWasTyped();
    void clickOpensWhatIsProposed();
    void proposalsGo_data();
    void proposalsGo();

private:
    static qint64 now() { return QDateTime::currentSecsSinceEpoch(); }
    /// Noon some days ago.
    static qint64 noon(int daysAgo)
    {
        return QDate::currentDate()
            .addDays(-daysAgo)
            .startOfDay()
            .addSecs(12 * 3600)
            .toSecsSinceEpoch();
    }
    void note(qint64 time, const char *address, const QString &title = {}) const
    {
        m_history->note({time, QString::fromLatin1(address), title});
    }
    void open();
    VisitsWindow *window() const { return m_program->frame->findChild<VisitsWindow *>(); }
    VisitView &list() const { return *window()->findChild<VisitView *>(); }
    QLineEdit &field() const { return *window()->findChild<QLineEdit *>(u"txtSearch"_s); }
    /// The first column, headings in brackets.
    QStringList rows() const;
    void choose(const QStringList &titles) const;
    void press(const char *button) const
    {
        window()->findChild<QToolButton *>(QLatin1StringView(button))->click();
    }
    /// Answers the message box that comes up.
    void answer(QMessageBox::StandardButton button) const;
    QByteArray file() const { return m_program->folder.read(u"AppData/History.txt"_s); }
    static FakeWebBrowser &page() { return *FakeWebBrowser::made().first(); }
    AddressBox &bar() const { return *m_program->frame->findChild<AddressBox *>(u"brwURL1"_s); }
    AddressSuggestions *proposed() const
    {
        auto *list = m_program->frame->findChild<AddressSuggestions *>();
        return list && list->isVisible() ? list : nullptr;
    }
    void type(const QString &text) const;
    /// Loads what the history has, for the bar.
    void load() const
    {
        m_history->refresh();
        m_history->flush();
    }

    std::unique_ptr<ProgramWithoutEngine> m_program;
    std::unique_ptr<VisitHistory> m_history;
};

void tst_VisitsWindow::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    m_history = std::make_unique<VisitHistory>(VisitFile::path());
    m_program->start();
    QVERIFY(QTest::qWaitForWindowActive(m_program->frame.get()));
}

void tst_VisitsWindow::cleanup()
{
    m_program->frame.reset();
    m_history.reset();
    m_program.reset();
}

void tst_VisitsWindow::open()
{
    m_program->choose("mnuToolsVisits");
    QVERIFY(window());
    m_history->flush();
    QTRY_VERIFY(m_history->isLoaded());
}

QStringList tst_VisitsWindow::rows() const
{
    QStringList texts;
    const QAbstractItemModel &model = *list().model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const bool isHeading = !(index.flags() & Qt::ItemIsSelectable);
        texts.append(isHeading ? u'[' + index.data().toString() + u']' : index.data().toString());
    }
    return texts;
}

void tst_VisitsWindow::choose(const QStringList &titles) const
{
    QItemSelectionModel &model = *list().selectionModel();
    model.clear();
    const QStringList all = rows();
    for (const QString &title : titles) {
        const QModelIndex index = list().model()->index(int(all.indexOf(title)), 0);
        QVERIFY(index.isValid());
        model.setCurrentIndex(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    list().setFocus();
}

void tst_VisitsWindow::answer(QMessageBox::StandardButton button) const
{
    const auto box = [this] {
        const auto boxes = m_program->frame->findChildren<QMessageBox *>();
        const auto shown = std::find_if(boxes.cbegin(), boxes.cend(),
                                        [](const QMessageBox *each) { return each->isVisible(); });
        return shown == boxes.cend() ? nullptr : *shown;
    };
    QTRY_VERIFY(box());
    box()->button(button)->click();
}

void tst_VisitsWindow::type(const QString &text) const
{
    auto *edit = bar().findChild<QLineEdit *>();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

void tst_VisitsWindow::keyOpensTheOneWindow()
{
    QTest::keyClick(m_program->frame.get(), Qt::Key_H, Qt::ControlModifier);
    QTRY_VERIFY(window());
    QCOMPARE(m_program->frame->activeChild(), window());
    QTRY_VERIFY(field().hasFocus());
    QVERIFY(m_program->frame->findChild<TabStrip *>()->isPressed(window()->tabKey()));
    open();
    QCOMPARE(m_program->frame->findChildren<VisitsWindow *>().size(), 1);
    window()->close();
    QTRY_VERIFY(!window());
}

void tst_VisitsWindow::pagesStandByDay()
{
    note(noon(2), "http://old/", u"Old"_s);
    note(noon(1), "http://one/", u"One"_s);
    note(noon(1) + 60, "http://two/");
    open();
    const QLocale locale;
    const QString before = locale.toString(QDate::currentDate().addDays(-2), QLocale::LongFormat);
    const QString last = locale.toString(QDate::currentDate().addDays(-1), QLocale::LongFormat);
    QTRY_COMPARE(rows(),
                 QStringList({u'[' + last + u']', u"http://two/"_s, u"One"_s, u'[' + before + u']',
                              u"Old"_s}));
    QVERIFY(list().isFirstColumnSpanned(0, {}));
    QVERIFY(!list().isFirstColumnSpanned(1, {}));
    QCOMPARE(list().model()->index(2, 1).data().toString(), u"http://one/"_s);
}

void tst_VisitsWindow::aPageOnceADay()
{
    note(noon(1), "http://one/", u"One"_s);
    note(noon(1) + 60, "http://two/", u"Two"_s);
    note(noon(1) + 120, "http://one/", u"One"_s);
    note(noon(0), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 5);
    QCOMPARE(rows().at(1), u"One"_s);
    QCOMPARE(rows().mid(3), QStringList({u"One"_s, u"Two"_s}));
}

void tst_VisitsWindow::searchesAsOneTypes()
{
    note(noon(1), "http://one/", u"Weather in Berlin"_s);
    note(noon(0), "http://weather.example/", u"Rain"_s);
    open();
    QTRY_COMPARE(rows().size(), 4);
    QTest::keyClicks(&field(), u"weather"_s);
    QTRY_COMPARE(rows().size(), 4);
    QTest::keyClicks(&field(), u" berl"_s);
    QTRY_COMPARE(rows().size(), 2);
    QCOMPARE(rows().last(), u"Weather in Berlin"_s);
    QTest::keyClicks(&field(), u"x"_s);
    QTRY_COMPARE(rows().size(), 0);
    field().clear();
    QTRY_COMPARE(rows().size(), 4);
}

void tst_VisitsWindow::newVisitsComeIn()
{
    open();
    QCOMPARE(rows(), QStringList());
    note(now(), "http://one/");
    QTRY_COMPARE(rows().value(1), u"http://one/"_s);
    m_history->setTitle(u"http://one/"_s, u"One"_s);
    QTRY_COMPARE(rows().value(1), u"One"_s);
}

void tst_VisitsWindow::enterOpensInTheLastPageWindow()
{
    note(noon(0), "http://one/?a=%C3%B6", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    choose({u"One"_s});
    QTest::keyClick(&list(), Qt::Key_Return);
    QCOMPARE(page().navigated.last(), u"http://one/?a=%C3%B6"_s);
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QVERIFY(activeBrowser(*m_program->frame));
}

void tst_VisitsWindow::controlEnterOpensANewWindow()
{
    note(noon(0), "http://one/", u"One"_s);
    note(noon(0), "http://two/", u"Two"_s);
    open();
    QTRY_COMPARE(rows().size(), 3);
    choose({u"One"_s, u"Two"_s});
    QTest::keyClick(&list(), Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(FakeWebBrowser::made().size(), 3);
    QStringList opened{FakeWebBrowser::made().at(1)->navigated.value(0),
                       FakeWebBrowser::made().at(2)->navigated.value(0)};
    opened.sort();
    QCOMPARE(opened, QStringList({u"http://one/"_s, u"http://two/"_s}));
}

void tst_VisitsWindow::enterInTheFieldOpensTheFirst()
{
    note(noon(0), "http://one/", u"One"_s);
    note(noon(0) + 1, "http://two/", u"Two"_s);
    open();
    QTest::keyClicks(&field(), u"one"_s);
    QTest::keyClick(&field(), Qt::Key_Return);
    QCOMPARE(page().navigated.last(), u"http://one/"_s);
    open();
    field().setFocus();
    field().clear();
    QTest::keyClick(&field(), Qt::Key_Down);
    QTRY_VERIFY(list().hasFocus());
    QVERIFY(list().currentIndex().isValid());
}

void tst_VisitsWindow::deleteKeyDeletesThePage()
{
    note(noon(1), "http://one/", u"One"_s);
    note(noon(0), "http://one/", u"One"_s);
    note(noon(0), "http://two/", u"Two"_s);
    open();
    QTRY_COMPARE(rows().size(), 5);
    choose({u"One"_s});
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTRY_COMPARE(rows().size(), 2);
    QCOMPARE(rows().last(), u"Two"_s);
    // The next one is at hand.
    QCOMPARE(list().selectionModel()->selectedRows().value(0).data().toString(), u"Two"_s);
    QVERIFY(!file().contains("http://one/"));
    QVERIFY(file().contains("http://two/"));
}

void tst_VisitsWindow::deletesSite()
{
    note(noon(0), "http://one.example/a", u"A"_s);
    note(noon(0), "http://one.example/b", u"B"_s);
    note(noon(0), "http://two.example/", u"Two"_s);
    note(noon(0), "file:///home/a.html", u"File"_s);
    open();
    QTRY_COMPARE(rows().size(), 5);
    choose({u"File"_s});
    QVERIFY(!window()->findChild<QToolButton *>(u"cmdDeleteSite"_s)->isEnabled());
    choose({u"A"_s});
    press("cmdDeleteSite");
    answer(QMessageBox::Yes);
    QTRY_COMPARE(rows().size(), 3);
    QVERIFY(!file().contains("one.example"));
    QVERIFY(file().contains("two.example"));
}

void tst_VisitsWindow::deletesDayAndOlder()
{
    note(noon(3), "http://three/", u"Three"_s);
    note(noon(2), "http://two/", u"Two"_s);
    note(noon(1), "http://one/", u"One"_s);
    note(noon(0), "http://zero/", u"Zero"_s);
    open();
    QTRY_COMPARE(rows().size(), 8);
    choose({u"One"_s});
    press("cmdDeleteDay");
    answer(QMessageBox::Yes);
    QTRY_COMPARE(rows().size(), 6);
    QVERIFY(!rows().contains(u"One"_s));
    choose({u"Two"_s});
    press("cmdDeleteOlder");
    answer(QMessageBox::Yes);
    QTRY_COMPARE(rows().size(), 4);
    QVERIFY(!rows().contains(u"Three"_s));
    QVERIFY(rows().contains(u"Two"_s));
}

void tst_VisitsWindow::deletesAllAndNothingUnasked()
{
    note(noon(0), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    press("cmdDeleteAll");
    answer(QMessageBox::No);
    m_history->flush();
    QVERIFY(file().contains("http://one/"));
    press("cmdDeleteAll");
    answer(QMessageBox::Yes);
    QTRY_COMPARE(rows().size(), 0);
    QCOMPARE(file(), QByteArray(""));
}

void tst_VisitsWindow::deletingThatFailsIsTold()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser can mount a small disk.");
    m_history = std::make_unique<VisitHistory>(disk.path() + u"/History.txt"_s);
    note(noon(0), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    QVERIFY(disk.makeReadOnly());
    choose({u"One"_s});
    QTest::keyClick(&list(), Qt::Key_Delete);
    answer(QMessageBox::Ok);
    QCOMPARE(rows().size(), 2);
}

void tst_VisitsWindow::copiesAddresses()
{
    note(noon(0), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    choose({u"One"_s});
    QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"http://one/"_s);
}

void tst_VisitsWindow::chosenRowsStayChosen()
{
    note(noon(1), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    choose({u"One"_s});
    note(now(), "http://two/", u"Two"_s);
    QTRY_COMPARE(rows().size(), 4);
    const QModelIndexList chosen = list().selectionModel()->selectedRows();
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.first().data().toString(), u"One"_s);
    QCOMPARE(list().currentIndex().row(), chosen.first().row());
}

void tst_VisitsWindow::windowClosedWhileItAsks()
{
    note(noon(0), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    press("cmdDeleteAll");
    window()->close();
    QTRY_VERIFY(!window());
    m_history->flush();
    QVERIFY(file().contains("http://one/"));
    // And while it is being deleted.
    open();
    QTRY_COMPARE(rows().size(), 2);
    choose({u"One"_s});
    QTest::keyClick(&list(), Qt::Key_Delete);
    window()->close();
    QTRY_COMPARE(file(), QByteArray(""));
}

void tst_VisitsWindow::hostileTitles()
{
    note(noon(0), "http://one/", u"\u202Eevil\u2066 \n\t<b>bold</b>"_s);
    note(noon(0) - 1, "http://xn--e1awd7f.example/%E2%80%AE", {});
    open();
    QTRY_COMPARE(rows().size(), 3);
    QVERIFY(!rows().at(1).contains(u'\u202E') && !rows().at(1).contains(u'\u2066'));
    QVERIFY(rows().at(1).contains(u"<b>bold</b>"_s));
    QVERIFY(!rows().at(2).contains(u'\u202E'));
}

void tst_VisitsWindow::manyVisitsAreCut()
{
    QByteArray lines;
    for (int i = 0; i < 20'000; ++i)
        lines += VisitLine::of({noon(1) + i, u"http://one/%1"_s.arg(i), {}});
    QVERIFY(m_program->folder.write(u"AppData/History.txt"_s, lines));
    open();
    QTRY_COMPARE(list().model()->rowCount(), 10'000);
    const auto *more = window()->findChild<QLabel *>(u"lblMore"_s);
    QVERIFY(more->isVisible());
    QTest::keyClicks(&field(), u"one/17"_s);
    QTRY_VERIFY(list().model()->rowCount() < 2000);
    QVERIFY(!more->isVisible());
}

void tst_VisitsWindow::screenReaderKnowsAll()
{
    note(noon(0), "http://one/", u"One"_s);
    open();
    QTRY_COMPARE(rows().size(), 2);
    QVERIFY(!field().accessibleName().isEmpty());
    QVERIFY(!list().accessibleName().isEmpty());
    QAccessibleInterface *view = QAccessible::queryAccessibleInterface(&list());
    QVERIFY(view && view->tableInterface());
    QCOMPARE(view->tableInterface()->cellAt(1, 0)->text(QAccessible::Name), u"One"_s);
    for (const auto *button : window()->findChildren<QToolButton *>()) {
        if (button->isVisible() && button->parent() != &field())
            QVERIFY(!button->text().isEmpty());
    }
}

void tst_VisitsWindow::programThatKeepsNoneSaysSo()
{
    m_history.reset();
    m_program->choose("mnuToolsVisits");
    answer(QMessageBox::Ok);
    QVERIFY(!window());
}

void tst_VisitsWindow::visitsAreWritten()
{
    page().location = u"http://one/"_s;
    page().events->navigateComplete2(u"http://one/"_s);
    page().events->titleChange(u"One"_s);
    m_history->flush();
    QVERIFY(file().endsWith("\thttp://one/\tOne\n"));
    page().location = u"http://one/#part"_s;
    page().events->locationChange(u"http://one/#part"_s);
    QTRY_VERIFY((m_history->flush(), file().endsWith("\thttp://one/#part\tOne\n")));
    QCOMPARE(file().count('\n'), 2);
}

void tst_VisitsWindow::visitsThatAreNotWritten_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isVisit");
    QTest::newRow("kept out, or an error") << u"http://one/"_s << false;
    QTest::newRow("blank") << u"about:blank"_s << true;
    QTest::newRow("data") << u"data:text/html,x"_s << true;
}

void tst_VisitsWindow::visitsThatAreNotWritten()
{
    QFETCH(QString, address);
    QFETCH(bool, isVisit);
    page().location = address;
    page().visit = isVisit;
    page().events->navigateComplete2(address);
    page().events->titleChange(u"One"_s);
    page().events->locationChange(address);
    page().events->documentComplete(address);
    m_program->frame.reset();
    m_history->flush();
    QVERIFY(file().isEmpty());
}

void tst_VisitsWindow::barProposesVisits()
{
    note(noon(1), "http://www.example.org/weather", u"Weather in Berlin"_s);
    note(noon(0), "http://www.example.org/weather", u"Weather in Berlin"_s);
    note(noon(0), "http://other.example/weather", u"Elsewhere"_s);
    note(noon(0), "http://none.example/", u"Nothing"_s);
    load();
    type(u"wea"_s);
    QVERIFY(proposed());
    const QAbstractItemModel &model = *proposed()->model();
    QCOMPARE(model.rowCount(), 3);
    QVERIFY(!(model.index(0, 0).flags() & Qt::ItemIsSelectable));
    QCOMPARE(model.index(1, 0).data().toString(), u"Weather in Berlin"_s);
    QCOMPARE(model.index(2, 0).data().toString(), u"Elsewhere"_s);
    QCOMPARE(model.index(1, 0).data(Qt::AccessibleTextRole).toString(),
             u"Weather in Berlin, http://www.example.org/weather"_s);
    // Typing goes on, and the field holds nothing but what was typed.
    QCOMPARE(bar().text(), u"wea"_s);
    QVERIFY(bar().findChild<QLineEdit *>()->hasFocus());
    type(u"weazzz"_s);
    QVERIFY(!proposed());
}

void tst_VisitsWindow::arrowsChooseWhatIsProposed()
{
    note(noon(0), "http://one.example/", u"First one"_s);
    note(noon(0) - 1, "http://two.example/", u"First two"_s);
    load();
    type(u"first"_s);
    QVERIFY(proposed());
    auto *edit = bar().findChild<QLineEdit *>();
    QTest::keyClick(edit, Qt::Key_Down);
    QCOMPARE(bar().text(), u"http://one.example/"_s);
    QTest::keyClick(edit, Qt::Key_Down);
    QCOMPARE(bar().text(), u"http://two.example/"_s);
    QTest::keyClick(edit, Qt::Key_Down);
    QCOMPARE(bar().text(), u"first"_s);
    QTest::keyClick(edit, Qt::Key_Up);
    QCOMPARE(bar().text(), u"http://two.example/"_s);
    QVERIFY(bar().hasUnsentEdits());
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(page().navigated.last(), u"http://two.example/"_s);
    QVERIFY(!proposed());
}

void tst_VisitsWindow::escapeGivesBackWhatWasTyped()
{
    note(noon(0), "http://one.example/", u"First one"_s);
    load();
    page().location = u"http://now/"_s;
    auto *edit = bar().findChild<QLineEdit *>();
    type(u"first"_s);
    QTest::keyClick(edit, Qt::Key_Down);
    QTest::keyClick(edit, Qt::Key_Escape);
    QCOMPARE(bar().text(), u"first"_s);
    QVERIFY(!proposed());
    QTest::keyClick(edit, Qt::Key_Escape);
    QCOMPARE(bar().text(), u"http://now/"_s);
}

void tst_VisitsWindow::clickOpensWhatIsProposed()
{
    note(noon(0), "http://one.example/", u"First one"_s);
    load();
    type(u"first"_s);
    QVERIFY(proposed());
    const QRect heading = proposed()->visualRect(proposed()->model()->index(0, 0));
    QTest::mouseClick(proposed()->viewport(), Qt::LeftButton, {}, heading.center());
    QVERIFY(proposed());
    const QRect row = proposed()->visualRect(proposed()->model()->index(1, 0));
    QTest::mouseClick(proposed()->viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(page().navigated.last(), u"http://one.example/"_s);
    QVERIFY(!proposed());
}

void tst_VisitsWindow::proposalsGo_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("escape") << 0;
    QTest::newRow("other control") << 1;
    QTest::newRow("all deleted") << 2;
    QTest::newRow("window resized") << 3;
    QTest::newRow("click elsewhere") << 4;
}

void tst_VisitsWindow::proposalsGo()
{
    QFETCH(int, how);
    note(noon(0), "http://one.example/", u"First one"_s);
    load();
    type(u"first"_s);
    QVERIFY(proposed());
    auto *edit = bar().findChild<QLineEdit *>();
    switch (how) {
    case 0:
        QTest::keyClick(edit, Qt::Key_Escape);
        break;
    case 1:
        page().widget()->setFocus();
        break;
    case 2:
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Backspace);
        break;
    case 3:
        m_program->frame->resize(m_program->frame->size() - QSize(40, 40));
        break;
    default:
        QTest::mouseClick(m_program->frame->findChild<TabStrip *>(), Qt::LeftButton);
    }
    QTRY_VERIFY(!proposed());
}

QTEST_MAIN(tst_VisitsWindow)
#include "tst_visitswindow.moc"
