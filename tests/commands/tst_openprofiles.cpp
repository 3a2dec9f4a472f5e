#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QtTest>

#include "Answer.h"
#include "DeskFile.h"
#include "DeskTaker.h"
#include "FakeWebBrowser.h"
#include "FileDialogRequest.h"
#include "FileFaults.h"
#include "FileUpdate.h"
#include "MdiArea.h"
#include "RecentProfiles.h"
#include "Session.h"
#include "SmallDisk.h"
#include "Unlogged.h"
#include "UrlProfile.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int addresses = 1;
constexpr int withWindows = 2;

/// The lines that differ.
QByteArray differences(const Desk &actual, const Desk &expected)
{
    const QList<QByteArray> a = DeskFile::text(actual).split('\n');
    const QList<QByteArray> b = DeskFile::text(expected).split('\n');
    QByteArray section;
    QByteArray result;
    for (qsizetype i = 0; i < std::max(a.size(), b.size()); ++i) {
        if (a.value(i).startsWith('['))
            section = a.value(i).trimmed();
        if (a.value(i) != b.value(i))
            result += section + a.value(i).trimmed() + " for " + b.value(i).trimmed() + '\n';
    }
    return result;
}

/// Without its number a place in the stack cannot be told from another.
QList<QRect> places(const Desk &desk)
{
    QList<QRect> result;
    for (const DeskWindow &window : desk.windows)
        result.append(window.place);
    return result;
}
}

/// Profiles with windows, and what belongs to the profiles that are open, in the whole program on
/// windows whose pages the test controls.
class tst_OpenProfiles : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void kindIsRemembered();
    void comesBackAsItWas_data();
    void comesBackAsItWas();
    void titlesStandOnTheTabs();
    void waitingWindowsAreSavedAsTheyCome();
    void comesBeforeWhatIsThere();
    void withoutSectionsItIsCascaded();
    void windowWithoutASectionIsCascaded();
    void placesAreBroughtInside();
    void frameComesBack();
    void hostileFrame();
    void hundredMegabytes();
    void oddStates_data();
    void oddStates();
    void refusedAddressesStayRefused();
    void recentProfiles();
    void recentProfilesAreTen();
    void recentProfileThatIsGone();
    void oddNames();
    void nothingIsRememberedOfOthers();
    void saveUnderItsName();
    void saveThatFails_data();
    void saveThatFails();
    void closeWithoutAChange();
    void closeAfterAChange_data();
    void closeAfterAChange();
    void closeThatCannotSave_data();
    void closeThatCannotSave();
    void closeWithoutAChangeWhoseFileIsGone();
    void closeTellsWhatIsInTheWay();
    void closeWritesThroughNoLink();
    void closeOnAFullDisk();
    void twoProfiles();
    void newWindowsBelongWhereTheUserWas();
    void savedWindowsBelongToTheNewProfile();
    void endedOpeningIsNoProfile();
    void profileWithoutWindowsIsClosed();
    void itemsWithoutAProfile();

private:
    void answer(const QString &file, int kind);
    QString file(const QString &name) const
    {
        return m_session->folder.file(u"Profiles/"_s + name);
    }
    QByteArray read(const QString &name) const
    {
        return m_session->folder.read(u"Profiles/"_s + name);
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QVERIFY(m_session->folder.write(u"Profiles/"_s + name, bytes));
    }
    void writeAddresses(const QString &name, const QStringList &list) const
    {
        write(name, UrlProfile::text(list).toUtf8());
    }
    void saveAs(const QString &name, int kind);
    bool open(const QString &name) const
    {
        return m_session->frame->openProfile(file(name), false);
    }
    BrowserWindow *add(const QString &address);
    void closeAll();
    Desk desk() const { return takeDesk(*m_session->frame, browserForms()); }
    QStringList locations() const;
    MdiArea &area() const { return *m_session->frame->findChild<MdiArea *>(); }
    QString captionOf(const char *item) const;
    QStringList recentItems() const;

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Session> m_session;
    QList<FileDialogRequest> m_asked;
};

void tst_OpenProfiles::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_session = std::make_unique<Session>();
    m_asked.clear();
}

void tst_OpenProfiles::cleanup()
{
    setFileDialogAnswerer({});
    m_session.reset();
    m_engine.reset();
}

void tst_OpenProfiles::answer(const QString &name, int kind)
{
    setFileDialogAnswerer(
        [this, name, kind](const FileDialogRequest &request) -> std::optional<FileDialogAnswer> {
            m_asked.append(request);
            return FileDialogAnswer{name, kind};
        });
}

void tst_OpenProfiles::saveAs(const QString &name, int kind)
{
    answer(file(name), kind);
    m_session->choose("mnuFileProfilesSave");
}

