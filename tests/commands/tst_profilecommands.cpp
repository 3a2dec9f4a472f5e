#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QStatusBar>
#include <QtTest>

#include "Answer.h"
#include "DeskFile.h"
#include "FakeWebBrowser.h"
#include "FileDialogRequest.h"
#include "FileFaults.h"
#include "ProfilePages.h"
#include "Session.h"
#include "SourceWindow.h"
#include "Unlogged.h"

using namespace Qt::StringLiterals;

/// Saving and opening profiles in the whole program, on windows whose pages the test controls.
class tst_ProfileCommands : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void saveWritesEveryBrowserWindow();
    void dialogsAreAskedAsDescribed_data();
    void dialogsAreAskedAsDescribed();
    void captionsAreTranslated();
    void saveWithoutAWindowAsksNothing();
    void cancelledDialogsDoNothing();
    void nameWithoutExtensionIsWrittenAndNotOpened();
    void openAddsWindowsInOrderAndCascades();
    void emptyAddressIsSkipped();
    void upperCaseEndingIsAccepted();
    void profileWithoutAddressesTellsUnlessQuiet_data();
    void profileWithoutAddressesTellsUnlessQuiet();
    void countWithoutAnyAddressIsOpenedAllTheSame_data();
    void countWithoutAnyAddressIsOpenedAllTheSame();
    void savingKeepsTheAddressesOfWaitingWindows();
    void movedTabsAreSavedInTheirOrder_data();
    void movedTabsAreSavedInTheirOrder();
    void whatCannotBeSavedIsTold_data();
    void whatCannotBeSavedIsTold();
    void fiftyPagesStay();
    void progressCountsUp();
    void stopEndsTheLoading();
    void stopWhileWindowsComeUp();
    void waitingWindowLoadsWhenGoneTo();
    void visitedPageIsKept();
    void closedWindowsAreNotCounted();
    void pageThatNeverComesHoldsUpNobodyElse();
    void closingTheFrameEndsTheOpening();
    void onlyWhatIsInSightOfADeskComes_data();
    void onlyWhatIsInSightOfADeskComes();

private:
    QString profile(const QStringList &addresses, const QString &name = u"x.orp"_s) const;
    QString profileOf(int count) const;
    void answer(const QString &file);
    QString file(const QString &name) const { return m_session->folder.file(name); }
    QStringList locations() const;
    static int pages();
    static int loading();
    static void endLoads();
    QStatusBar &strip() const { return *m_session->frame->findChild<QStatusBar *>(); }
    QString progress() const { return strip().findChild<QLabel *>()->text(); }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Session> m_session;
    QList<FileDialogRequest> m_asked;
};

void tst_ProfileCommands::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_session = std::make_unique<Session>();
    m_asked.clear();
    answer({});
}

void tst_ProfileCommands::cleanup()
{
    setFileDialogAnswerer({});
    m_session.reset();
    m_engine.reset();
}

QString tst_ProfileCommands::profile(const QStringList &addresses, const QString &name) const
{
    QByteArray bytes = "[Profile_URLS]\r\n";
    int number = 0;
    for (const QString &address : addresses)
        bytes += "URL" + QByteArray::number(++number) + '=' + address.toUtf8() + "\r\n";
    bytes += "[URL_Count]\r\nCount=" + QByteArray::number(number) + "\r\n";
    m_session->folder.write(u"Profiles/"_s + name, bytes);
    return file(u"Profiles/"_s + name);
}

QString tst_ProfileCommands::profileOf(int count) const
{
    QStringList addresses;
    for (int i = 1; i <= count; ++i)
        addresses.append(u"http://h/"_s + QString::number(i));
    return profile(addresses);
}

/// What the next dialogs give; nothing cancels them.
void tst_ProfileCommands::answer(const QString &name)
{
    setFileDialogAnswerer(
        [this, name](const FileDialogRequest &request) -> std::optional<FileDialogAnswer> {
            m_asked.append(request);
            if (name.isNull())
                return {};
            return FileDialogAnswer{name, 1};
        });
}

QStringList tst_ProfileCommands::locations() const
{
    QStringList result;
    for (const BrowserWindow *window : browserForms())
        result.append(window->browser()->locationUrl());
    return result;
}

/// How many windows hold a page.
int tst_ProfileCommands::pages()
{
    return int(std::count_if(FakeWebBrowser::made().cbegin(), FakeWebBrowser::made().cend(),
                             [](const FakeWebBrowser *browser) { return !browser->waiting; }));
}

