#include <QAbstractButton>
#include <QDir>
#include <QLineEdit>
#include <QMdiArea>
#include <QMessageBox>
#include <QtTest>

#include "AddressBox.h"
#include "BrowserWindow.h"
#include "DragAndDrop.h"
#include "DraggedUrls.h"
#include "FakeWebBrowser.h"
#include "FrameOpener.h"
#include "MainWindow.h"
#include "TabStrip.h"
#include "TempAppFolder.h"
#include "TypedAhead.h"

using namespace Qt::StringLiterals;

/// Files dragged onto the frame and let go there.
class tst_FrameDrop : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void profileIsOpenedAsItIsSpelled();
    void onlyTheFirstFileIsOpened();
    void otherFileIsRefused();
    void folderIsRefused();
    void addressIsNoFile();
    void profileOpensWhereverItIsDropped_data();
    void profileOpensWhereverItIsDropped();
    void folderIsRefusedEverywhere_data() { placeRows(); }
    void folderIsRefusedEverywhere();
    void stripOpensNewWindows_data();
    void stripOpensNewWindows();
    void stripTakesACopyOrALink();
    void stripRefusesScriptsAndMail();
    void stripOpensWhatIsDroppedOnATab();
    void stripAsksBeforeItOpensMany_data();
    void stripAsksBeforeItOpensMany();
    void endlessAddressIsRefused();
    void typingStaysWhereItIs();
    void windowInFrontStaysThere();
    void closingAllEndsTheOpening();
    void typingAnswersNothing_data();
    void typingAnswersNothing();
    void addressBarTakesTheAddress_data();
    void addressBarTakesTheAddress();
    void addressBarOfAFrameBehindTakesTheAddress();
    void addressBarTakesTextWhereItIsLetGo();
    void searchBoxTakesALink();
    void pagesGiveAddressesOfTheWebAlone_data();
    void pagesGiveAddressesOfTheWebAlone();

private:
    bool dragShowsCopy(const QList<QUrl> &urls);
    void drop(const QList<QUrl> &urls);
    bool comesUp();
    void dropMany(int number);
    static bool turnTo(qsizetype windows);
    QUrl fileNamed(const QString &name) const;
    static void placeRows();
    QWidget *place(const QString &name) const;
    QLineEdit *addressField() const
    {
        return m_frame->findChild<AddressBox *>(u"brwURL1"_s)->findChild<QLineEdit *>();
    }
    TabStrip *strip() const { return m_frame->findChild<TabStrip *>(); }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<MainWindow> m_frame;
    QStringList m_opened;
};

void tst_FrameDrop::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<MainWindow>();
    m_opened.clear();
    m_frame->opener().setProfileOpener([this](const QString &file, bool quiet) {
        m_opened.append(quiet ? "quiet "_L1 + file : file);
        return true;
    });
}

void tst_FrameDrop::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_folder.reset();
}

QUrl tst_FrameDrop::fileNamed(const QString &name) const
{
    return QUrl::fromLocalFile(m_folder->file(name));
}

bool tst_FrameDrop::dragShowsCopy(const QList<QUrl> &urls)
{
    return DragAndDrop(urls).over(m_frame.get()) == Qt::CopyAction;
}

void tst_FrameDrop::drop(const QList<QUrl> &urls)
{
    QVERIFY(DragAndDrop(urls).drop(m_frame.get()));
}

void tst_FrameDrop::profileIsOpenedAsItIsSpelled()
{
    m_folder->write(u"Profiles/Day.ORP"_s, "[URL_Count]\r\nCount=0\r\n");
    drop({fileNamed(u"Profiles/Day.ORP"_s)});
    QTRY_COMPARE(m_opened, QStringList{m_folder->file(u"Profiles/Day.ORP"_s)});
}

void tst_FrameDrop::onlyTheFirstFileIsOpened()
{
    m_folder->write(u"one.orp"_s, "1");
    m_folder->write(u"two.orp"_s, "2");
    drop({fileNamed(u"one.orp"_s), fileNamed(u"two.orp"_s)});
    QTRY_COMPARE(m_opened, QStringList{m_folder->file(u"one.orp"_s)});
}