/// A window that holds a page.
BrowserWindow *tst_OpenProfiles::add(const QString &address)
{
    m_session->frame->openBrowserWindow(address, WindowState::AsOthers);
    FakeWebBrowser::made().last()->location = address;
    return browserForms().last();
}

void tst_OpenProfiles::closeAll()
{
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    QTRY_VERIFY(FakeWebBrowser::made().isEmpty());
}

QStringList tst_OpenProfiles::locations() const
{
    QStringList result;
    for (const BrowserWindow *window : browserForms())
        result.append(window->browser()->locationUrl());
    return result;
}

/// As it is when the menu opens.
QString tst_OpenProfiles::captionOf(const char *item) const
{
    auto *menu = m_session->item("mnuFile")->menu();
    emit menu->aboutToShow();
    return m_session->item(item)->text().remove(u'&');
}

QStringList tst_OpenProfiles::recentItems() const
{
    QMenu *menu = m_session->item("mnuFileRecentProfiles")->menu();
    emit menu->aboutToShow();
    QStringList result;
    for (const QAction *item : menu->actions())
        result.append(item->text());
    return result;
}

void tst_OpenProfiles::kindIsRemembered()
{
    m_session->start(u"http://first/"_s);
    saveAs(u"a.orp"_s, addresses);
    QVERIFY(!read(u"a.orp"_s).contains("Window1"));
    saveAs(u"a.orp"_s, withWindows);
    QCOMPARE(m_asked.last().filterIndex, addresses);
    QVERIFY(read(u"a.orp"_s).contains("[Window1]"));
    QVERIFY(!m_session->folder.exists(u"Profiles/a.orp~"_s));
    // Also in the next session.
    m_session->end();
    m_session->start(u"http://first/"_s);
    saveAs(u"b.orp"_s, addresses);
    QCOMPARE(m_asked.last().filterIndex, withWindows);
    saveAs(u"b.orp"_s, addresses);
    QCOMPARE(m_asked.last().filterIndex, addresses);
}

void tst_OpenProfiles::comesBackAsItWas_data()
{
    QTest::addColumn<DeskWindow::State>("active");
    QTest::newRow("normal") << DeskWindow::State::Normal;
    QTest::newRow("maximized") << DeskWindow::State::Maximized;
    QTest::newRow("minimized") << DeskWindow::State::Minimized;
}

void tst_OpenProfiles::comesBackAsItWas()
{
    QFETCH(DeskWindow::State, active);
    m_session->start(u"http://h/0"_s);
    m_session->active()->showNormal();
    FakeWebBrowser::made().first()->location = u"http://h/0"_s;
    for (int i = 1; i < 12; ++i)
        add(u"http://h/"_s + QString::number(i));
    const QList<BrowserWindow *> windows = browserForms();
    for (int i = 0; i < 12; ++i) {
        windows.at(i)->setGeometry(7 * i - 40, 13 * i, 300 + 11 * i, 200 + 5 * i);
        windows.at(i)->setWindowTitle(u"Nr. "_s + QString::number(i));
        PageState &page = FakeWebBrowser::made().at(i)->state;
        page.scroll = QPoint(i, 1000 * i);
        page.zoom = 1 + i / 10.0;
        page.isMuted = i % 2;
    }
    windows.at(3)->showMinimized();
    windows.at(8)->showMinimized();
    for (const int i : {5, 0, 11, 6})
        area().setActiveSubWindow(windows.at(i));
    if (active == DeskWindow::State::Maximized)
        windows.at(6)->showMaximized();
    else if (active == DeskWindow::State::Minimized)
        windows.at(6)->showMinimized();
    Desk before = desk();
    QCOMPARE(before.active, 6);
    QCOMPARE(before.windows.at(6).state, active);
    saveAs(u"a.orp"_s, withWindows);
    before.frame = DeskFile::load(file(u"a.orp"_s)).value_or(Desk()).frame;
    QCOMPARE(DeskFile::load(file(u"a.orp"_s)), before);
    closeAll();
    QVERIFY(open(u"a.orp"_s));
    Desk after = desk();
    // The desktop may place the frame meanwhile.
    after.frame = before.frame;
    QCOMPARE(differences(after, before), QByteArray());
    QCOMPARE(after, before);
    // What is minimized or maximized goes back to its place.
    for (const int i : {3, 6, 8})
        browserForms().at(i)->showNormal();
    QCOMPARE(places(desk()), places(before));
}