/// How many pages were asked for and have not come.
int tst_ProfileCommands::loading()
{
    return int(std::count_if(FakeWebBrowser::made().cbegin(), FakeWebBrowser::made().cend(),
                             [](const FakeWebBrowser *browser) {
                                 return !browser->waiting && !browser->holdsDocument;
                             }));
}

void tst_ProfileCommands::endLoads()
{
    const QList<FakeWebBrowser *> all = FakeWebBrowser::made();
    for (FakeWebBrowser *browser : all) {
        if (browser->waiting || browser->holdsDocument)
            continue;
        browser->holdsDocument = true;
        emit browser->loadEnded();
    }
}

void tst_ProfileCommands::saveWritesEveryBrowserWindow()
{
    m_session->start(u"http://first/"_s);
    m_session->choose("mnuFileNewBlankPage");
    SourceWindow *source = SourceWindow::openOn(u"<p>source"_s, u"http://first/"_s);
    QVERIFY2(Forms::all().contains(source), "the source viewer is a form among the windows");
    m_session->choose("mnuFileNewBlankPage");
    FakeWebBrowser::made().at(0)->location = u"about:blank"_s;
    FakeWebBrowser::made().at(2)->location = u"http://h/gr\u00fc\u00df?a=b;c#d"_s;
    answer(file(u"Profiles/day.orp"_s));
    m_session->choose("mnuFileProfilesSave");
    QCOMPARE(
        m_session->folder.read(u"Profiles/day.orp"_s),
        "[Profile_URLS]\r\nURL1=about:blank\r\nURL2=\r\nURL3=http://h/gr\xC3\xBC\xC3\x9F?a=b;c#d"
        "\r\n[URL_Count]\r\nCount=3\r\n");
}

void tst_ProfileCommands::dialogsAreAskedAsDescribed_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<bool>("saves");
    QTest::newRow("save") << u"mnuFileProfilesSave"_s << true;
    QTest::newRow("open") << u"mnuFileProfiles"_s << false;
}

void tst_ProfileCommands::dialogsAreAskedAsDescribed()
{
    QFETCH(QString, item);
    QFETCH(bool, saves);
    m_session->start(u"http://first/"_s);
    m_session->frame->menuItem(item)->trigger();
    QCOMPARE(m_asked.size(), 1);
    const FileDialogRequest &request = m_asked.first();
    QCOMPARE(request.kind == FileDialogRequest::Kind::Save, saves);
    QCOMPARE(request.owner, m_session->frame.get());
    QCOMPARE(request.title, u"Open A URL Profile"_s);
    QCOMPARE(request.initDir, file(u"Profiles"_s) + u'/');
    QCOMPARE(request.filters.size(), saves ? 2 : 1);
    QCOMPARE(request.filterIndex, 1);
    QCOMPARE(request.filters.last().description,
             saves ? u"Profile with windows (*.orp)"_s : u"URL Profiles (*.orp)"_s);
    QCOMPARE(request.filters.last().patterns, u"*.orp"_s);
    QCOMPARE(request.filters.first().description, u"URL Profiles (*.orp)"_s);
    QCOMPARE(request.filters.first().patterns, u"*.orp"_s);
    QCOMPARE(request.defaultExt, QString());
}

void tst_ProfileCommands::captionsAreTranslated()
{
    m_session->folder.setSetting(u"Options"_s, u"Language"_s, u"Mine"_s);
    m_session->folder.writeLanguage(
        u"Mine"_s, "[frmProfile]\r\nCaption=Profile\r\nFrameSave=Sichern\r\nFrameOpen=Laden\r\n");
    m_session->start(u"http://first/"_s);
    m_session->choose("mnuFileProfilesSave");
    m_session->choose("mnuFileProfiles");
    QCOMPARE(m_asked.at(0).title, u"Sichern"_s);
    QCOMPARE(m_asked.at(1).title, u"Laden"_s);
    QCOMPARE(m_asked.at(1).filters.first().description, u"Profile (*.orp)"_s);
}

void tst_ProfileCommands::saveWithoutAWindowAsksNothing()
{
    m_session->start(u"http://first/"_s);
    m_session->active()->close();
    QTRY_VERIFY(!m_session->frame->activeChild());
    answer(file(u"Profiles/x.orp"_s));
    m_session->frame->run(u"mnuFileProfilesSave"_s);
    QVERIFY(m_asked.isEmpty());
    QVERIFY(!m_session->folder.exists(u"Profiles/x.orp"_s));
}

