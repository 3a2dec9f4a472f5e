#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebEngineView>

#include "../Session.h"
#include "DesktopFileDialog.h"
#include "DownloadList.h"
#include "EngineTest.h"
#include "PageQuestionBox.h"
#include "QtWebBrowser.h"
#include "Unlogged.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;
using State = Download::State;

namespace {
/// Sends the first half of a file, and the rest when it is told to.
class HalfServer {
public:
    static constexpr int half = 100'000;

    HalfServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            // The engine opens some that it does not use.
            QTcpSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (m_socket || !socket->readAll().startsWith("GET /big.bin"))
                    return;
                m_socket = socket;
                m_socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/x-parcel\r\n"
                                "Content-Disposition: attachment; filename=big.bin\r\n"
                                "Content-Length: "
                                + QByteArray::number(2 * half) + "\r\n\r\n"
                                + QByteArray(half, 'a'));
            });
        });
    }
    QString url() const { return u"http://127.0.0.1:%1/big.bin"_s.arg(m_server.serverPort()); }
    void sendRest()
    {
        m_socket->write(QByteArray(half, 'b'));
        m_socket->disconnectFromHost();
    }

private:
    QTcpServer m_server;
    QPointer<QTcpSocket> m_socket;
};

constexpr int lineHeight = 40;
}

/// The user says where a download goes.
class tst_saveas : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void shiftAsks_data();
    void shiftAsks();
    void openerIsThePageOfOrigin_data();
    void openerIsThePageOfOrigin();
    void shiftAndEnterAsk();
    void plainClickDoesNotAsk();
    void shiftOnAPageOpensAWindow();
    void menuAsks_data();
    void menuAsks();
    void menuTellsTheServerThePage_data();
    void menuTellsTheServerThePage();
    void menuIsNotTakenOver();
    void menuAndPageAtOnce_data();
    void menuAndPageAtOnce();
    void menuBringsNothing();
    void menuByKeyboard();
    void refusingCancels();
    void answerComesFirst();
    void fileComesFirst();
    void replacedOnlyByWhatIsWhole();
    void cancelledWhileAsked();
    void windowClosesWhileAsked();
    void programEndsWhileAsked();
    void chosenFolderGoes();
    void shownPdfIsSavedUnasked_data();
    void shownPdfIsSavedUnasked();
    void oneQuestionForAClick();

private:
    void open(const QByteArray &body);
    QWidget *page() const
    {
        return m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    }
    /// Of the lines that the page has.
    void click(int line, Qt::KeyboardModifiers modifiers,
               Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(page(), button, modifiers,
                          QPoint(10, line * lineHeight + lineHeight / 2));
    }
    static QList<DesktopFileDialog *> dialogs()
    {
        QList<DesktopFileDialog *> shown;
        for (QWidget *each : QApplication::topLevelWidgets()) {
            auto *dialog = qobject_cast<DesktopFileDialog *>(each);
            if (dialog && dialog->isVisible())
                shown.append(dialog);
        }
        return shown;
    }
    static QString nameIn(DesktopFileDialog *dialog)
    {
        return dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text();
    }
    /// What the page's menu has for its first line.
    void takeFromMenu(const QString &caption)
    {
        click(0, {}, Qt::RightButton);
        QMenu *menu = nullptr;
        QTRY_VERIFY((menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())));
        QAction *entryOfMenu = nullptr;
        for (QAction *each : menu->actions()) {
            if (each->text().remove(u'&') == caption)
                entryOfMenu = each;
        }
        QVERIFY(entryOfMenu);
        menu->close();
        entryOfMenu->trigger();
    }
    void run(const QString &script) const
    {
        qobject_cast<QtWebBrowser *>(m_session->active()->browser())->page()->runJavaScript(script);
    }
    static const Download *named(const QString &name)
    {
        const QList<Download> &all = downloadList().all();
        const auto found = std::find_if(
            all.cbegin(), all.cend(), [&name](const Download &each) { return each.name == name; });
        return found == all.cend() ? nullptr : &*found;
    }
    void choose(const QString &path) const
    {
        QTRY_COMPARE(dialogs().size(), 1);
        dialogs().first()->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
        QVERIFY(QMetaObject::invokeMethod(dialogs().first(), "accept"));
        QTRY_VERIFY(dialogs().isEmpty());
    }
    void focusLink() const
    {
        page()->setFocus();
        auto *browser = qobject_cast<QtWebBrowser *>(m_session->active()->browser());
        bool isFocused = false;
        browser->page()->runJavaScript(u"document.querySelector('a').focus()"_s,
                                       [&](const QVariant &) { isFocused = true; });
        QTRY_VERIFY(isFocused);
    }
    const Download &entry() const { return downloadList().all().first(); }
    QString place(const QString &name) const { return m_places->filePath(name); }
    static QString downloads()
    {
        return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    }
    static QStringList entries(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<QTemporaryDir> m_places;
    const Unlogged m_unlogged;
};