void tst_OpenProfiles::titlesStandOnTheTabs()
{
    m_session->start(u"http://first/"_s);
    write(u"a.orp"_s,
          UrlProfile::text({u"http://a/"_s}).toUtf8()
              + "[Window1]\nWidth=6000\nHeight=6000\nTitle=tide tables\n");
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(m_session->active()->windowTitle(), u"tide tables"_s);
    QCOMPARE(m_session->tabs().caption(m_session->active()->tabKey()), u"Tide Table..."_s);
    // The address bar says the truth.
    QCOMPARE(m_session->address().text(), u"http://a/"_s);
}

/// Pages that have not come yet are saved with what they are to come with.
void tst_OpenProfiles::waitingWindowsAreSavedAsTheyCome()
{
    m_session->start(u"http://first/"_s);
    Desk wanted;
    for (int i = 0; i < 20; ++i)
        wanted.windows.append({u"http://h/"_s + QString::number(i), u"t"_s, QRect(i, i, 300, 200),
                               DeskWindow::State::Normal, i, QPoint(0, 100 * i), 1.5, true});
    QVERIFY(DeskFile::save(file(u"a.orp"_s), wanted));
    closeAll();
    QVERIFY(open(u"a.orp"_s));
    saveAs(u"b.orp"_s, withWindows);
    const Desk saved = DeskFile::load(file(u"b.orp"_s)).value_or(Desk());
    QCOMPARE(saved.windows, wanted.windows);
}

void tst_OpenProfiles::comesBeforeWhatIsThere()
{
    m_session->start(u"http://first/"_s);
    m_session->active()->showNormal();
    BrowserWindow *first = m_session->active();
    const QRect place = first->geometry();
    write(u"a.orp"_s,
          UrlProfile::text({u"http://a/"_s, u"http://b/"_s}).toUtf8()
              + "[Window1]\nWidth=6000\nHeight=6000\nOrder=1\n"
                "[Window2]\nLeft=150\nWidth=6000\nHeight=6000\nOrder=0\n");
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(first->geometry(), place);
    const QList<BrowserWindow *> windows = browserForms();
    const QList<QMdiSubWindow *> stack = area().subWindowList(QMdiArea::StackingOrder);
    QCOMPARE(stack, (QList<QMdiSubWindow *>{first, windows.at(2), windows.at(1)}));
    QCOMPARE(m_session->active(), windows.at(1));
}

void tst_OpenProfiles::withoutSectionsItIsCascaded()
{
    m_session->start(u"http://first/"_s);
    write(u"a.orp"_s,
          UrlProfile::text({u"http://a/"_s, u"http://b/"_s}).toUtf8() + "[Frame]\nActive=1\n");
    QVERIFY(open(u"a.orp"_s));
    QPoint before(-1, -1);
    for (const BrowserWindow *window : browserForms()) {
        QVERIFY(window->x() > before.x() && window->y() > before.y());
        before = window->pos();
    }
    QCOMPARE(m_session->active(), browserForms().last());
}

void tst_OpenProfiles::windowWithoutASectionIsCascaded()
{
    m_session->start(u"http://first/"_s);
    write(u"a.orp"_s,
          UrlProfile::text({u"http://a/"_s, u"http://b/"_s}).toUtf8()
              + "[Window2]\nLeft=150\nTop=300\nWidth=6000\nHeight=4500\n");
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(browserForms().at(2)->geometry(), QRect(10, 20, 400, 300));
    const QRect cascaded = browserForms().at(1)->geometry();
    QVERIFY(area().viewport()->rect().contains(cascaded));
    QVERIFY(cascaded.width() > 300);
}

void tst_OpenProfiles::placesAreBroughtInside()
{
    m_session->start(u"http://first/"_s);
    write(
        u"a.orp"_s,
        UrlProfile::text({u"http://a/"_s, u"http://b/"_s, u"http://c/"_s, u"http://d/"_s}).toUtf8()
            + "[Window1]\nLeft=-1e9\nTop=1e9\nWidth=6000\nHeight=6000\nZoom=1e9\n"
              "[Window2]\nLeft=1e300\nTop=-1e300\nWidth=1e300\nHeight=1e300\nZoom=NaN\n"
              "[Window3]\nWidth=1\nHeight=15\nScrollY=1e300\n"
              "[Window4]\nWidth=15\nHeight=1e9\nState=1\n");
    QVERIFY(open(u"a.orp"_s));
    // Its strip takes room as long as it is there.
    m_session->frame->findChild<QAbstractButton *>(u"cmdStop"_s)->click();
    QVERIFY(m_session->frame->findChild<QStatusBar *>()->isHidden());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QRect seen = area().viewport()->rect();
    for (const DeskWindow &window : desk().windows) {
        const QRect part = window.place & seen;
        QVERIFY2(part.width() >= 40 && part.height() >= 10,
                 qPrintable(QDebug::toString(window.place)));
        // Without its scroll bars.
        const QSize room = area().maximumViewportSize();
        QCOMPARE(window.place.size().boundedTo(room), window.place.size());
        QVERIFY(window.place.top() > -20);
        QVERIFY(window.zoom >= 0.25 && window.zoom <= 5);
    }
}