void tst_ProfileCommands::cancelledDialogsDoNothing()
{
    m_session->start(u"http://first/"_s);
    // A name from before is still in the dialog when it is cancelled.
    const QString kept = profile({u"http://kept/"_s});
    answer(kept);
    m_session->choose("mnuFileProfiles");
    QCOMPARE(m_session->windows(), 2);
    const QByteArray bytes = m_session->folder.read(u"Profiles/x.orp"_s);
    answer({});
    m_session->choose("mnuFileProfilesSave");
    m_session->choose("mnuFileProfiles");
    QCOMPARE(m_asked.size(), 3);
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(m_session->folder.read(u"Profiles/x.orp"_s), bytes);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_ProfileCommands::nameWithoutExtensionIsWrittenAndNotOpened()
{
    m_session->start(u"http://first/"_s);
    answer(file(u"Profiles/plain"_s));
    m_session->choose("mnuFileProfilesSave");
    QVERIFY(m_session->folder.exists(u"Profiles/plain"_s));
    QVERIFY(!m_session->folder.exists(u"Profiles/plain.txt"_s));
    m_session->choose("mnuFileProfiles");
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_ProfileCommands::openAddsWindowsInOrderAndCascades()
{
    m_session->start(u"http://first/"_s);
    FakeWebBrowser::made().first()->location = u"http://first/"_s;
    QVERIFY(m_session->active()->isMaximized());
    answer(profile({u"http://a/"_s, u"http://b/"_s, u"profile.orp"_s}));
    m_session->choose("mnuFileProfiles");
    QCOMPARE(locations(),
             (QStringList{u"http://first/"_s, u"http://a/"_s, u"http://b/"_s, u"profile.orp"_s}));
    QPoint before(-1, -1);
    for (const BrowserWindow *window : browserForms()) {
        QVERIFY(!window->isMaximized());
        QVERIFY2(window->x() > before.x() && window->y() > before.y(), "one after the other");
        before = window->pos();
    }
    QCOMPARE(m_session->active(), browserForms().last());
    QTRY_COMPARE(pages(), 4);
    QVERIFY(m_session->tabs().isPressed(browserForms().last()->tabKey()));
}

void tst_ProfileCommands::emptyAddressIsSkipped()
{
    m_session->start(u"http://first/"_s);
    QVERIFY(m_session->frame->openProfile(profile({u"http://a/"_s, u""_s, u"http://c/"_s}), false));
    QCOMPARE(locations().mid(1), (QStringList{u"http://a/"_s, u"http://c/"_s}));
}

void tst_ProfileCommands::upperCaseEndingIsAccepted()
{
    m_session->start(u"http://first/"_s);
    QVERIFY(m_session->frame->openProfile(profile({u"http://a/"_s}, u"X.ORP"_s), false));
    QVERIFY(!m_session->frame->openProfile(profile({u"http://a/"_s}, u"x.ini"_s), false));
    QVERIFY(!m_session->frame->openProfile({}, false));
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_session->windows(), 2);
}

void tst_ProfileCommands::profileWithoutAddressesTellsUnlessQuiet_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("zero") << QByteArray("[URL_Count]\r\nCount=0\r\n");
    QTest::newRow("no count") << QByteArray("[Profile_URLS]\r\nURL1=http://a/\r\n");
    QTest::newRow("text") << QByteArray("[Profile_URLS]\r\nURL1=a\r\n[URL_Count]\r\nCount=one\r\n");
    QTest::newRow("rubbish") << QByteArray::fromHex("00ff0d0a5b00fe3d");
    QTest::newRow("missing file") << QByteArray();
    QTest::newRow("folder") << QByteArray("folder");
    QTest::newRow("unreadable file") << QByteArray("link to itself");
}

void tst_ProfileCommands::profileWithoutAddressesTellsUnlessQuiet()
{
    QFETCH(QByteArray, bytes);
    m_session->start(u"http://first/"_s);
    const QString path = file(u"Profiles/x.orp"_s);
    if (bytes == "folder")
        QVERIFY(QDir().mkpath(path));
    else if (bytes == "link to itself")
        QVERIFY(QFileInfo(path).dir().mkpath(u"."_s) && QFile::link(path, path));
    else if (!bytes.isEmpty())
        m_session->folder.write(u"Profiles/x.orp"_s, bytes);
    QVERIFY(!m_session->frame->openProfile(path, true));
    QVERIFY(!QApplication::activeModalWidget());
    Answer ok(QMessageBox::Ok);
    QVERIFY(!m_session->frame->openProfile(path, false));
    QTRY_COMPARE(ok.count(), 1);
    QCOMPARE(ok.text(), u"Error: No URL's In Profile!"_s);
    QCOMPARE(m_session->windows(), 1);
}

