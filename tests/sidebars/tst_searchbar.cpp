#include "AddressBox.h"
#include "DialogRoom.h"
#include "Language.h"
#include "LinkLabel.h"
#include "SearchBar.h"
#include "TempAppFolder.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {
const auto fileName = u"AppData/SearchEngines.ini"_s;
const auto twoEngines = "[Engines]\r\nCount=3\r\nURL1=A\r\nURL2=\r\nURL3=B\r\n"
                        "[Engine URLs]\r\nA=https://a/?q=<SearchString>\r\n"
                        "[Data]\r\nSearchSelection=0\r\n"_ba;
}

class tst_SearchBar : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void captionsAndNames();
    void accessibleNames();
    void smallestBarCutsNothing();
    void nothingIsReadBeforeTheFirstShow();
    void enginesAreListed();
    void noSelectionOutsideTheList();
    void noSelectionForText();
    void loadsOnce();
    void historyComesOutReversed();
    void queryBoxStartsEmpty();

    void searchRaisesTheAddress();
    void searchInANewWindow();
    void searchWritesTheSelection();
    void enterSearches();
    void searchKeepsTheFocus();
    void emptyQueryIsRefused();
    void noEngineIsRefused();
    void noTemplateIsRefused();
    void refusedQueryIsRemembered();
    void repeatedQueryIsOneEntry();

    void clearSearches();
    void clearSearchesByKey();
    void tenQueriesAreKept();
    void unshownBarWritesNothing();
    void exitIsRaised();

    void translation();
    void emptyTranslation();
    void tabOrder();
    void fitsNarrow();

private:
    void show(const QByteArray &file = twoEngines);
    template <typename Control> Control *control(const QString &name) const
    {
        return m_bar->findChild<Control *>(name);
    }
    AddressBox *field() const { return control<AddressBox>(u"brwSearch"_s); }
    QComboBox *engines() const { return control<QComboBox>(u"cboSearchEngine"_s); }
    void type(const QString &query) const { field()->setText(query); }
    void click(const QString &name) const
    {
        QTest::mouseClick(control<QWidget>(name), Qt::LeftButton);
    }
    QStringList history() const;
    /// The text of the message box, which is then closed; empty when there is none.
    QString message() const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<QWidget> m_window;
    SearchBar *m_bar = nullptr;
};

void tst_SearchBar::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_window = std::make_unique<QWidget>();
    m_window->resize(260, 400);
    m_bar = new SearchBar(m_window.get());
    m_bar->resize(240, 400);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_window->activateWindow();
}

void tst_SearchBar::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

void tst_SearchBar::show(const QByteArray &file)
{
    QVERIFY(m_folder->write(fileName, file));
    m_bar->show();
    QCoreApplication::processEvents();
}

QStringList tst_SearchBar::history() const
{
    QStringList result;
    for (int i = 0; i < field()->listCount(); ++i)
        result.append(field()->listItem(i));
    return result;
}

QString tst_SearchBar::message() const
{
    auto *box = m_window->findChild<QMessageBox *>();
    if (!box)
        return {};
    const QString text = box->text();
    box->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return text;
}

void tst_SearchBar::captionsAndNames()
{
    QCOMPARE(control<QLabel>(u"lblSearchEngine"_s)->text(), u"Search Engine:"_s);
    QCOMPARE(control<QLabel>(u"lblSearchQuery"_s)->text(), u"Search Query:"_s);
    QCOMPARE(control<LinkLabel>(u"lblClearSearches"_s)->text(), u"Clear Searches"_s);
    QCOMPARE(control<QPushButton>(u"cmdSearch"_s)->text(), u"&Search"_s);
    QCOMPARE(control<QCheckBox>(u"chkNewWindow"_s)->text(), u"Open In New Window"_s);
    QCOMPARE(control<QToolButton>(u"cmdExit"_s)->text(), u"X"_s);
    QVERIFY(engines());
    QVERIFY(field());
}