void tst_FrameDrop::otherFileIsRefused()
{
    m_folder->write(u"page.html"_s, "<p>");
    QVERIFY(!dragShowsCopy({fileNamed(u"page.html"_s)}));
}

void tst_FrameDrop::folderIsRefused()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder.orp"_s));
    QVERIFY(!dragShowsCopy({fileNamed(u"folder.orp"_s)}));
    QVERIFY(!dragShowsCopy({QUrl::fromLocalFile(m_folder->path())}));
}

void tst_FrameDrop::addressIsNoFile()
{
    const QUrl address(u"http://one.example/day.orp"_s);
    QVERIFY(!dragShowsCopy({address}));
    QVERIFY(!dragShowsCopy({}));
}

void tst_FrameDrop::placeRows()
{
    QTest::addColumn<QString>("where");
    for (const char *name : {"frame", "menu bar", "tool bar", "tabs", "tab", "address bar",
                             "search box", "page", "area"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

QWidget *tst_FrameDrop::place(const QString &name) const
{
    if (name == "menu bar"_L1)
        return m_frame->menuWidget();
    if (name == "tool bar"_L1)
        return m_frame->findChild<QWidget *>(u"tbBrowser"_s);
    if (name == "tabs"_L1)
        return strip();
    if (name == "address bar"_L1)
        return addressField();
    if (name == "search box"_L1)
        return m_frame->findChild<AddressBox *>(u"brwSearch"_s)->findChild<QLineEdit *>();
    if (name == "area"_L1)
        return m_frame->findChild<QMdiArea *>()->viewport();
    if (name == "frame"_L1)
        return m_frame.get();
    m_frame->openBrowserWindow(u"http://one.example/"_s, WindowState::AsOthers);
    if (name == "tab"_L1)
        return strip()->tab(browserForms().first()->tabKey());
    return browserForms().first()->browser()->widget();
}

void tst_FrameDrop::profileOpensWhereverItIsDropped_data()
{
    placeRows();
}

void tst_FrameDrop::profileOpensWhereverItIsDropped()
{
    QFETCH(const QString, where);
    QWidget *widget = place(where);
    QVERIFY(widget);
    m_folder->write(u"day.orp"_s, "[URL_Count]\r\nCount=0\r\n");
    const QString before = addressField()->text();
    const QUrl file = fileNamed(u"day.orp"_s);
    // File managers add the name as text.
    QVERIFY(DragAndDrop({file}, file.toString()).drop(widget));
    QTRY_COMPARE(m_opened, QStringList{m_folder->file(u"day.orp"_s)});
    QCOMPARE(addressField()->text(), before);
}

void tst_FrameDrop::folderIsRefusedEverywhere()
{
    QFETCH(const QString, where);
    QWidget *widget = place(where);
    QVERIFY(widget);
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder.orp"_s));
    for (const QUrl &folder : {QUrl::fromLocalFile(m_folder->path()), fileNamed(u"folder.orp"_s)})
        QCOMPARE(DragAndDrop({folder}, folder.toString()).over(widget), Qt::IgnoreAction);
}

void tst_FrameDrop::stripOpensNewWindows_data()
{
    QTest::addColumn<QStringList>("dragged");
    QTest::addColumn<QStringList>("opened");
    const QString link = u"http://one.example/a%20b?c#d"_s;
    const QString file = u"file:///nowhere/a%20page.html"_s;
    QTest::newRow("link") << QStringList{link} << QStringList{link};
    QTest::newRow("file") << QStringList{file} << QStringList{file};
    QTest::newRow("several") << QStringList{file, link, u"https://two.example/"_s}
                             << QStringList{file, link, u"https://two.example/"_s};
    QTest::newRow("a folder among them")
        << QStringList{file, u"file:///"_s, link} << QStringList{file, link};
}

void tst_FrameDrop::stripOpensNewWindows()
{
    QFETCH(const QStringList, dragged);
    QFETCH(const QStringList, opened);
    m_frame->openBrowserWindow(u"http://first.example/"_s, WindowState::AsOthers);
    QList<QUrl> urls;
    for (const QString &address : dragged)
        urls.append(QUrl(address));
    QVERIFY(DragAndDrop(urls).drop(strip()));
    QTRY_COMPARE(browserForms().size(), opened.size() + 1);
    for (qsizetype i = 0; i < opened.size(); ++i) {
        const auto *engine = FakeWebBrowser::made().at(i + 1);
        QCOMPARE(engine->navigated, QStringList{opened.at(i)});
    }
    QCOMPARE(FakeWebBrowser::made().first()->navigated.size(), 1);
}

/// Never a move, after which the source would delete the file.
void tst_FrameDrop::stripTakesACopyOrALink()
{
    DragAndDrop link({QUrl(u"http://one.example/"_s)});
    QCOMPARE(link.over(strip()), Qt::CopyAction);
    link.allowed = Qt::LinkAction | Qt::MoveAction;
    QCOMPARE(link.over(strip()), Qt::LinkAction);
}

void tst_FrameDrop::stripRefusesScriptsAndMail()
{
    for (const QString &address : {u"javascript:alert(1)"_s, u"mailto:a@b.example"_s,
                                   u"data:text/html,x"_s, u"chrome://gpu"_s, u"qrc:/x"_s})
        QCOMPARE(DragAndDrop({QUrl(address)}, address).over(strip()), Qt::IgnoreAction);
    QCOMPARE(DragAndDrop({}, u"some text"_s).over(strip()), Qt::IgnoreAction);
}

void tst_FrameDrop::stripOpensWhatIsDroppedOnATab()
{
    QVERIFY(DragAndDrop({QUrl(u"http://one.example/"_s)}).drop(place(u"tab"_s)));
    QTRY_COMPARE(browserForms().size(), 2);
}

bool tst_FrameDrop::comesUp()
{
    m_frame->show();
    m_frame->activateWindow();
    return QTest::qWaitForWindowActive(m_frame.get());
}

/// Turns the event loop until so many windows are open, and no further.
bool tst_FrameDrop::turnTo(qsizetype windows)
{
    const QDeadlineTimer deadline(5000);
    while (browserForms().size() < windows && !deadline.hasExpired())
        QCoreApplication::processEvents();
    return browserForms().size() == windows;
}

void tst_FrameDrop::dropMany(int number)
{
    QList<QUrl> urls;
    for (int i = 0; i < number; ++i)
        urls.append(QUrl(u"http://one.example/%1"_s.arg(i)));
    QVERIFY(DragAndDrop(urls).drop(strip()));
}

void tst_FrameDrop::stripAsksBeforeItOpensMany_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::newRow("few") << 15 << QMessageBox::NoButton;
    QTest::newRow("many, yes") << 16 << QMessageBox::Yes;
    QTest::newRow("many, no") << 16 << QMessageBox::No;
    QTest::newRow("a thousand, no") << 1000 << QMessageBox::No;
}

void tst_FrameDrop::stripAsksBeforeItOpensMany()
{
    QFETCH(const int, number);
    QFETCH(const QMessageBox::StandardButton, answer);
    const qsizetype before = browserForms().size();
    dropMany(number);
    const auto *box = m_frame->findChild<QMessageBox *>();
    QCOMPARE(box != nullptr, answer != QMessageBox::NoButton);
    if (box) {
        QVERIFY(box->text().contains(QString::number(number)));
        QCOMPARE(browserForms().size(), before);
        box->button(answer)->click();
    }
    QTRY_VERIFY(!m_frame->findChild<QMessageBox *>());
    QTRY_COMPARE(browserForms().size(), answer == QMessageBox::No ? before : before + number);
}

void tst_FrameDrop::endlessAddressIsRefused()
{
    const QUrl one(u"http://one.example/"_s);
    const QUrl longest(one.toString() + QString(2 * 1024 * 1024 - one.toString().size(), u'a'));
    const QUrl endless(longest.toString() + u'a');
    QCOMPARE(DragAndDrop({longest}).over(strip()), Qt::CopyAction);
    for (QWidget *widget : {static_cast<QWidget *>(strip()), place(u"page"_s)})
        QCOMPARE(DragAndDrop({endless, one}).over(widget), Qt::IgnoreAction);
    QVERIFY(DragAndDrop({one, endless}).drop(strip()));
    QTRY_COMPARE(browserForms().size(), 2);
    QVERIFY(DragAndDrop({QUrl(u"http://two.example/"_s)}).drop(strip()));
    QTRY_COMPARE(FakeWebBrowser::made().last()->navigated, QStringList{u"http://two.example/"_s});
    QCOMPARE(browserForms().size(), 3);
}

/// The user goes on while the others come.
void tst_FrameDrop::typingStaysWhereItIs()
{
    QVERIFY(comesUp());
    dropMany(10);
    QVERIFY(turnTo(1));
    addressField()->setFocus();
    addressField()->clear();
    QString typed;
    for (int windows = 2; windows <= 10; ++windows) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
        typed += u'x';
        QVERIFY(turnTo(windows));
    }
    QVERIFY(addressField()->hasFocus());
    QCOMPARE(addressField()->text(), typed);
}

void tst_FrameDrop::windowInFrontStaysThere()
{
    QVERIFY(comesUp());
    dropMany(10);
    QTRY_COMPARE(browserForms().size(), 10);
    QCOMPARE(m_frame->activeChild(), browserForms().first());
    dropMany(2);
    QTRY_COMPARE(browserForms().size(), 12);
    QCOMPARE(m_frame->activeChild(), browserForms().at(10));
}

/// Nobody closes all windows to get more of them.
void tst_FrameDrop::closingAllEndsTheOpening()
{
    dropMany(10);
    QVERIFY(turnTo(2));
    for (BrowserWindow *window : browserForms())
        window->close();
    QVERIFY(browserForms().isEmpty());
    // Its turns would come before those of another drop end.
    dropMany(3);
    QTRY_VERIFY(!browserForms().isEmpty());
    QTRY_COMPARE(FakeWebBrowser::made().last()->navigated, QStringList{u"http://one.example/2"_s});
    QCOMPARE(browserForms().size(), 3);
}

void tst_FrameDrop::typingAnswersNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Enter") << Qt::Key_Return;
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("letter of the answer") << Qt::Key_Y;
}