void tst_saveas::init()
{
    m_places = std::make_unique<QTemporaryDir>();
    m_session = std::make_unique<Session>();
    TestServer::Reply file;
    file.type = "application/x-parcel";
    file.body = "bytes";
    file.headers = {{"Content-Disposition", "attachment; filename=named.bin"}};
    m_session->server.reply("/attached", file);
    file.headers.clear();
    m_session->server.reply("/file.bin", file);
    file.type = "image/png";
    m_session->server.reply("/picture.png", file);
    m_session->server.redirect("/moved", "/attached");
    m_session->server.redirect("/lost", "/attached#part");
}

void tst_saveas::cleanup()
{
    QStringList ids;
    for (const Download &each : downloadList().all())
        ids.append(each.id);
    downloadList().remove(ids);
    m_session.reset();
    QTRY_VERIFY(dialogs().isEmpty());
    QTRY_VERIFY(QDir(downloads()).removeRecursively());
}

/// A page with lines of one height.
void tst_saveas::open(const QByteArray &body)
{
    m_session->server.page("/home",
                           "<style>body{margin:0} a,p,img{display:block;margin:0;height:"
                               + QByteArray::number(lineHeight)
                               + "px;width:300px}</style><script>onclick = e => { if (e.target =="
                                 " document.body) document.title = 'x' + e.clientX }</script>"
                               + body);
    m_session->start();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    // The engine drops what is done to a page before that is painted.
    const auto clickBeside = [this](int x) {
        QTest::mouseClick(page(), Qt::LeftButton, {}, QPoint(x, lineHeight / 2));
    };
    const auto takesClicks = [&] {
        clickBeside(350);
        return m_session->active()->windowTitle() == "x350"_L1;
    };
    QTRY_VERIFY(takesClicks());
    // None of these is still on its way when the last has come.
    clickBeside(360);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"x360"_s);
}

void tst_saveas::shiftAsks_data()
{
    QTest::addColumn<QByteArray>("link");
    QTest::addColumn<QString>("name");
    QTest::newRow("attachment") << QByteArray("<a href=/attached>x</a>") << u"named.bin"_s;
    QTest::newRow("file") << QByteArray("<a href=/file.bin>x</a>") << u"file.bin"_s;
    QTest::newRow("named by the page")
        << QByteArray("<a href=/file.bin download=page.bin>x</a>") << u"page.bin"_s;
    QTest::newRow("after a redirection") << QByteArray("<a href=/moved>x</a>") << u"named.bin"_s;
    QTest::newRow("window of its own")
        << QByteArray("<a href=/attached target=_blank>x</a>") << u"named.bin"_s;
    QTest::newRow("script's way") << QByteArray("<p onclick=\"location = '/attached'\">x</p>")
                                  << u"named.bin"_s;
    QTest::newRow("script's window")
        << QByteArray("<p onclick=\"window.open('/attached')\">x</p>") << u"named.bin"_s;
}

void tst_saveas::shiftAsks()
{
    QFETCH(QByteArray, link);
    QFETCH(QString, name);
    open(link);
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    QCOMPARE(nameIn(dialogs().first()), name);
    QVERIFY(!QApplication::activeModalWidget());
    // The window that was made for it has nothing to show.
    QTRY_COMPARE(m_session->windows(), 1);
    choose(place(u"mine.txt"_s));
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(entry().path(), place(u"mine.txt"_s));
    QCOMPARE(read(place(u"mine.txt"_s)), QByteArray("bytes"));
    QTRY_COMPARE(entries(downloads()), QStringList());
    QCOMPARE(downloadList().all().size(), 1);
    QCOMPARE(entry().page, QUrl(m_session->server.url(u"/home"_s)));
}

