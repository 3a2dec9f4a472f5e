#include "ApplySettings.h"
#include "BrowserWindow.h"
#include "ChevronButton.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "DragAndDrop.h"
#include "FakeWebBrowser.h"
#include "FavoritesHome.h"
#include "Forms.h"
#include "LinksBar.h"
#include "MainWindow.h"
#include "TempAppFolder.h"
#include "ToolBar.h"
#include "ToolBarButton.h"

#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QMessageBox>
#include <QToolTip>
#include <QtTest>

/// The links bar of a real frame over a Favorites folder of the test's own.
class tst_LinksBar : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void linksStandInOrderEachWithASeparator();
    void captionIsTheNameWithoutFourCharacters_data();
    void captionIsTheNameWithoutFourCharacters();
    void withoutAddressNoButton();
    void missingFolderLeavesTheBarEmpty();
    void clickOpensTheAddressInTheActiveWindow();
    void clickWithoutAWindowOpensAMaximizedOne();
    void chevronOpensTheAddressToo();
    void startFillsTheBar();
    void emptyBarSaysWhatBelongsThere();
    void hiddenBandStaysEmpty();
    void bandHiddenBeforeTheFillStaysEmpty();
    void switchedOnFillsAnEmptyBar();
    void hidingAndShowingReadsNothingAnew();
    void applyingSettingsAgainReadsAnew();
    void ampersandIsNoAccessKey();
    void toolTipShowsTheAddressAsItIs();
    void longNames_data();
    void longNames();
    void fiveThousandFiles();
    void rebuiltWhileFilled();
    void menuOfThousands();
    void droppedLinkIsAdded_data();
    void droppedLinkIsAdded();
    void droppedAgainItReplacesNothing();
    void whatNobodyOpensIsNotTaken_data();
    void whatNobodyOpensIsNotTaken();
    void linkThatCannotBeWrittenIsTold();

private:
    void apply();
    LinksBar &links() const { return *m_frame->findChild<LinksBar *>(); }
    ToolBar &bar() const { return *m_frame->findChild<ToolBar *>(u"tbLinks"_s); }
    CoolBand &band() const { return *m_frame->findChild<CoolBar *>()->band(u"Links"_s); }
    void toggle() const { m_frame->run(u"mnuViewToolBarFavoriteLinks"_s); }
    ToolBarButton *button(int index1) const;
    void showFrame() const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_LinksBar::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<MainWindow>();
}

void tst_LinksBar::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_LinksBar::apply()
{
    applySettings(*m_frame, *m_frame->findChild<CoolBar *>(), links());
}

void tst_LinksBar::showFrame() const
{
    m_frame->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_frame.get()));
}

ToolBarButton *tst_LinksBar::button(int index1) const
{
    for (ToolBarButton *each : bar().findChildren<ToolBarButton *>()) {
        if (each->isVisible() && each->index() == index1 - 1)
            return each;
    }
    return nullptr;
}

void tst_LinksBar::linksStandInOrderEachWithASeparator()
{
    m_home->writeLink(u"Links/b.url"_s, "http://b/");
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    m_home->writeLink(u"Links/C.url"_s, "http://c/");
    QCOMPARE(links().rebuild(true), 3);
    QCOMPARE(bar().buttonCount(), 6);
    QStringList texts;
    QStringList tips;
    for (int index = 1; index <= 6; ++index) {
        texts += bar().text(index);
        tips += bar().toolTip(index);
    }
    QCOMPARE(texts, QStringList({u"a"_s, {}, u"b"_s, {}, u"C"_s, {}}));
    QCOMPARE(tips, QStringList({u"http://a/"_s, {}, u"http://b/"_s, {}, u"http://c/"_s, {}}));
}