/// Windows beyond the frame as it was are not moved.
void tst_OpenProfiles::frameComesBack()
{
    m_session->start(u"http://first/"_s);
    MainWindow &frame = *m_session->frame;
    Desk wanted;
    wanted.windows = {{u"http://a/"_s, u"t"_s, QRect(790, 300, 300, 200)}};
    wanted.frame = QRect(60, 50, 1150, 800);
    QVERIFY(DeskFile::save(file(u"a.orp"_s), wanted));
    frame.resize(700, 500);
    QTRY_VERIFY(area().width() < 750);
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(m_session->active()->geometry(), wanted.windows.first().place);
    QTRY_COMPARE(frame.geometry().size(), wanted.frame.size());
    // One of addresses alone leaves it where it is.
    frame.resize(700, 500);
    const QSize size = frame.size();
    writeAddresses(u"b.orp"_s, {u"http://b/"_s});
    QVERIFY(open(u"b.orp"_s));
    QTRY_COMPARE(frame.size(), size);
    // And one that fills the screen goes on to.
    frame.showMaximized();
    QTRY_VERIFY(frame.isMaximized());
    QVERIFY(open(u"a.orp"_s));
    QVERIFY(frame.isMaximized());
}

void tst_OpenProfiles::hostileFrame()
{
    m_session->start(u"http://first/"_s);
    write(u"a.orp"_s,
          UrlProfile::text({u"http://a/"_s}).toUtf8()
              + "[Window1]\nWidth=6000\nHeight=6000\n"
                "[Frame]\nLeft=-1e300\nTop=1e300\nWidth=1\nHeight=1e300\nMaximized=no\n"
                "Left=15\n");
    QVERIFY(open(u"a.orp"_s));
    write(u"b.orp"_s,
          UrlProfile::text({u"http://a/"_s}).toUtf8()
              + "[Window1]\nWidth=6000\nHeight=6000\n"
                "[Frame]\nLeft=-1e300\nTop=1e300\nWidth=15\nHeight=1e300\n");
    QVERIFY(open(u"b.orp"_s));
    const QRect screen = m_session->frame->screen()->availableGeometry();
    QTRY_VERIFY(screen.intersects(m_session->frame->geometry()));
    QVERIFY(m_session->frame->width() <= screen.width());
    QVERIFY(m_session->frame->height() <= screen.height());
}

/// Of sections, keys and a title without end; what is of use in it comes up.
void tst_OpenProfiles::hundredMegabytes()
{
    m_session->start(u"http://first/"_s);
    QByteArray bytes = UrlProfile::text({u"http://a/"_s, u"http://b/"_s}).toUtf8()
        + "[Window1]\nWidth=6000\nHeight=6000\nTitle=";
    bytes += QByteArray(20'000'000, 'x') + '\n';
    for (int i = 1; i <= 1'000'000; ++i)
        bytes += "URL" + QByteArray::number(i) + "=http://h/\n[Window" + QByteArray::number(i)
            + "]\nLeft=150\nZoom=1e9\n";
    bytes += QByteArray(30'000'000, '\n') + QByteArray(10'000'000, '[');
    QVERIFY(bytes.size() > 100'000'000);
    write(u"a.orp"_s, bytes);
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(m_session->windows(), 3);
    QCOMPARE(browserForms().at(1)->width(), 400);
}

void tst_OpenProfiles::oddStates_data()
{
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<int>("active");
    QTest::addColumn<bool>("maximized");
    const QByteArray size = "Width=6000\nHeight=6000\n";
    const auto states = [size](const char *one, const char *two) {
        return "[Window1]\nState=" + QByteArray(one) + "\nOrder=1\n" + size
            + "[Window2]\nState=" + two + "\nOrder=0\n" + size;
    };
    QTest::newRow("another is maximized") << states("0", "2") + "[Frame]\nActive=1\n" << 1 << false;
    QTest::newRow("both are") << states("2", "2") + "[Frame]\nActive=2\n" << 2 << true;
    QTest::newRow("the one in front is") << states("2", "0") << 1 << true;
    QTest::newRow("active beyond all") << states("0", "0") + "[Frame]\nActive=9\n" << 1 << false;
    QTest::newRow("all minimized") << states("1", "1") + "[Frame]\nActive=2\n" << 2 << false;
}