void tst_SearchBar::accessibleNames()
{
    const auto name = [](QWidget *widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    };
    QCOMPARE(name(control<QWidget>(u"cmdExit"_s)), u"X"_s);
    QCOMPARE(name(control<QWidget>(u"cmdSearch"_s)), u"Search"_s);
    QCOMPARE(name(control<QWidget>(u"lblClearSearches"_s)), u"Clear Searches"_s);
    QCOMPARE(name(engines()), u"Search Engine:"_s);
    QCOMPARE(name(field()->findChild<QLineEdit *>()), u"Search Query:"_s);
}

void tst_SearchBar::smallestBarCutsNothing()
{
    control<QAbstractButton>(u"lblClearSearches"_s)
        ->setText(u"Clear all of the searches of this bar"_s);
    m_bar->show();
    m_bar->layout()->activate();
    m_bar->resize(m_bar->minimumSizeHint());
    QTRY_COMPARE(roomFaults(*m_bar), QStringList());
}

void tst_SearchBar::nothingIsReadBeforeTheFirstShow()
{
    QVERIFY(m_folder->write(fileName, twoEngines));
    m_bar->loadLanguage();
    QVERIFY(m_bar->isHidden());
    QCOMPARE(engines()->count(), 0);
}

void tst_SearchBar::enginesAreListed()
{
    show();
    QCOMPARE(engines()->count(), 2);
    QCOMPARE(engines()->itemText(0), u"A"_s);
    QCOMPARE(engines()->itemText(1), u"B"_s);
    QCOMPARE(engines()->currentIndex(), 0);
}

void tst_SearchBar::noSelectionOutsideTheList()
{
    show("[Engines]\nCount=3\nURL1=A\nURL2=B\nURL3=C\n[Data]\nSearchSelection=5\n");
    QCOMPARE(engines()->count(), 3);
    QCOMPARE(engines()->currentIndex(), -1);
    QCOMPARE(engines()->currentText(), QString());
}

void tst_SearchBar::noSelectionForText()
{
    show("[Engines]\nCount=1\nURL1=A\n[Data]\nSearchSelection=first\n");
    QCOMPARE(engines()->count(), 1);
    QCOMPARE(engines()->currentIndex(), -1);
}

void tst_SearchBar::loadsOnce()
{
    show();
    m_bar->hide();
    m_bar->show();
    QCOMPARE(engines()->count(), 2);
}

void tst_SearchBar::historyComesOutReversed()
{
    show(twoEngines + "[RecentSearches]\nItem0=zero\nItem1=one\nItem3=three\nItem10=ten\n");
    const QStringList expected{u"three"_s, u"one"_s, u"zero"_s};
    QCOMPARE(history(), expected);
}

void tst_SearchBar::queryBoxStartsEmpty()
{
    show(twoEngines + "[RecentSearches]\nItem0=zero\n");
    QCOMPARE(field()->text(), QString());
}

void tst_SearchBar::searchRaisesTheAddress()
{
    show();
    const QSignalSpy searched(m_bar, &SearchBar::searchRequested);
    type(u"a&b=c"_s);
    click(u"cmdSearch"_s);
    QCOMPARE(searched.size(), 1);
    QCOMPARE(searched.first().at(0).toInt(), 0);
    QCOMPARE(searched.first().at(1).toString(), u"https://a/?q=a%26b%3Dc"_s);
    QCOMPARE(field()->text(), u"a&b=c"_s);
    QCOMPARE(field()->selStart(), 5);
    QCOMPARE(message(), QString());
}

void tst_SearchBar::searchInANewWindow()
{
    show();
    const QSignalSpy searched(m_bar, &SearchBar::searchRequested);
    control<QCheckBox>(u"chkNewWindow"_s)->setChecked(true);
    type(u"x"_s);
    click(u"cmdSearch"_s);
    QCOMPARE(searched.size(), 1);
    QCOMPARE(searched.first().at(0).toInt(), 1);
}

void tst_SearchBar::searchWritesTheSelection()
{
    show("[Engines]\nCount=2\nURL1=A\nURL2=B\n[Engine URLs]\nB=https://b/\n"
         "[Data]\nSearchSelection=1\n");
    QByteArray whenRaised;
    connect(m_bar, &SearchBar::searchRequested, this,
            [&] { whenRaised = m_folder->read(fileName); });
    type(u"x"_s);
    click(u"cmdSearch"_s);
    QVERIFY(!whenRaised.isEmpty());
    QVERIFY(!whenRaised.contains("DefaultSelection"));
    QVERIFY(m_folder->read(fileName).contains("SearchSelection=1\nDefaultSelection=1\n"));
}