void tst_LinksBar::captionIsTheNameWithoutFourCharacters_data()
{
    QTest::addColumn<QString>("caption");
    QTest::newRow("latin") << u"News"_s;
    QTest::newRow("dots") << u"a.b.c"_s;
    QTest::newRow("greek") << u"Νέα"_s;
    QTest::newRow("cyrillic") << u"Новости"_s;
    QTest::newRow("hebrew") << u"חדשות"_s;
    QTest::newRow("arabic") << u"أخبار"_s;
    QTest::newRow("devanagari") << u"समाचार"_s;
    QTest::newRow("thai") << u"ข่าว"_s;
    QTest::newRow("han") << u"新闻"_s;
    QTest::newRow("hangul") << u"뉴스"_s;
    QTest::newRow("beyond the basic plane") << u"𐍈𝔑🎈"_s;
    QTest::newRow("marks") << u"e\u0301a\u0308"_s;
}

void tst_LinksBar::captionIsTheNameWithoutFourCharacters()
{
    QFETCH(QString, caption);
    QVERIFY(m_home->writeLink(u"Links/"_s + caption + u".url"_s, "http://a/"));
    QCOMPARE(links().rebuild(true), 1);
    QCOMPARE(bar().text(1), caption);
    showFrame();
    QTRY_VERIFY(button(1));
    QCOMPARE(button(1)->accessibleName(), caption);
    QCOMPARE(button(1)->accessibleDescription(), u"http://a/"_s);
}

void tst_LinksBar::withoutAddressNoButton()
{
    m_home->write(u"Links/a.url"_s, "[InternetShortcut]\r\nIconIndex=1\r\n");
    m_home->write(u"Links/b.url"_s, "[InternetShortcut]\r\nURL=\r\n");
    m_home->writeLink(u"Links/c.url"_s, "http://c/");
    m_home->writeLink(u"Links/d.txt"_s, "http://d/");
    QCOMPARE(links().rebuild(true), 3);
    QCOMPARE(bar().buttonCount(), 2);
    QCOMPARE(bar().toolTip(1), u"http://c/"_s);
}

void tst_LinksBar::missingFolderLeavesTheBarEmpty()
{
    QCOMPARE(links().rebuild(true), 0);
    QCOMPARE(bar().buttonCount(), 0);
    m_home->write(u"Links"_s, "a file");
    QCOMPARE(links().rebuild(true), 0);
    QCOMPARE(bar().buttonCount(), 0);
}

void tst_LinksBar::clickOpensTheAddressInTheActiveWindow()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    m_home->writeLink(u"Links/b.url"_s, "http://b/?c=d");
    links().rebuild(true);
    showFrame();
    m_frame->openBrowserWindow(u"http://start/"_s, WindowState::Maximized);
    QTRY_VERIFY(button(3));
    FakeWebBrowser *page = FakeWebBrowser::made().last();
    QTest::mouseClick(button(3), Qt::LeftButton);
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QCOMPARE(page->navigated.last(), u"http://b/?c=d"_s);
    QTest::mouseClick(button(1), Qt::LeftButton);
    QCOMPARE(page->navigated.last(), u"http://a/"_s);
}

void tst_LinksBar::clickWithoutAWindowOpensAMaximizedOne()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    links().rebuild(true);
    showFrame();
    QTRY_VERIFY(button(1));
    QTest::mouseClick(button(1), Qt::LeftButton);
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QTRY_VERIFY(FakeWebBrowser::made().first()->navigated.contains(u"http://a/"_s));
    QVERIFY(m_frame->activeChild()->isMaximized());
}

void tst_LinksBar::chevronOpensTheAddressToo()
{
    for (int i = 0; i < 60; ++i)
        m_home->writeLink(u"Links/link number %1.url"_s.arg(i, 2, 10, QChar(u'0')),
                          "http://" + QByteArray::number(i) + '/');
    links().rebuild(true);
    showFrame();
    QTRY_VERIFY(band().hasChevron());
    m_frame->openBrowserWindow(u"http://start/"_s, WindowState::Maximized);
    QObject owner;
    const QList<QAction *> rest = bar().overflowActions(&owner);
    QVERIFY(!rest.isEmpty());
    rest.last()->trigger();
    QCOMPARE(FakeWebBrowser::made().last()->navigated.last(), u"http://59/"_s);
}

void tst_LinksBar::startFillsTheBar()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    apply();
    QTRY_COMPARE(bar().buttonCount(), 2);
}