void tst_OpenProfiles::oddStates()
{
    QFETCH(QByteArray, sections);
    QFETCH(int, active);
    QFETCH(bool, maximized);
    m_session->start(u"http://first/"_s);
    write(u"a.orp"_s, UrlProfile::text({u"http://a/"_s, u"http://b/"_s}).toUtf8() + sections);
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(m_session->active(), browserForms().at(active));
    for (const BrowserWindow *window : browserForms())
        QCOMPARE(window->isMaximized(), maximized && window == m_session->active());
}

/// What a window may open is decided where it opens it.
void tst_OpenProfiles::refusedAddressesStayRefused()
{
    m_session->start(u"http://first/"_s);
    const QStringList odd{u"javascript:alert(1)"_s, u"chrome://crash"_s, u"mailto:a@b"_s};
    write(u"a.orp"_s, UrlProfile::text(odd).toUtf8() + "[Window1]\nWidth=6000\nHeight=6000\n");
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(m_session->windows(), 4);
    QTRY_COMPARE(FakeWebBrowser::made().at(3)->navigated, QStringList{odd.at(2)});
    QCOMPARE(FakeWebBrowser::made().at(1)->waits, 1);
}

void tst_OpenProfiles::recentProfiles()
{
    m_session->start(u"http://first/"_s);
    QCOMPARE(recentItems(), QStringList{u"(None)"_s});
    QVERIFY(!m_session->item("mnuFileRecentProfiles")->menu()->actions().first()->isEnabled());
    writeAddresses(u"a.orp"_s, {u"http://a/"_s});
    QVERIFY(open(u"a.orp"_s));
    saveAs(u"b.orp"_s, addresses);
    QCOMPARE(recentItems(), (QStringList{u"b"_s, u"a"_s}));
    const int before = m_session->windows();
    m_session->item("mnuFileRecentProfiles")->menu()->actions().at(1)->trigger();
    QCOMPARE(m_session->windows(), before + 1);
    QCOMPARE(recentItems(), (QStringList{u"a"_s, u"b"_s}));
    // The next session knows them.
    m_session->end();
    m_session->start(u"http://first/"_s);
    QCOMPARE(recentItems(), (QStringList{u"a"_s, u"b"_s}));
}

void tst_OpenProfiles::recentProfilesAreTen()
{
    m_session->start(u"http://first/"_s);
    for (int i = 0; i < 13; ++i)
        RecentProfiles::add(file(QString::number(i) + u".orp"_s));
    QStringList expected;
    for (int i = 12; i > 2; --i)
        expected.append(QString::number(i));
    QCOMPARE(recentItems(), expected);
}

void tst_OpenProfiles::recentProfileThatIsGone()
{
    m_session->start(u"http://first/"_s);
    RecentProfiles::add(file(u"there.orp"_s));
    RecentProfiles::add(file(u"gone.orp"_s));
    QCOMPARE(recentItems().size(), 2);
    Answer ok(QMessageBox::Ok);
    m_session->item("mnuFileRecentProfiles")->menu()->actions().first()->trigger();
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains(file(u"gone.orp"_s)));
    QCOMPARE(recentItems(), QStringList{u"there"_s});
    QCOMPARE(m_session->windows(), 1);
}

void tst_OpenProfiles::oddNames()
{
    m_session->start(u"http://first/"_s);
    const QString rtl(QChar(0x202E));
    writeAddresses(u"R&D "_s + rtl + u"x.orp"_s, {u"http://a/"_s});
    QVERIFY(open(u"R&D "_s + rtl + u"x.orp"_s));
    QCOMPARE(recentItems(), QStringList{u"R&&D x"_s});
    emit m_session->item("mnuFile")->menu()->aboutToShow();
    QVERIFY(m_session->item("mnuFileProfileSave")->text().endsWith(u"\"R&&D x\""_s));
    // "%1" is a name like others, and a long one is shortened.
    writeAddresses(u"%1.orp"_s, {u"http://a/"_s});
    QVERIFY(open(u"%1.orp"_s));
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile \"%1\""_s);
    const QString longest(240, u'w');
    writeAddresses(longest + u".orp"_s, {u"http://a/"_s});
    QVERIFY(open(longest + u".orp"_s));
    QVERIFY(captionOf("mnuFileProfileClose").size() < 100);
    QVERIFY(recentItems().first().size() < 100);
    // Two with one name say where they are.
    RecentProfiles::add(u"/elsewhere/%1.orp"_s);
    QVERIFY(recentItems().first().contains(u"/elsewhere"_s));
    QVERIFY(recentItems().at(2).startsWith(u"%1 "_s));
}