/// The question may come while the user is at something else.
void tst_FrameDrop::typingAnswersNothing()
{
    QFETCH(const Qt::Key, key);
    QVERIFY(comesUp());
    // Time enough for the test to be early.
    const int before = QApplication::doubleClickInterval();
    QApplication::setDoubleClickInterval(3000);
    const auto reset = qScopeGuard([before] { QApplication::setDoubleClickInterval(before); });
    dropMany(16);
    const QPointer<QMessageBox> box = m_frame->findChild<QMessageBox *>();
    QVERIFY(box);
    const auto *typed = box->findChild<TypedAhead *>();
    QVERIFY(typed);
    QAbstractButton *yes = box->button(QMessageBox::Yes);
    QTest::keyClick(yes, key);
    // Answered, the button is down for a while and the box closes then.
    QVERIFY(box->isVisible());
    QVERIFY(!yes->isDown() && !box->button(QMessageBox::No)->isDown());
    QTRY_VERIFY_WITH_TIMEOUT(typed->isOver(), 15'000);
    QVERIFY(box && box->isVisible());
    QTest::keyClick(yes, Qt::Key_Return);
    QTRY_VERIFY(!box);
    QTRY_COMPARE(browserForms().size(), 16);
}

void tst_FrameDrop::addressBarTakesTheAddress_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("text");
    QTest::newRow("link") << QUrl(u"http://one.example/a%20b"_s) << u"http://one.example/a%20b"_s;
    QTest::newRow("file") << QUrl::fromLocalFile(u"/nowhere/a page.html"_s)
                          << u"file:///nowhere/a%20page.html"_s;
    QTest::newRow("link to a profile")
        << QUrl(u"http://one.example/day.orp"_s) << u"http://one.example/day.orp"_s;
}