void tst_LinksBar::emptyBarSaysWhatBelongsThere()
{
    const auto said = [this] {
        return QAccessible::queryAccessibleInterface(&bar())->text(QAccessible::Description);
    };
    showFrame();
    const QImage blank = bar().grab().toImage();
    links().rebuild(true);
    QCOMPARE(said(), u"Favorites in the folder Links are shown here"_s);
    QVERIFY(bar().grab().toImage() != blank);
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    links().rebuild(true);
    QCOMPARE(said(), QString());
    links().rebuild(false);
    QCOMPARE(said(), QString());
    QCOMPARE(bar().buttonCount(), 0);
}

void tst_LinksBar::hiddenBandStaysEmpty()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    links().rebuild(true);
    QCOMPARE(links().rebuild(false), 0);
    QCOMPARE(bar().buttonCount(), 0);
}

void tst_LinksBar::bandHiddenBeforeTheFillStaysEmpty()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    apply();
    toggle();
    QVERIFY(!band().isVisible());
    QVERIFY(links().isPending());
    QTRY_VERIFY(!links().isPending());
    QCOMPARE(bar().buttonCount(), 0);
}

void tst_LinksBar::switchedOnFillsAnEmptyBar()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    m_folder->setSetting(u"View"_s, u"FavoriteLinks"_s, u"False"_s);
    apply();
    QCOMPARE(bar().buttonCount(), 0);
    toggle();
    QVERIFY(band().isVisible());
    QCOMPARE(bar().buttonCount(), 2);
    QCOMPARE(m_folder->setting(u"View"_s, u"FavoriteLinks"_s), u"True"_s);
}

void tst_LinksBar::hidingAndShowingReadsNothingAnew()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    links().rebuild(true);
    m_home->writeLink(u"Links/b.url"_s, "http://b/");
    toggle();
    QVERIFY(!band().isVisible());
    QCOMPARE(bar().buttonCount(), 2);
    toggle();
    QVERIFY(band().isVisible());
    QCOMPARE(bar().buttonCount(), 2);
    QCOMPARE(bar().toolTip(1), u"http://a/"_s);
}

void tst_LinksBar::applyingSettingsAgainReadsAnew()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/");
    links().rebuild(true);
    m_home->writeLink(u"Links/b.url"_s, "http://b/");
    apply();
    QTRY_COMPARE(bar().buttonCount(), 4);
}

void tst_LinksBar::ampersandIsNoAccessKey()
{
    m_home->writeLink(u"Links/R&D.url"_s, "http://a/");
    links().rebuild(true);
    showFrame();
    QTRY_VERIFY(button(1));
    QCOMPARE(button(1)->text(), u"R&D"_s);
    QVERIFY(button(1)->shortcut().isEmpty());
}

void tst_LinksBar::toolTipShowsTheAddressAsItIs()
{
    m_home->writeLink(u"Links/a.url"_s, "http://a/?<b>bold</b>");
    links().rebuild(true);
    showFrame();
    QTRY_VERIFY(button(1));
    const QPoint at = button(1)->rect().center();
    QHelpEvent event(QEvent::ToolTip, at, button(1)->mapToGlobal(at));
    QApplication::sendEvent(button(1), &event);
    QVERIFY2(QToolTip::text().contains("&lt;b&gt;bold"_L1), qPrintable(QToolTip::text()));
    QToolTip::hideText();
}

// As long as file systems allow: 255 bytes with the ".url".
void tst_LinksBar::longNames_data()
{
    QTest::addColumn<QString>("name");
    const auto row = [](const char *script, const QString &letter) {
        QTest::newRow(script) << letter.repeated(251 / letter.toUtf8().size());
    };
    row("latin", u"m"_s);
    row("cyrillic", u"ж"_s);
    row("hebrew", u"ש"_s);
    row("arabic", u"ش"_s);
    row("devanagari", u"न"_s);
    row("thai", u"ข"_s);
    row("han", u"新"_s);
    row("hangul", u"뉴"_s);
    row("beyond the basic plane", u"🎈"_s);
}