void tst_SearchBar::enterSearches()
{
    show();
    const QSignalSpy searched(m_bar, &SearchBar::searchRequested);
    m_bar->setFocus();
    QTRY_VERIFY(field()->findChild<QComboBox *>()->hasFocus());
    for (const char letter : {'c', 'a', 't', 's'})
        QTest::keyClick(m_window->windowHandle(), letter);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Return);
    QCOMPARE(searched.size(), 1);
    QCOMPARE(searched.first().at(1).toString(), u"https://a/?q=cats"_s);
}

void tst_SearchBar::searchKeepsTheFocus()
{
    show();
    engines()->setFocus();
    QTRY_VERIFY(engines()->hasFocus());
    type(u"x"_s);
    control<QPushButton>(u"cmdSearch"_s)->click();
    QVERIFY(engines()->hasFocus());
}

void tst_SearchBar::emptyQueryIsRefused()
{
    show();
    const QSignalSpy searched(m_bar, &SearchBar::searchRequested);
    engines()->setFocus();
    click(u"cmdSearch"_s);
    QCOMPARE(message(), u"Error: You must enter a search criteria!"_s);
    QVERIFY(searched.isEmpty());
    QTRY_VERIFY(field()->findChild<QComboBox *>()->hasFocus());
    QCOMPARE(field()->listCount(), 0);
}

void tst_SearchBar::noEngineIsRefused()
{
    show({});
    const QSignalSpy searched(m_bar, &SearchBar::searchRequested);
    type(u"x"_s);
    click(u"cmdSearch"_s);
    QCOMPARE(message(), u"Error: No Search Engine Selected!"_s);
    QVERIFY(searched.isEmpty());
    QVERIFY(!m_folder->read(fileName).contains("DefaultSelection"));
}

void tst_SearchBar::noTemplateIsRefused()
{
    show();
    const QSignalSpy searched(m_bar, &SearchBar::searchRequested);
    engines()->setCurrentIndex(1);
    type(u"x"_s);
    click(u"cmdSearch"_s);
    QCOMPARE(message(), u"Error: Engine data not found!"_s);
    QVERIFY(searched.isEmpty());
}

void tst_SearchBar::refusedQueryIsRemembered()
{
    show({});
    type(u"x"_s);
    click(u"cmdSearch"_s);
    QVERIFY(!message().isEmpty());
    QCOMPARE(history(), QStringList{u"x"_s});
}

void tst_SearchBar::repeatedQueryIsOneEntry()
{
    show();
    for (const QString &query : {u"cats"_s, u"dogs"_s, u"cats"_s, u"Cats"_s}) {
        type(query);
        click(u"cmdSearch"_s);
    }
    const QStringList expected{u"Cats"_s, u"cats"_s, u"dogs"_s};
    QCOMPARE(history(), expected);
}

void tst_SearchBar::clearSearches()
{
    show(twoEngines + "[RecentSearches]\r\nItem0=zero\r\n");
    type(u"x"_s);
    const QByteArray before = m_folder->read(fileName);
    click(u"lblClearSearches"_s);
    QCOMPARE(field()->listCount(), 0);
    QCOMPARE(field()->text(), u"x"_s);
    QCOMPARE(m_folder->read(fileName), before);
    m_window.reset();
    QVERIFY(m_folder->read(fileName).contains("Item0=\r\n"));
}

void tst_SearchBar::clearSearchesByKey()
{
    show(twoEngines + "[RecentSearches]\nItem0=zero\n");
    auto *label = control<LinkLabel>(u"lblClearSearches"_s);
    label->setFocus();
    QTest::keyClick(label, Qt::Key_Return);
    QCOMPARE(field()->listCount(), 0);
}