void tst_FrameDrop::addressBarTakesTheAddress()
{
    QFETCH(const QUrl, url);
    QFETCH(const QString, text);
    m_frame->show();
    m_frame->activateWindow();
    QTRY_VERIFY(m_frame->isActiveWindow());
    m_frame->openBrowserWindow(u"http://first.example/"_s, WindowState::AsOthers);
    // One that begins as what is dropped must not be added to it.
    m_frame->addAddress(text + "/more"_L1, false);
    addressField()->setText(u"what was there"_s);
    addressField()->setCursorPosition(4);
    QVERIFY(DragAndDrop({url}, u"a title"_s).drop(addressField()));
    QCOMPARE(addressField()->text(), text);
    QVERIFY(!addressField()->hasSelectedText());
    QCOMPARE(FakeWebBrowser::made().first()->navigated.size(), 1);
    m_frame->setAddressText(u"http://page.example/"_s);
    QCOMPARE(addressField()->text(), text);
    QTest::keyClick(addressField(), Qt::Key_Return);
    QCOMPARE(FakeWebBrowser::made().first()->navigated.last(), text);
}

/// What is dragged comes from another program, whose window has the keyboard then: the frame that
/// comes up for the drop does not put its page's address back.
void tst_FrameDrop::addressBarOfAFrameBehindTakesTheAddress()
{
    QWidget elsewhere(m_frame.get());
    elsewhere.setFocusPolicy(Qt::StrongFocus);
    m_frame->show();
    m_frame->activateWindow();
    QTRY_VERIFY(m_frame->isActiveWindow());
    m_frame->openBrowserWindow(u"http://first.example/"_s, WindowState::AsOthers);
    elsewhere.setFocus();
    QTRY_VERIFY(elsewhere.hasFocus());
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    const QUrl link(u"http://one.example/a"_s);
    QVERIFY(DragAndDrop({link}).drop(addressField()));
    m_frame->setAddressText(u"http://page.example/"_s);
    QCOMPARE(addressField()->text(), link.toString());
    QTRY_VERIFY(addressField()->hasFocus());
    QCOMPARE(addressField()->text(), link.toString());
}