void tst_LinksBar::longNames()
{
    QFETCH(QString, name);
    QVERIFY(m_home->writeLink(u"Links/"_s + name + u".url"_s, "http://a/"));
    links().rebuild(true);
    showFrame();
    QTRY_VERIFY(button(1));
    QCOMPARE(bar().text(1), name);
    QVERIFY2(button(1)->width() < 300, "a long name is shortened");
}

void tst_LinksBar::fiveThousandFiles()
{
    for (int i = 0; i < 5000; ++i)
        m_home->writeLink(u"Links/%1.url"_s.arg(i, 4, 10, QChar(u'0')),
                          "http://" + QByteArray::number(i) + '/');
    showFrame();
    // The longest that the event loop was kept from a timer of its own.
    qint64 longest = 0;
    QElapsedTimer beat;
    QTimer heart;
    connect(&heart, &QTimer::timeout, this, [&] { longest = std::max(longest, beat.restart()); });
    heart.start(0);
    beat.start();
    QCOMPARE(links().rebuild(true), 5000);
    QVERIFY2(links().isPending(), "the folder was read in one piece");
    QVERIFY(bar().buttonCount() < 10000);
    QTRY_VERIFY(!links().isPending());
    QCOMPARE(bar().buttonCount(), 10000);
    for (int index = 1; index <= 5000; ++index)
        QCOMPARE(bar().toolTip(2 * index - 1), u"http://%1/"_s.arg(index - 1));
    QTRY_VERIFY(band().hasChevron());
    // Only what fits costs a widget.
    QVERIFY(bar().findChildren<ToolBarButton *>().size() < 200);
    qInfo("5,000 links: not more than %lld ms at a time", longest);
}

void tst_LinksBar::rebuiltWhileFilled()
{
    for (int i = 0; i < 5000; ++i)
        m_home->writeLink(u"Links/%1.url"_s.arg(i, 4, 10, QChar(u'0')), "http://a/");
    links().rebuild(true);
    QVERIFY(links().isPending());
    QVERIFY(QDir(m_home->path(u"Links"_s)).removeRecursively());
    m_home->writeLink(u"Links/only.url"_s, "http://only/");
    links().rebuild(true);
    QVERIFY(!links().isPending());
    QCOMPARE(bar().buttonCount(), 2);
    QCOMPARE(bar().toolTip(1), u"http://only/"_s);
    links().rebuild(false);
    QCOMPARE(bar().buttonCount(), 0);
}

// Opened by the keyboard: groups named by their ends, filled as they open.
void tst_LinksBar::menuOfThousands()
{
    for (int i = 0; i < 5000; ++i)
        m_home->writeLink(u"Links/a & %1.url"_s.arg(i, 4, 10, QChar(u'0')),
                          "http://" + QByteArray::number(i) + '/');
    showFrame();
    m_frame->openBrowserWindow(u"http://start/"_s, WindowState::Maximized);
    links().rebuild(true);
    QTRY_VERIFY(!links().isPending());
    QTRY_VERIFY(band().hasChevron());
    ChevronButton *chevron = nullptr;
    for (auto *each : m_frame->findChildren<ChevronButton *>()) {
        if (each->isVisible() && band().geometry().contains(each->geometry()))
            chevron = each;
    }
    QVERIFY(chevron);
    QElapsedTimer time;
    time.start();
    QTest::keyClick(chevron, Qt::Key_Space);
    const qint64 opened = time.elapsed();
    QTRY_VERIFY(chevron->menu()->isVisible());
    const QList<QAction *> groups = chevron->menu()->actions();
    QVERIFY(groups.size() <= 50);
    QVERIFY(groups.last()->text().endsWith(u"– a && 4999"_s));
    for (const QAction *group : groups)
        QVERIFY(group->menu() && group->menu()->isEmpty());
    QTest::keyClick(chevron->menu(), Qt::Key_Up);
    QTest::keyClick(chevron->menu(), Qt::Key_Right);
    QMenu *last = groups.last()->menu();
    QTRY_VERIFY(last->isVisible());
    QTest::keyClick(last, Qt::Key_Up);
    QCOMPARE(last->activeAction()->text(), u"a && 4999"_s);
    QTest::keyClick(last, Qt::Key_Return);
    QCOMPARE(FakeWebBrowser::made().last()->navigated.last(), u"http://4999/"_s);
    QTRY_VERIFY(!chevron->menu()->isVisible());
    qInfo("a menu of 5,000 links opens in %lld ms", opened);
    // And once more: the groups of the last opening are gone.
    QTest::keyClick(chevron, Qt::Key_Space);
    QCOMPARE(chevron->menu()->actions().size(), groups.size());
    chevron->menu()->close();
}