void tst_OpenProfiles::nothingIsRememberedOfOthers()
{
    m_session->start(u"http://first/"_s);
    QVERIFY(!m_session->frame->openProfile(file(u"missing.orp"_s), true));
    saveAs(u"without an ending"_s, addresses);
    RecentProfiles::add(u"/a\nb.orp"_s);
    RecentProfiles::add(u'/' + QString(1100, u'x') + u".orp"_s);
    QCOMPARE(recentItems(), QStringList{u"(None)"_s});
    // Somebody wrote into the settings.
    m_session->folder.setSetting(u"RecentProfiles"_s, u"File1"_s, u"relative.orp"_s);
    m_session->folder.setSetting(u"RecentProfiles"_s, u"File2"_s, u"/bin/sh"_s);
    m_session->folder.setSetting(u"RecentProfiles"_s, u"File3"_s, u"/x/a.orp"_s);
    m_session->folder.setSetting(u"RecentProfiles"_s, u"File4"_s, u"/x/a.orp"_s);
    QCOMPARE(recentItems(), QStringList{u"a"_s});
}

void tst_OpenProfiles::saveUnderItsName()
{
    m_session->start(u"http://first/"_s);
    FakeWebBrowser::made().first()->location = u"http://first/"_s;
    QVERIFY(!m_session->item("mnuFileProfileSave")->isEnabled());
    saveAs(u"a.orp"_s, withWindows);
    QCOMPARE(captionOf("mnuFileProfileSave"), u"Save Profile \"a\""_s);
    QVERIFY(m_session->item("mnuFileProfileSave")->isEnabled());
    const QString title = m_session->frame->windowTitle();
    QVERIFY(!title.contains(u"\"a\""_s));
    add(u"http://second/"_s);
    const qsizetype dialogs = m_asked.size();
    m_session->choose("mnuFileProfileSave");
    QCOMPARE(m_asked.size(), dialogs);
    const Desk saved = DeskFile::load(file(u"a.orp"_s)).value_or(Desk());
    QCOMPARE(saved.windows, desk().windows);
    QCOMPARE(saved.windows.size(), 2);
    QVERIFY(!m_session->folder.exists(u"Profiles/a.orp~"_s));
    // A plain one stays plain.
    saveAs(u"b.orp"_s, addresses);
    add(u"http://third/"_s);
    m_session->choose("mnuFileProfileSave");
    QCOMPARE(
        read(u"b.orp"_s),
        UrlProfile::text({u"http://first/"_s, u"http://second/"_s, u"http://third/"_s}).toUtf8());
}

void tst_OpenProfiles::saveThatFails_data()
{
    QTest::addColumn<FileFaults::Kind>("kind");
    QTest::newRow("full disk") << FileFaults::Kind::FullDisk;
    QTest::newRow("read-only folder") << FileFaults::Kind::ReadOnly;
}

void tst_OpenProfiles::saveThatFails()
{
    QFETCH(FileFaults::Kind, kind);
    const Unlogged unlogged;
    m_session->start(u"http://first/"_s);
    saveAs(u"a.orp"_s, withWindows);
    const QByteArray old = read(u"a.orp"_s);
    add(u"http://second/"_s);
    FileFaults::arm(kind, 1);
    m_session->choose("mnuFileProfileSave");
    FileFaults::disarm();
    auto *message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY(message && message->text().contains(file(u"a.orp"_s)));
    message->close();
    QCOMPARE(read(u"a.orp"_s), old);
    // The change is still to be saved.
    m_session->choose("mnuFileProfileClose");
    QVERIFY(read(u"a.orp"_s) != old);
}

void tst_OpenProfiles::closeWithoutAChange()
{
    m_session->start(u"http://first/"_s);
    const QByteArray odd =
        ";mine\nEMPTY\n" + UrlProfile::text({u"http://a/"_s, u"http://b/"_s}).toUtf8();
    write(u"a.orp"_s, odd);
    QVERIFY(open(u"a.orp"_s));
    QCOMPARE(m_session->windows(), 3);
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(read(u"a.orp"_s), odd);
    QVERIFY(!m_session->folder.exists(u"Profiles/a.orp~"_s));
    QVERIFY(!QApplication::activeModalWidget());
    // Nor is another written that was saved a moment ago.
    saveAs(u"b.orp"_s, withWindows);
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(m_session->windows(), 0);
    QVERIFY(!m_session->folder.exists(u"Profiles/b.orp~"_s));
}

void tst_OpenProfiles::closeAfterAChange_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("addresses") << addresses;
    QTest::newRow("with windows") << withWindows;
}