void tst_FrameDrop::addressBarTakesTextWhereItIsLetGo()
{
    addressField()->setText(u"one"_s);
    QVERIFY(DragAndDrop({}, u"two"_s).drop(addressField()));
    QVERIFY(addressField()->text() != u"two"_s);
    QVERIFY(addressField()->text().contains(u"two"_s));
}

void tst_FrameDrop::searchBoxTakesALink()
{
    auto *field = qobject_cast<QLineEdit *>(place(u"search box"_s));
    QVERIFY(field);
    field->setText(u"words"_s);
    QVERIFY(DragAndDrop({QUrl(u"http://one.example/"_s)}).drop(field));
    QCOMPARE(field->text(), u"http://one.example/"_s);
}

void tst_FrameDrop::pagesGiveAddressesOfTheWebAlone_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("markup");
    QTest::addColumn<QStringList>("addresses");
    const QUrl file(u"file:///tmp/made/picture.svg"_s);
    const QStringList none;
    QTest::newRow("link") << QUrl(u"http://h/a?b=1"_s) << u"<a href='http://x/'>x</a>"_s
                          << QStringList{u"http://h/a?b=1"_s};
    QTest::newRow("picture") << file << u"<img src=\"http://h/p.svg?a=1&amp;b=2\" alt=x>"_s
                             << QStringList{u"http://h/p.svg?a=1&b=2"_s};
    QTest::newRow("picture without an address")
        << file << u"<img src=\"data:image/svg+xml,x\">"_s << none;
    QTest::newRow("picture of a file") << file << u"<img src=\"file:///etc/x.png\">"_s << none;
    QTest::newRow("file") << file << QString() << none;
    QTest::newRow("script") << QUrl(u"javascript:1"_s) << u"<img src='http://h/'>"_s << none;
    QTest::newRow("endless") << file << QString("<img src='http://h/'>"_L1 + QString(100'000, u'x'))
                             << none;
}

void tst_FrameDrop::pagesGiveAddressesOfTheWebAlone()
{
    QFETCH(QUrl, url);
    QFETCH(QString, markup);
    QMimeData data;
    data.setUrls({url});
    data.setHtml(markup);
    QTEST(pageAddressesDragged(data), "addresses");
}

QTEST_MAIN(tst_FrameDrop)
#include "tst_framedrop.moc"