/// The window that is made for a file has nothing of its own to come from.
void tst_saveas::openerIsThePageOfOrigin_data()
{
    QTest::addColumn<QByteArray>("markup");
    QTest::addColumn<bool>("leavesTrace");
    const QByteArray link = "<a href=/attached target=_blank>x</a>";
    QTest::newRow("window of its own") << link << true;
    QTest::newRow("kept out of the history") << link << false;
    QTest::newRow("script's window")
        << QByteArray("<p onclick=\"window.open('/attached')\">x</p>") << true;
    QTest::newRow("empty window of a script")
        << QByteArray("<p onclick=\"window.open('').location = '/attached'\">x</p>") << true;
}

void tst_saveas::openerIsThePageOfOrigin()
{
    QFETCH(QByteArray, markup);
    QFETCH(bool, leavesTrace);
    open(markup);
    auto *browser = qobject_cast<QtWebBrowser *>(m_session->active()->browser());
    browser->page()->setIsListed(leavesTrace);
    click(0, {});
    QTRY_COMPARE(downloadList().all().size(), 1);
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(entry().page, leavesTrace ? QUrl(m_session->server.url(u"/home"_s)) : QUrl());
    QCOMPARE(entry().leavesTrace, leavesTrace);
}

void tst_saveas::shiftAndEnterAsk()
{
    open("<a href=/attached>x</a>");
    focusLink();
    QTest::keyClick(page(), Qt::Key_Return, Qt::ShiftModifier);
    choose(place(u"mine"_s));
    QTRY_COMPARE(read(place(u"mine"_s)), QByteArray("bytes"));
}

void tst_saveas::plainClickDoesNotAsk()
{
    open("<p>x</p><a href=/attached>x</a>");
    // Followed nothing; the click after it counts.
    click(0, Qt::ShiftModifier);
    click(1, {});
    QTRY_COMPARE(entries(downloads()), QStringList(u"named.bin"_s));
    QVERIFY(dialogs().isEmpty());
}

void tst_saveas::shiftOnAPageOpensAWindow()
{
    m_session->server.page("/two", "<title>Two</title><a id=file href=/attached>x</a>");
    open("<a href=/two>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/two"_s)));
    // What that page does by itself the click has not asked for.
    auto *browser = qobject_cast<QtWebBrowser *>(m_session->active()->browser());
    browser->page()->runJavaScript(u"document.getElementById('file').click()"_s);
    QTRY_COMPARE(entries(downloads()), QStringList(u"named.bin"_s));
    QVERIFY(dialogs().isEmpty());
}

void tst_saveas::menuAsks_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("name");
    QTest::newRow("link") << QByteArray("<a href=/attached>x</a>") << u"Save Link As..."_s
                          << u"named.bin"_s;
    QTest::newRow("link to a page")
        << QByteArray("<a href=/one>x</a>") << u"Save Link As..."_s << u"one.html"_s;
    QTest::newRow("redirected link")
        << QByteArray("<a href=/moved>x</a>") << u"Save Link As..."_s << u"named.bin"_s;
    QTest::newRow("redirected to a place in it")
        << QByteArray("<a href=/lost>x</a>") << u"Save Link As..."_s << u"named.bin"_s;
    QTest::newRow("picture") << QByteArray("<img src=/picture.png>") << u"Save Image As..."_s
                             << u"picture.png"_s;
    QTest::newRow("film") << QByteArray("<video src=/file.bin width=300 height=40 controls>")
                          << u"Save Media As..."_s << u"file.bin"_s;
}