void tst_OpenProfiles::closeAfterAChange()
{
    QFETCH(int, kind);
    m_session->start(u"http://first/"_s);
    FakeWebBrowser::made().first()->location = u"http://first/"_s;
    saveAs(u"a.orp"_s, kind);
    const QByteArray old = read(u"a.orp"_s);
    FakeWebBrowser::made().first()->location = u"http://elsewhere/"_s;
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(m_session->windows(), 0);
    QCOMPARE(read(u"a.orp~"_s), old);
    const Desk saved = DeskFile::load(file(u"a.orp"_s)).value_or(Desk());
    QCOMPARE(saved.windows.size(), 1);
    QCOMPARE(saved.windows.first().address, u"http://elsewhere/"_s);
    QCOMPARE(saved.hasPlaces(), kind == withWindows);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_OpenProfiles::closeThatCannotSave_data()
{
    QTest::addColumn<int>("at");
    // Of the old file's copy and of the new one.
    for (int at = 1; at <= 8; ++at)
        QTest::addRow("operation %d", at) << at;
}

void tst_OpenProfiles::closeThatCannotSave()
{
    QFETCH(int, at);
    const Unlogged unlogged;
    m_session->start(u"http://first/"_s);
    saveAs(u"a.orp"_s, withWindows);
    const QByteArray old = read(u"a.orp"_s);
    add(u"http://second/"_s);
    FileFaults::arm(FileFaults::Kind::ReadOnly, at);
    m_session->choose("mnuFileProfileClose");
    FileFaults::disarm();
    auto *message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!message) {
        // What failed was of no account.
        QCOMPARE(m_session->windows(), 0);
        QVERIFY(read(u"a.orp"_s) != old);
        QCOMPARE(read(u"a.orp~"_s), old);
        return;
    }
    QVERIFY(message->text().contains(file(u"a.orp"_s)));
    message->close();
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(read(u"a.orp"_s), old);
}

void tst_OpenProfiles::closeWithoutAChangeWhoseFileIsGone()
{
    m_session->start(u"http://first/"_s);
    saveAs(u"a.orp"_s, withWindows);
    const QByteArray saved = read(u"a.orp"_s);
    QVERIFY(QFile::remove(file(u"a.orp"_s)));
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(read(u"a.orp"_s), saved);
    QCOMPARE(m_session->windows(), 0);
}

void tst_OpenProfiles::closeTellsWhatIsInTheWay()
{
    const Unlogged unlogged;
    m_session->start(u"http://first/"_s);
    saveAs(u"a.orp"_s, withWindows);
    QVERIFY(QDir().mkpath(file(u"a.orp~/in"_s)));
    add(u"http://second/"_s);
    m_session->choose("mnuFileProfileClose");
    auto *message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY(message && message->text().contains(file(u"a.orp~"_s)));
    message->close();
    QCOMPARE(m_session->windows(), 2);
}

void tst_OpenProfiles::closeWritesThroughNoLink()
{
    const Unlogged unlogged;
    m_session->start(u"http://first/"_s);
    saveAs(u"a.orp"_s, withWindows);
    const QByteArray old = read(u"a.orp"_s);
    QVERIFY(m_session->folder.write(u"Profiles/mine.txt"_s, "mine"));
    QVERIFY(QFile::link(file(u"mine.txt"_s), file(u"a.orp~"_s)));
    add(u"http://second/"_s);
    m_session->choose("mnuFileProfileClose");
    auto *message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY2(message, "the user is told");
    message->close();
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(read(u"a.orp"_s), old);
    QCOMPARE(read(u"mine.txt"_s), QByteArray("mine"));
}

void tst_OpenProfiles::closeOnAFullDisk()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("only the superuser can have a small disk");
    const Unlogged unlogged;
    m_session->start(u"http://first/"_s);
    const QString path = disk.path() + u"/a.orp"_s;
    answer(path, withWindows);
    m_session->choose("mnuFileProfilesSave");
    const QByteArray old = FileUpdate::readAll(path).value_or(QByteArray());
    QVERIFY(!old.isEmpty());
    add(u"http://h/"_s + QString(400'000, u'x'));
    m_session->choose("mnuFileProfileClose");
    auto *message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY(message && message->text().contains(u"room"_s));
    message->close();
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(FileUpdate::readAll(path), old);
}

void tst_OpenProfiles::twoProfiles()
{
    m_session->start(u"http://first/"_s);
    writeAddresses(u"a.orp"_s, {u"http://a/1"_s, u"http://a/2"_s});
    writeAddresses(u"b.orp"_s, {u"http://b/1"_s, u"http://b/2"_s, u"http://b/3"_s});
    QVERIFY(open(u"a.orp"_s));
    QVERIFY(open(u"b.orp"_s));
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile \"b\""_s);
    // The window the user is in says which.
    area().setActiveSubWindow(browserForms().at(1));
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile \"a\""_s);
    // One without a profile: the one used last.
    area().setActiveSubWindow(browserForms().at(0));
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile \"b\""_s);
    area().setActiveSubWindow(browserForms().at(2));
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(locations().mid(1), (QStringList{u"http://b/1"_s, u"http://b/2"_s, u"http://b/3"_s}));
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile \"b\""_s);
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(!m_session->item("mnuFileProfileClose")->isEnabled());
    // The same one twice is two.
    QVERIFY(open(u"a.orp"_s));
    QVERIFY(open(u"a.orp"_s));
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(m_session->windows(), 3);
    QVERIFY(!m_session->folder.exists(u"Profiles/a.orp~"_s));
}