void tst_ProfileCommands::countWithoutAnyAddressIsOpenedAllTheSame_data()
{
    QTest::addColumn<QByteArray>("count");
    QTest::newRow("negative") << QByteArray("-3");
    QTest::newRow("no keys") << QByteArray("2000000000");
}

void tst_ProfileCommands::countWithoutAnyAddressIsOpenedAllTheSame()
{
    QFETCH(QByteArray, count);
    m_session->start(u"http://first/"_s);
    m_session->folder.write(u"Profiles/x.orp"_s, "[URL_Count]\r\nCount=" + count + "\r\n");
    QVERIFY(m_session->frame->openProfile(file(u"Profiles/x.orp"_s), false));
    QCOMPARE(m_session->windows(), 1);
    QVERIFY2(!m_session->active()->isMaximized(), "the windows are cascaded");
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(strip().isHidden());
}

void tst_ProfileCommands::savingKeepsTheAddressesOfWaitingWindows()
{
    m_session->start(profileOf(60));
    QCOMPARE(m_session->windows(), 60);
    answer(file(u"Profiles/again.orp"_s));
    m_session->choose("mnuFileProfilesSave");
    QCOMPARE(m_session->folder.read(u"Profiles/again.orp"_s),
             m_session->folder.read(u"Profiles/x.orp"_s));
}

void tst_ProfileCommands::movedTabsAreSavedInTheirOrder_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("same file") << u"x.orp"_s;
    QTest::newRow("another file") << u"again.orp"_s;
}

/// In any file, the windows stand as their tabs do.
void tst_ProfileCommands::movedTabsAreSavedInTheirOrder()
{
    QFETCH(QString, kind);
    m_session->start(profileOf(3));
    QCOMPARE(m_session->windows(), 3);
    // An inner window that is no page has a tab, too.
    m_session->choose("mnuToolsDownloads");
    TabStrip &strip = m_session->tabs();
    const QStringList before = strip.keys();
    QCOMPARE(before.size(), 4);
    QTest::keyClick(strip.tab(before.at(3)), Qt::Key_Left, Qt::ShiftModifier);
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(strip.tab(before.at(0)), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(strip.keys(), (QStringList{before.at(1), before.at(3), before.at(0), before.at(2)}));
    QCOMPARE(locations(), (QStringList{u"http://h/2"_s, u"http://h/1"_s, u"http://h/3"_s}));
    answer(file(u"Profiles/"_s + kind));
    m_session->choose("mnuFileProfilesSave");
    QCOMPARE(m_session->folder.read(u"Profiles/"_s + kind),
             QByteArray("[Profile_URLS]\r\nURL1=http://h/2\r\nURL2=http://h/1\r\n"
                        "URL3=http://h/3\r\n[URL_Count]\r\nCount=3\r\n"));
    // The keys go the same way.
    m_session->frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_session->frame.get()));
    QWindow *frame = m_session->frame->windowHandle();
    QTest::keyClick(frame, Qt::Key_1, Qt::ControlModifier);
    for (const QString &next : {before.at(1), before.at(3), before.at(0), before.at(2)}) {
        const InnerWindow *active = activeInner(*m_session->frame);
        QVERIFY(active);
        QCOMPARE(active->tabKey(), next);
        QTest::keyClick(frame, Qt::Key_Tab, Qt::ControlModifier);
    }
}

void tst_ProfileCommands::whatCannotBeSavedIsTold_data()
{
    QTest::addColumn<FileFaults::Kind>("kind");
    QTest::newRow("full disk") << FileFaults::Kind::FullDisk;
    QTest::newRow("read-only folder") << FileFaults::Kind::ReadOnly;
}

void tst_ProfileCommands::whatCannotBeSavedIsTold()
{
    QFETCH(FileFaults::Kind, kind);
    const QString name = u"Profiles/x.orp"_s;
    const Unlogged unlogged;
    m_session->folder.write(u"Profiles/x.orp"_s, "old");
    m_session->start(u"http://first/"_s);
    answer(file(name));
    FileFaults::arm(kind, 1);
    m_session->choose("mnuFileProfilesSave");
    FileFaults::disarm();
    auto *message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY(message);
    QVERIFY(message->text().contains(file(name)));
    QVERIFY2(message->text().contains("\n\n"_L1), "it says why");
    message->close();
    QCOMPARE(m_session->folder.read(name), "old");
}