void tst_saveas::menuAsks()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, caption);
    QFETCH(QString, name);
    open(element);
    takeFromMenu(caption);
    QTRY_COMPARE(dialogs().size(), 1);
    QCOMPARE(nameIn(dialogs().first()), name);
    QVERIFY(dialogs().first()->windowTitle().endsWith(
        u"http://127.0.0.1:%1"_s.arg(m_session->server.port())));
    choose(place(u"mine"_s));
    QTRY_COMPARE(entry().state, State::Done);
    QVERIFY(QFileInfo(place(u"mine"_s)).size() > 0);
    QTRY_COMPARE(entries(downloads()), QStringList());
    QCOMPARE(downloadList().all().size(), 1);
    QCOMPARE(entry().page, QUrl(m_session->server.url(u"/home"_s)));
    QVERIFY(!entry().address.hasFragment() || entry().address.fragment() == "part"_L1);
}

void tst_saveas::menuTellsTheServerThePage_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("referrer");
    QTest::newRow("same site") << u"127.0.0.1"_s << u"/home"_s;
    QTest::newRow("another site") << u"localhost"_s << u"/"_s;
}

/// As engines do, where nobody says otherwise.
void tst_saveas::menuTellsTheServerThePage()
{
    QFETCH(QString, host);
    QFETCH(QString, referrer);
    const QString address = m_session->server.url(u"/attached"_s, host);
    open("<a href=" + address.toUtf8() + ">x</a>");
    takeFromMenu(u"Save Link As..."_s);
    choose(place(u"mine"_s));
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(m_session->server.requests("/attached").first().headers.value("referer"),
             m_session->server.url(referrer).toUtf8());
}

/// What the page itself begins while the server of the link still waits is no answer to the menu.
void tst_saveas::menuIsNotTakenOver()
{
    const QByteArray link = m_session->server.url(u"/attached"_s, u"localhost"_s).toUtf8();
    m_session->server.hold("/attached");
    open("<a href=" + link
         + ">x</a><script>for (const kind of ['mousedown', 'contextmenu'])"
           "addEventListener(kind, () => setTimeout(() => { location = '/file.bin' }, "
           "50))</script>");
    takeFromMenu(u"Save Link As..."_s);
    QTRY_COMPARE(m_session->server.count("/attached"), 1);
    run(u"setTimeout(() => { location = '/file.bin?late' }, 50)"_s);
    QTRY_VERIFY(named(u"file.bin"_s) && named(u"file.bin"_s)->state == State::Done);
    QTRY_VERIFY(named(u"file (1).bin"_s) && named(u"file (1).bin"_s)->state == State::Done);
    QVERIFY(dialogs().isEmpty());
    m_session->server.release();
    QTRY_COMPARE(dialogs().size(), 1);
    QCOMPARE(nameIn(dialogs().first()), u"named.bin"_s);
    QVERIFY(dialogs().first()->windowTitle().endsWith(
        u"http://localhost:%1"_s.arg(m_session->server.port())));
    choose(place(u"mine"_s));
    QTRY_COMPARE(read(place(u"mine"_s)), QByteArray("bytes"));
}

void tst_saveas::menuAndPageAtOnce_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("menuIsFirst");
    QTest::newRow("menu first") << u"/twice"_s << true;
    QTest::newRow("page first") << u"/twice"_s << false;
    QTest::newRow("menu first, redirected") << u"/sent"_s << true;
    QTest::newRow("page first, redirected") << u"/sent"_s << false;
}

/// Two of one address, and each goes its own way.
void tst_saveas::menuAndPageAtOnce()
{
    QFETCH(QString, path);
    QFETCH(bool, menuIsFirst);
    TestServer &server = m_session->server;
    const auto answered = std::make_shared<int>(0);
    server.handle("/twice", [answered](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.type = "application/x-parcel";
        reply.body = ++*answered == 1 ? "first" : "second";
        reply.headers = {{"Cache-Control", "no-store"}};
        return reply;
    });
    server.redirect("/sent", "/twice");
    server.hold("/twice");
    open("<a href=" + path.toUtf8() + ">x</a>");
    const QString byPage = u"location = '%1'"_s.arg(path);
    if (!menuIsFirst) {
        run(byPage);
        QTRY_COMPARE(server.count("/twice"), 1);
    }
    takeFromMenu(u"Save Link As..."_s);
    QTRY_COMPARE(server.count("/twice"), menuIsFirst ? 1 : 2);
    if (menuIsFirst) {
        run(byPage);
        QTRY_COMPARE(server.count("/twice"), 2);
    }
    server.release();
    choose(place(u"mine"_s));
    QTRY_COMPARE(read(place(u"mine"_s)), QByteArray(menuIsFirst ? "first" : "second"));
    QTRY_COMPARE(downloadList().all().size(), 2);
    // Its name may be another one: the plain one was the menu's until its place was chosen.
    const auto isDone = [](const Download &each) { return each.state == State::Done; };
    QTRY_VERIFY(std::all_of(downloadList().all().cbegin(), downloadList().all().cend(), isDone));
    QCOMPARE(downloadList().all().size(), 2);
    for (const Download &each : downloadList().all()) {
        if (each.folder == downloads())
            QCOMPARE(read(each.path()), QByteArray(menuIsFirst ? "second" : "first"));
        else
            QCOMPARE(each.path(), place(u"mine"_s));
    }
}