void tst_LinksBar::droppedLinkIsAdded_data()
{
    QTest::addColumn<QString>("markup");
    QTest::addColumn<QString>("name");
    QTest::newRow("with its text")
        << u"<a href='http://h/a'>The <b>link</b>\u202e</a>"_s << u"The link"_s;
    QTest::newRow("picture") << u"<img src='http://h/a' alt=''>"_s << u"a"_s;
    QTest::newRow("path") << u"<a>../../over</a>"_s << QString();
    QTest::newRow("no text") << QString() << u"a"_s;
    QTest::newRow("endless") << QString(100'000, u'x') << u"a"_s;
}

void tst_LinksBar::droppedLinkIsAdded()
{
    QFETCH(QString, markup);
    QFETCH(QString, name);
    QVERIFY(m_home->writeLink(u"Links/old.url"_s, "http://old/"));
    apply();
    showFrame();
    QTRY_COMPARE(bar().buttonCount(), 2);
    DragAndDrop drag({QUrl(u"http://h/a?b=1"_s)});
    drag.setMarkup(markup);
    QVERIFY(drag.drop(&bar()));
    QTRY_COMPARE(bar().buttonCount(), 4);
    const QStringList files = QDir(m_home->path(u"Links"_s)).entryList(QDir::Files);
    QCOMPARE(files.size(), 2);
    if (!name.isEmpty())
        QVERIFY2(files.contains(name + ".url"_L1), qPrintable(files.join(u' ')));
    // Nowhere else.
    QCOMPARE(QDir(m_home->favorites()).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(m_home->home()).entryList(QDir::Files), QStringList());
    QStringList addresses;
    for (int index = 1; index <= bar().buttonCount(); ++index)
        addresses.append(bar().toolTip(index));
    QVERIFY(addresses.contains(u"http://h/a?b=1"_s));
}

void tst_LinksBar::droppedAgainItReplacesNothing()
{
    apply();
    showFrame();
    DragAndDrop drag({QUrl(u"http://h/a"_s)});
    drag.setMarkup(u"<a>name</a>"_s);
    for (int count = 1; count <= 2; ++count) {
        QVERIFY(drag.drop(&bar()));
        QTRY_COMPARE(bar().buttonCount(), 2 * count);
    }
}

void tst_LinksBar::whatNobodyOpensIsNotTaken_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::newRow("script") << QUrl(u"javascript:alert(1)"_s);
    QTest::newRow("data") << QUrl(u"data:text/html,x"_s);
    QTest::newRow("folder") << QUrl(u"file:///tmp"_s);
}

void tst_LinksBar::whatNobodyOpensIsNotTaken()
{
    QFETCH(QUrl, url);
    apply();
    showFrame();
    QVERIFY(!DragAndDrop({url}).drop(&bar()));
}

void tst_LinksBar::linkThatCannotBeWrittenIsTold()
{
    apply();
    showFrame();
    // A file has the place of the folder.
    QVERIFY(m_home->write(u"Links"_s, "x"));
    QVERIFY(DragAndDrop({QUrl(u"http://h/a"_s)}).drop(&bar()));
    QMessageBox *box = nullptr;
    QTRY_VERIFY((box = m_frame->findChild<QMessageBox *>()));
    QCOMPARE(box->text(), u"The link could not be added to the Favorites."_s);
    box->reject();
    QCOMPARE(m_home->read(u"Links"_s), QByteArray("x"));
}

QTEST_MAIN(tst_LinksBar)
#include "tst_linksbar.moc"