void tst_OpenProfiles::newWindowsBelongWhereTheUserWas()
{
    m_session->start(u"http://first/"_s);
    FakeWebBrowser::made().first()->location = u"http://first/"_s;
    writeAddresses(u"a.orp"_s, {u"http://a/1"_s});
    QVERIFY(open(u"a.orp"_s));
    add(u"http://a/2"_s);
    area().setActiveSubWindow(browserForms().first());
    add(u"http://none/"_s);
    area().setActiveSubWindow(browserForms().at(1));
    m_session->choose("mnuFileProfileSave");
    QCOMPARE(read(u"a.orp"_s), UrlProfile::text({u"http://a/1"_s, u"http://a/2"_s}).toUtf8());
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(locations(), (QStringList{u"http://first/"_s, u"http://none/"_s}));
}

void tst_OpenProfiles::savedWindowsBelongToTheNewProfile()
{
    m_session->start(u"http://first/"_s);
    writeAddresses(u"a.orp"_s, {u"http://a/1"_s});
    QVERIFY(open(u"a.orp"_s));
    saveAs(u"all.orp"_s, addresses);
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile \"all\""_s);
    m_session->choose("mnuFileProfileClose");
    QCOMPARE(m_session->windows(), 0);
    QTRY_VERIFY(!m_session->item("mnuFileProfileClose")->isEnabled());
}

/// It would be saved without the rest.
void tst_OpenProfiles::endedOpeningIsNoProfile()
{
    m_session->start(u"http://first/"_s);
    QStringList many;
    for (int i = 0; i < 200; ++i)
        many.append(u"http://h/"_s + QString::number(i));
    writeAddresses(u"a.orp"_s, many);
    QTimer look;
    connect(&look, &QTimer::timeout, this, [this] {
        if (m_session->windows() >= 5)
            m_session->frame->findChild<QAbstractButton *>(u"cmdStop"_s)->click();
    });
    look.start(0);
    QVERIFY(open(u"a.orp"_s));
    QVERIFY(m_session->windows() < 200);
    captionOf("mnuFileProfileClose");
    QVERIFY(!m_session->item("mnuFileProfileClose")->isEnabled());
}

void tst_OpenProfiles::profileWithoutWindowsIsClosed()
{
    m_session->start(u"http://first/"_s);
    writeAddresses(u"a.orp"_s, {u"http://a/1"_s});
    QVERIFY(open(u"a.orp"_s));
    browserForms().last()->close();
    QCOMPARE(captionOf("mnuFileProfileSave"), u"Save Profile"_s);
    QVERIFY(!m_session->item("mnuFileProfileSave")->isEnabled());
    m_session->frame->run(u"mnuFileProfileSave"_s);
    m_session->frame->run(u"mnuFileProfileClose"_s);
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(read(u"a.orp"_s), UrlProfile::text({u"http://a/1"_s}).toUtf8());
}

void tst_OpenProfiles::itemsWithoutAProfile()
{
    m_session->start(u"http://first/"_s);
    QCOMPARE(captionOf("mnuFileProfileSave"), u"Save Profile"_s);
    QCOMPARE(captionOf("mnuFileProfileClose"), u"Close Profile"_s);
    QVERIFY(!m_session->item("mnuFileProfileSave")->isEnabled());
    QVERIFY(!m_session->item("mnuFileProfileClose")->isEnabled());
    QList<QAction *> items = m_session->item("mnuFile")->menu()->actions();
    QStringList names;
    for (const QAction *item : items.sliced(items.size() - 5))
        names.append(item->objectName());
    QCOMPARE(names,
             (QStringList{u"mnuFileExit"_s, u"mnuFileBar5"_s, u"mnuFileRecentProfiles"_s,
                          u"mnuFileProfileSave"_s, u"mnuFileProfileClose"_s}));
}

QTEST_MAIN(tst_OpenProfiles)
#include "tst_openprofiles.moc"