void tst_saveas::menuBringsNothing()
{
    open("<a href=/nowhere>x</a>");
    takeFromMenu(u"Save Link As..."_s);
    QTRY_COMPARE(downloadList().all().size(), 1);
    QTRY_COMPARE(entry().state, State::Failed);
    QCOMPARE(entry().problem, Download::Problem::ServerRefused);
    QVERIFY(dialogs().isEmpty());
    QTRY_COMPARE(entries(downloads()), QStringList());
}

void tst_saveas::menuByKeyboard()
{
    open("<a href=/attached>x</a>");
    focusLink();
    QTest::keyClick(page(), Qt::Key_F10, Qt::ShiftModifier);
    QTRY_VERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
    QApplication::activePopupWidget()->close();
}

void tst_saveas::refusingCancels()
{
    open("<a href=/attached>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    // All is there by now.
    QTRY_COMPARE(entry().received, 5);
    dialogs().first()->reject();
    QTRY_COMPARE(entry().state, State::Cancelled);
    QTRY_COMPARE(entries(downloads()), QStringList());
    QVERIFY(dialogs().isEmpty());
}

void tst_saveas::answerComesFirst()
{
    HalfServer server;
    open("<a href='" + server.url().toUtf8() + "'>x</a>");
    click(0, Qt::ShiftModifier);
    choose(place(u"mine"_s));
    QCOMPARE(entry().path(), place(u"mine"_s));
    QTRY_VERIFY(entry().received > 0);
    QCOMPARE(entry().state, State::Running);
    QVERIFY(!QFileInfo::exists(place(u"mine"_s)));
    server.sendRest();
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(QFileInfo(place(u"mine"_s)).size(), 2 * HalfServer::half);
}

void tst_saveas::fileComesFirst()
{
    HalfServer server;
    open("<a href='" + server.url().toUtf8() + "'>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    server.sendRest();
    QTRY_COMPARE(entry().state, State::Unplaced);
    QCOMPARE(entry().received, 2 * HalfServer::half);
    QCOMPARE(entries(place({})), QStringList());
    choose(place(u"mine"_s));
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(QFileInfo(place(u"mine"_s)).size(), 2 * HalfServer::half);
}

void tst_saveas::replacedOnlyByWhatIsWhole()
{
    QFile old(place(u"mine"_s));
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    HalfServer server;
    open("<a href='" + server.url().toUtf8() + "'>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    QTimer look;
    connect(&look, &QTimer::timeout, &look, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->button(QMessageBox::Yes)->click();
    });
    look.start(10);
    choose(place(u"mine"_s));
    QTRY_VERIFY(entry().received > 0);
    QCOMPARE(read(place(u"mine"_s)), QByteArray("old"));
    server.sendRest();
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(QFileInfo(place(u"mine"_s)).size(), 2 * HalfServer::half);
    QCOMPARE(entries(place({})), QStringList(u"mine"_s));
}

void tst_saveas::cancelledWhileAsked()
{
    HalfServer server;
    open("<a href='" + server.url().toUtf8() + "'>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    downloadList().cancel(entry().id);
    QTRY_VERIFY(dialogs().isEmpty());
    QCOMPARE(entry().state, State::Cancelled);
    QTRY_COMPARE(entries(downloads()), QStringList());
}

void tst_saveas::windowClosesWhileAsked()
{
    HalfServer server;
    open("<a href='" + server.url().toUtf8() + "'>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    server.sendRest();
    choose(place(u"mine"_s));
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(QFileInfo(place(u"mine"_s)).size(), 2 * HalfServer::half);
}

/// Nobody has refused it: it goes where all go.
void tst_saveas::programEndsWhileAsked()
{
    open("<a href=/attached>x</a>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    QTRY_COMPARE(entry().received, 5);
    m_session->end();
    QTRY_COMPARE(entry().state, State::Done);
    QCOMPARE(entries(downloads()), QStringList(u"named.bin"_s));
}

void tst_saveas::chosenFolderGoes()
{
    HalfServer server;
    open("<a href='" + server.url().toUtf8() + "'>x</a>");
    click(0, Qt::ShiftModifier);
    QVERIFY(QDir().mkpath(place(u"sub"_s)));
    choose(place(u"sub/mine"_s));
    QVERIFY(QDir(place(u"sub"_s)).removeRecursively());
    server.sendRest();
    QTRY_COMPARE(entry().state, State::Failed);
    QCOMPARE(entry().problem, Download::Problem::FolderGone);
    QVERIFY(!QFileInfo::exists(place(u"sub"_s)));
}

void tst_saveas::shownPdfIsSavedUnasked_data()
{
    QTest::addColumn<QByteArray>("caching");
    QTest::addColumn<int>("requests");
    QTest::newRow("nothing said") << QByteArray() << 1;
    QTest::newRow("may be kept") << QByteArray("max-age=1000") << 1;
    QTest::newRow("to be asked again") << QByteArray("no-cache") << 1;
    // The viewer has the only copy, and no script reaches it there.
    QTest::newRow("not to be kept") << QByteArray("no-store") << 2;
}

/// What has the server's leave to be kept is not fetched a second time.
void tst_saveas::shownPdfIsSavedUnasked()
{
    QFETCH(QByteArray, caching);
    QFETCH(int, requests);
    TestServer::Reply paper;
    paper.type = "application/pdf";
    paper.body = "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj 2 0 obj<</Type/Pages/Kids"
                 "[3 0 R]/Count 1>>endobj 3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]>>"
                 "endobj\ntrailer<</Root 1 0 R>>";
    if (!caching.isEmpty())
        paper.headers = {{"Cache-Control", caching}};
    m_session->server.reply("/paper.pdf", paper);
    open("x");
    const QString address = m_session->server.url(u"/paper.pdf"_s);
    m_session->frame->navigateActive(address);
    QTRY_VERIFY(m_session->shows(address));
    QCOMPARE(m_session->server.count("/paper.pdf"), 1);
    m_session->choose("mnuFileSaveAs");
    QFileDialog *dialog = nullptr;
    QTRY_VERIFY((dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())));
    dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(place(u"mine.pdf"_s));
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QTRY_COMPARE(read(place(u"mine.pdf"_s)), paper.body);
    QCOMPARE(m_session->server.count("/paper.pdf"), requests);
}

/// Files of its window may come after that has gone: the last of the functions, for that reason.
void tst_saveas::oneQuestionForAClick()
{
    open("<p onclick=\"for (let i = 0; i < 1000; ++i) { const a = document.createElement('a');"
         "a.href = '/file.bin'; a.download = i + '.bin'; document.body.append(a); a.click(); }\">"
         "x</p>");
    click(0, Qt::ShiftModifier);
    QTRY_COMPARE(dialogs().size(), 1);
    // The others are asked about as those of any page.
    QTRY_VERIFY(!m_session->frame->findChildren<PageQuestionBox *>().isEmpty());
    QTRY_VERIFY(entries(downloads()).contains(u"1.bin"_s));
    QCOMPARE(dialogs().size(), 1);
    choose(place(u"mine"_s));
    QTRY_COMPARE(read(place(u"mine"_s)), QByteArray("bytes"));
    QVERIFY(dialogs().isEmpty());
}

ORVANE_ENGINE_TEST_MAIN(tst_saveas)
#include "tst_saveas.moc"