void tst_SearchBar::tenQueriesAreKept()
{
    show();
    for (int i = 1; i <= 12; ++i) {
        type(u"query %1"_s.arg(i));
        click(u"cmdSearch"_s);
    }
    QCOMPARE(field()->listCount(), 12);
    m_window.reset();
    for (int i = 0; i < 10; ++i)
        QVERIFY(m_folder->read(fileName).contains("Item" + QByteArray::number(i) + "=query "
                                                  + QByteArray::number(12 - i) + "\r\n"));
    QVERIFY(!m_folder->read(fileName).contains("Item10"));
    QVERIFY(!m_folder->read(fileName).contains("=query 2\r\n"));
}

void tst_SearchBar::unshownBarWritesNothing()
{
    const QByteArray bytes = twoEngines + "[RecentSearches]\nItem0=zero\n";
    QVERIFY(m_folder->write(fileName, bytes));
    m_window.reset();
    QCOMPARE(m_folder->read(fileName), bytes);
}

void tst_SearchBar::exitIsRaised()
{
    show();
    const QSignalSpy exited(m_bar, &SearchBar::exitRequested);
    click(u"cmdExit"_s);
    QCOMPARE(exited.size(), 1);
}

void tst_SearchBar::translation()
{
    QVERIFY(m_folder->writeLanguage(u"Deutsch"_s,
                                    "[SearchBox]\nlblSearchEngine=Suchmaschine:\n"
                                    "lblSearchQuery=Suche:\nlblClearSearches=Leeren\n"
                                    "cmdSearch=&Suchen\nchkNewWindow=Neues Fenster\ncmdExit=Z\n"
                                    "strYouMustEnterSearchCriteria=Leer!\n"
                                    "cboSearchEngine=nein\nbrwSearch=nein\n"));
    show();
    setLanguageName(u"Deutsch"_s);
    m_bar->loadLanguage();
    QCOMPARE(control<QLabel>(u"lblSearchEngine"_s)->text(), u"Suchmaschine:"_s);
    QCOMPARE(control<QLabel>(u"lblSearchQuery"_s)->text(), u"Suche:"_s);
    QCOMPARE(control<LinkLabel>(u"lblClearSearches"_s)->text(), u"Leeren"_s);
    QCOMPARE(control<QPushButton>(u"cmdSearch"_s)->text(), u"&Suchen"_s);
    QCOMPARE(control<QCheckBox>(u"chkNewWindow"_s)->text(), u"Neues Fenster"_s);
    QCOMPARE(control<QToolButton>(u"cmdExit"_s)->text(), u"Z"_s);
    QCOMPARE(engines()->currentText(), u"A"_s);
    QCOMPARE(field()->text(), QString());
    click(u"cmdSearch"_s);
    QCOMPARE(message(), u"Leer!"_s);
    // What a language lacks stays in the last one.
    setLanguageName(u"English"_s);
    m_bar->loadLanguage();
    QCOMPARE(control<QLabel>(u"lblSearchEngine"_s)->text(), u"Suchmaschine:"_s);
}

void tst_SearchBar::emptyTranslation()
{
    QVERIFY(m_folder->writeLanguage(u"Leer"_s, "[SearchBox]\ncmdSearch=\n"));
    setLanguageName(u"Leer"_s);
    m_bar->loadLanguage();
    QCOMPARE(control<QPushButton>(u"cmdSearch"_s)->text(), QString());
}

void tst_SearchBar::tabOrder()
{
    show();
    engines()->setFocus();
    QTRY_VERIFY(engines()->hasFocus());
    QStringList order;
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Tab);
        order.append(QApplication::focusWidget()->objectName());
    }
    const QStringList expected{u"cboAddress"_s, u"chkNewWindow"_s, u"lblClearSearches"_s,
                               u"cmdSearch"_s, u"cmdExit"_s};
    QCOMPARE(order, expected);
}

void tst_SearchBar::fitsNarrow()
{
    show("[Engines]\nCount=1\nURL1=" + QByteArray(500, 'w') + "\n");
    QVERIFY(m_bar->minimumSizeHint().width() <= 200);
    m_bar->resize(200, 400);
    QCoreApplication::processEvents();
    for (const QWidget *child :
         m_bar->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        QVERIFY(m_bar->rect().contains(child->geometry()));
}

QTEST_MAIN(tst_SearchBar)
#include "tst_searchbar.moc"