void tst_ProfileCommands::fiftyPagesStay()
{
    m_session->start(profileOf(120));
    QCOMPARE(m_session->windows(), 120);
    int most = 0;
    const auto allCame = [&most] {
        most = std::max(most, pages());
        endLoads();
        const QList<FakeWebBrowser *> &all = FakeWebBrowser::made();
        return std::all_of(all.cbegin(), all.cend(),
                           [](const FakeWebBrowser *b) { return !b->navigated.isEmpty(); });
    };
    QTRY_VERIFY(allCame());
    QCOMPARE(most, ProfilePages::mostWhileLoading);
    QTRY_VERIFY(strip().isHidden());
    QTRY_VERIFY(pages() <= ProfilePages::mostPages);
    // Each came once, in order but for the active window, and those without a page kept address.
    for (int i = 0; i < 120; ++i) {
        const QString address = u"http://h/"_s + QString::number(i + 1);
        QCOMPARE(FakeWebBrowser::made().at(i)->navigated, QStringList{address});
        QCOMPARE(FakeWebBrowser::made().at(i)->location, address);
    }
}

void tst_ProfileCommands::progressCountsUp()
{
    m_session->start(profileOf(20));
    QVERIFY(strip().isVisible());
    QCOMPARE(progress(), u"0 of 20 pages loaded"_s);
    QTRY_VERIFY(loading() >= 8);
    const int some = loading();
    endLoads();
    QCOMPARE(progress(), u"%1 of 20 pages loaded"_s.arg(some));
    const auto done = [this] {
        endLoads();
        return strip().isHidden();
    };
    QTRY_VERIFY(done());
}

void tst_ProfileCommands::stopEndsTheLoading()
{
    m_session->start(profileOf(30));
    // Eight in their turn; where the user is may be one of them, or come besides.
    QTRY_VERIFY(loading() >= 8 && !m_session->active()->browser()->isWaiting());
    const int before = pages();
    auto *stop = strip().findChild<QAbstractButton *>();
    QCOMPARE(stop->text(), u"Stop"_s);
    QTest::mouseClick(stop, Qt::LeftButton);
    QVERIFY(strip().isHidden());
    const auto &made = FakeWebBrowser::made();
    QVERIFY2(std::any_of(made.cbegin(), made.cend(),
                         [](const FakeWebBrowser *browser) { return browser->stops > 0; }),
             "what was on its way is stopped");
    QCOMPARE(m_session->windows(), 30);
    endLoads();
    QCoreApplication::processEvents();
    QCOMPARE(pages(), before);
    // A profile opened later counts from the beginning.
    QVERIFY(m_session->frame->openProfile(profileOf(3), false));
    QCOMPARE(progress(), u"0 of 3 pages loaded"_s);
}

void tst_ProfileCommands::stopWhileWindowsComeUp()
{
    m_session->start(u"http://first/"_s);
    QTimer look;
    connect(&look, &QTimer::timeout, this, [this] {
        if (m_session->windows() >= 5)
            strip().findChild<QAbstractButton *>()->click();
    });
    look.start(0);
    QVERIFY(m_session->frame->openProfile(profileOf(200), false));
    QVERIFY(m_session->windows() < 200);
    QVERIFY(strip().isHidden());
}

void tst_ProfileCommands::waitingWindowLoadsWhenGoneTo()
{
    m_session->start(profileOf(30));
    QTRY_VERIFY(loading() >= 8);
    strip().findChild<QAbstractButton *>()->click();
    const QList<BrowserWindow *> windows = browserForms();
    const auto waiting =
        std::find_if(windows.cbegin(), windows.cend(),
                     [](const BrowserWindow *window) { return window->browser()->isWaiting(); });
    QVERIFY(waiting != windows.cend());
    BrowserWindow *window = *waiting;
    const QString address = window->browser()->locationUrl();
    QVERIFY(address.startsWith("http://h/"_L1));
    QTest::mouseClick(m_session->tabs().tab(window->tabKey()), Qt::LeftButton);
    QCOMPARE(m_session->active(), window);
    QCOMPARE(m_session->address().text(), address);
    QTRY_VERIFY(!window->browser()->isWaiting());
}

void tst_ProfileCommands::visitedPageIsKept()
{
    m_session->start(profileOf(120));
    QTRY_VERIFY(loading() >= 8);
    QTest::mouseClick(m_session->tabs().tab(browserForms().first()->tabKey()), Qt::LeftButton);
    const auto allCame = [this] {
        endLoads();
        return strip().isHidden();
    };
    QTRY_VERIFY(allCame());
    QTRY_VERIFY(pages() <= ProfilePages::mostPages);
    QCOMPARE(FakeWebBrowser::made().at(0)->waits, 1);
    QCOMPARE(FakeWebBrowser::made().at(1)->waits, 2);
    QVERIFY(FakeWebBrowser::made().at(1)->waiting);
    QTest::mouseClick(m_session->tabs().tab(browserForms().at(1)->tabKey()), Qt::LeftButton);
    QTRY_VERIFY(!FakeWebBrowser::made().at(1)->waiting);
    QTRY_VERIFY(pages() <= ProfilePages::mostPages);
}

void tst_ProfileCommands::closedWindowsAreNotCounted()
{
    m_session->start(profileOf(20));
    QTRY_VERIFY(loading() >= 8);
    for (int i = 0; i < 5; ++i)
        browserForms().first()->close();
    QTRY_COMPARE(progress(), u"0 of 15 pages loaded"_s);
    for (BrowserWindow *window : browserForms())
        window->close();
    QTRY_VERIFY(strip().isHidden());
}

void tst_ProfileCommands::pageThatNeverComesHoldsUpNobodyElse()
{
    m_session->start(profileOf(20));
    const auto othersCame = [this] {
        const QList<FakeWebBrowser *> all = FakeWebBrowser::made();
        for (FakeWebBrowser *browser : all) {
            if (browser != all.first() && !browser->waiting)
                emit browser->loadEnded();
        }
        return progress() == u"19 of 20 pages loaded"_s;
    };
    QTRY_VERIFY(othersCame());
    QVERIFY(strip().isVisible());
    browserForms().first()->close();
    QTRY_VERIFY(strip().isHidden());
}

void tst_ProfileCommands::closingTheFrameEndsTheOpening()
{
    m_session->start(u"http://first/"_s);
    QTimer look;
    connect(&look, &QTimer::timeout, this, [this] {
        if (m_session->windows() >= 5)
            m_session->frame->close();
    });
    look.start(0);
    m_session->frame->openProfile(profileOf(200), false);
    QVERIFY(!m_session->frame->isVisible());
    QCOMPARE(m_session->windows(), 0);
}

void tst_ProfileCommands::onlyWhatIsInSightOfADeskComes_data()
{
    QTest::addColumn<bool>("isMaximized");
    QTest::addColumn<int>("come");
    QTest::newRow("two side by side") << false << 2;
    QTest::newRow("maximized") << true << 1;
}

void tst_ProfileCommands::onlyWhatIsInSightOfADeskComes()
{
    QFETCH(const bool, isMaximized);
    QFETCH(const int, come);
    constexpr int count = 100;
    Desk desk;
    for (int i = 0; i < count; ++i) {
        DeskWindow window;
        window.address = u"http://h/"_s + QString::number(i);
        window.place = QRect(i + 1 == count ? 320 : 0, 0, 310, 300);
        window.order = i;
        window.title = u"kept"_s;
        desk.windows.append(window);
    }
    desk.active = count - 1;
    if (isMaximized)
        desk.windows.last().state = DeskWindow::State::Maximized;
    QVERIFY(QDir().mkpath(file(u"Profiles"_s)));
    QVERIFY(DeskFile::save(file(u"Profiles/d.orp"_s), desk));
    m_session->start(u"http://first/"_s);
    QVERIFY(m_session->frame->openProfile(file(u"Profiles/d.orp"_s), false));
    QVERIFY(strip().isHidden());
    // The one that was there has its own.
    QTRY_COMPARE(pages(), come + 1);
    endLoads();
    for (int i = 0; i < count; ++i)
        QCoreApplication::processEvents();
    QCOMPARE(pages(), come + 1);
    QVERIFY(!browserForms().last()->isAsleep());
    QVERIFY(browserForms().at(1)->isAsleep());
    QCOMPARE(browserForms().at(1)->windowTitle(), u"kept"_s);
}

QTEST_MAIN(tst_ProfileCommands)
#include "tst_profilecommands.moc"
