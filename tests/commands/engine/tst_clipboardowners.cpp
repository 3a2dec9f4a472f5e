#include <QElapsedTimer>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QProcess>
#include <QWebEngineView>
#include <csignal>
#include <optional>

#include "../Session.h"
#include "EngineTest.h"

using namespace Qt::StringLiterals;

/// The clipboard while other programs own it: each is a second process on the same display, this
/// program itself started with "--own KIND".
class tst_ClipboardOwners : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void textOfAnotherProgram();
    void textWithItsEncodingOnly_data();
    void textWithItsEncodingOnly();
    void textThatStaysWhenTheProgramEnds();
    void ownerThatWasKilled();
    void ownerThatDoesNotAnswer();
    void ownerIsAskedWhenTheMenuOpens();
    void ownerThatDiesWhenAsked();
    void hugeText();
    void hugeTextIntoAPage();
    void pageTextReachesOthersRich();
    void imageOnly();

private:
    void own(const QString &kind);
    void endOwner();
    void openFieldPage();
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    QVariant ask(const QString &script) const;
    QString field() const { return ask(u"f.value"_s).toString(); }
    void openMenus() const;
    int pasteStatus() const { return m_session->active()->browser()->queryStatus(OleCmd::Paste); }
    void focusAddress(const QString &text) const;
    void useEverything();

    std::unique_ptr<Session> m_session;
    std::unique_ptr<QProcess> m_owner;
    /// It was killed, and the display has told so.
    bool m_ownerIsGone = false;
};

void tst_ClipboardOwners::init()
{
    m_session = std::make_unique<Session>();
    openFieldPage();
}

void tst_ClipboardOwners::cleanup()
{
    endOwner();
    m_session.reset();
}

void tst_ClipboardOwners::openFieldPage()
{
    m_session->server.page("/field", "<title>Field</title><textarea id=f>one</textarea>");
    m_session->start(m_session->server.url(u"/field"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/field"_s)));
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    m_session->active()->browser()->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(ask(u"document.hasFocus()"_s).toBool(), 20000);
    ask(u"f.focus(), f.select()"_s);
    QTRY_COMPARE(pasteStatus(), 3);
}

QVariant tst_ClipboardOwners::ask(const QString &script) const
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    page().runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 60000))
        return u"no answer"_s;
    return **answer;
}

/// Starts a program that owns the clipboard, and waits until this one knows.
void tst_ClipboardOwners::own(const QString &kind)
{
    QSignalSpy changed(QApplication::clipboard(), &QClipboard::dataChanged);
    m_owner = std::make_unique<QProcess>();
    m_owner->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_owner->start(QCoreApplication::applicationFilePath(), {u"--own"_s, kind});
    QSignalSpy told(m_owner.get(), &QProcess::readyReadStandardOutput);
    QTRY_VERIFY_WITH_TIMEOUT(!told.isEmpty(), 20000);
    QTRY_VERIFY(!changed.isEmpty());
    QVERIFY(!QApplication::clipboard()->ownsClipboard());
}

void tst_ClipboardOwners::endOwner()
{
    if (!m_owner)
        return;
    const bool owned = !m_ownerIsGone && !QApplication::clipboard()->ownsClipboard();
    m_ownerIsGone = false;
    QSignalSpy changed(QApplication::clipboard(), &QClipboard::dataChanged);
    m_owner->kill();
    m_owner->waitForFinished();
    m_owner.reset();
    // What the display tells of it late must not be taken for a change of what comes next.
    if (owned)
        QTRY_VERIFY(!changed.isEmpty());
}

void tst_ClipboardOwners::openMenus() const
{
    for (const char *name : {"mnuFile", "mnuFileNew", "mnuEdit"}) {
        auto *menu = m_session->frame->findChild<QMenu *>(QLatin1String(name));
        menu->popup(m_session->frame->mapToGlobal(QPoint(10, 10)));
        menu->close();
    }
}

void tst_ClipboardOwners::focusAddress(const QString &text) const
{
    auto *edit = m_session->address().findChild<QLineEdit *>();
    edit->setFocus();
    QTRY_VERIFY(edit->hasFocus());
    edit->setText(text);
}

/// Whatever asks the clipboard, from the page and from the address bar.
void tst_ClipboardOwners::useEverything()
{
    openMenus();
    pasteStatus();
    m_session->choose("mnuEditPaste");
    focusAddress(u"address"_s);
    m_session->choose("mnuEditPaste");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
}

void tst_ClipboardOwners::textOfAnotherProgram()
{
    own(u"text"_s);
    openMenus();
    QVERIFY(m_session->item("mnuFileNewFromClipboard")->isEnabled());
    QTRY_COMPARE(pasteStatus(), 3);
    m_session->choose("mnuEditPaste");
    QTRY_COMPARE(field(), u"of another program"_s);
    focusAddress(u"x"_s);
    m_session->choose("mnuEditSelectAll");
    m_session->choose("mnuEditPaste");
    QCOMPARE(m_session->address().text(), u"of another program"_s);
}

void tst_ClipboardOwners::textWithItsEncodingOnly_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("menu") << false;
    QTest::newRow("key") << true;
}

void tst_ClipboardOwners::textWithItsEncodingOnly()
{
    QFETCH(bool, byKey);
    const auto paste = [&] {
        if (byKey)
            QTest::keyClick(m_session->frame->windowHandle(), Qt::Key_V, Qt::ControlModifier);
        else
            m_session->choose("mnuEditPaste");
    };
    own(u"encoded"_s);
    openMenus();
    QVERIFY(m_session->item("mnuFileNewFromClipboard")->isEnabled());
    QTRY_COMPARE(pasteStatus(), 3);
    paste();
    QTRY_COMPARE(field(), u"of another program"_s);
    focusAddress(u"x"_s);
    m_session->choose("mnuEditSelectAll");
    endOwner();
    own(u"encoded"_s);
    paste();
    QCOMPARE(m_session->address().text(), u"of another program"_s);
}

void tst_ClipboardOwners::textThatStaysWhenTheProgramEnds()
{
    own(u"text"_s);
    QApplication::clipboard()->setText(QApplication::clipboard()->text());
    endOwner();
    m_session->choose("mnuEditPaste");
    QTRY_COMPARE(field(), u"of another program"_s);
}

void tst_ClipboardOwners::ownerThatWasKilled()
{
    own(u"text"_s);
    endOwner();
    useEverything();
    QCOMPARE(field(), u"one"_s);
    openMenus();
    QVERIFY(!m_session->item("mnuFileNewFromClipboard")->isEnabled());
}

/// The toolkit waits five seconds for an answer. That happens once for each owner, not once for
/// each look.
void tst_ClipboardOwners::ownerThatDoesNotAnswer()
{
    own(u"hang"_s);
    openMenus();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 10; ++i) {
        openMenus();
        QVERIFY(pasteStatus() != 3);
        m_session->choose("mnuEditPaste");
    }
    focusAddress(u"address"_s);
    m_session->choose("mnuEditPaste");
    QVERIFY2(clock.elapsed() < 5000, "the owner was asked again");
    QVERIFY(!m_session->item("mnuFileNewFromClipboard")->isEnabled());
    QCOMPARE(field(), u"one"_s);
    endOwner();
    own(u"text"_s);
    openMenus();
    QVERIFY(m_session->item("mnuFileNewFromClipboard")->isEnabled());
}

/// What the frame does by itself asks nobody.
void tst_ClipboardOwners::ownerIsAskedWhenTheMenuOpens()
{
    const QAction &item = *m_session->item("mnuFileNewFromClipboard");
    own(u"die"_s);
    QVERIFY(item.isEnabled());
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    QVERIFY(item.isEnabled());
    QCOMPARE(m_owner->state(), QProcess::Running);
    openMenus();
    QVERIFY(m_owner->waitForFinished());
    m_ownerIsGone = true;
    QVERIFY(!item.isEnabled());
}

void tst_ClipboardOwners::ownerThatDiesWhenAsked()
{
    own(u"die"_s);
    openMenus();
    pasteStatus();
    m_session->choose("mnuEditPaste");
    QVERIFY(m_owner->waitForFinished());
    QCOMPARE(m_owner->exitStatus(), QProcess::CrashExit);
    m_ownerIsGone = true;
    QCOMPARE(field(), u"one"_s);
    endOwner();
    own(u"text"_s);
    QTRY_COMPARE(pasteStatus(), 3);
}

void tst_ClipboardOwners::hugeText()
{
    own(u"huge"_s);
    QElapsedTimer clock;
    clock.start();
    openMenus();
    QTRY_COMPARE(pasteStatus(), 3);
    QVERIFY2(clock.elapsed() < 2000, "the text is not fetched to look");
    focusAddress(u"address"_s);
    m_session->choose("mnuEditPaste");
    QVERIFY(m_session->address().text().size() > 1000);
}

/// The engine takes minutes to lay out a line as long as this. The program goes on meanwhile, and
/// the page can be left.
void tst_ClipboardOwners::hugeTextIntoAPage()
{
    own(u"huge"_s);
    QTRY_COMPARE(pasteStatus(), 3);
    const QPointer<BrowserWindow> busy = m_session->active();
    QSignalSpy ended(&page(), &QWebEnginePage::renderProcessTerminated);
    m_session->choose("mnuEditPaste");
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY_WITH_TIMEOUT(m_session->shows(m_session->server.url(u"/home"_s)), 30000);
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY_WITH_TIMEOUT(m_session->shows(m_session->server.url(u"/one"_s)), 30000);
    QVERIFY(busy);
    QVERIFY2(ended.isEmpty(), "nothing that the page held is lost");
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY_WITH_TIMEOUT(!busy, 30000);
    QCOMPARE(m_session->windows(), 0);
}

/// What `--read` prints: the clipboard as another program finds it.
void tst_ClipboardOwners::pageTextReachesOthersRich()
{
    ask(u"document.body.insertAdjacentHTML('beforeend', '<p id=r>some <b>bold</b> words'), "
        "f.blur(), getSelection().selectAllChildren(r)"_s);
    QTRY_COMPARE(page().selectedText(), u"some bold words"_s);
    m_session->choose("mnuEditCopy");
    QTRY_COMPARE(QApplication::clipboard()->text(), u"some bold words"_s);
    QProcess reader;
    QSignalSpy finished(&reader, &QProcess::finished);
    reader.start(QCoreApplication::applicationFilePath(), {u"--read"_s});
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 20000);
    const QList<QByteArray> lines = reader.readAllStandardOutput().split('\n');
    QCOMPARE(lines.first(), QByteArray("some bold words"));
    QVERIFY2(lines.last().contains("bold</b>"), lines.last().constData());
}

void tst_ClipboardOwners::imageOnly()
{
    own(u"image"_s);
    useEverything();
    QVERIFY(!m_session->item("mnuFileNewFromClipboard")->isEnabled());
    QCOMPARE(field(), u"one"_s);
    m_session->active()->browser()->setFocus();
    ask(u"document.body.insertAdjacentHTML('beforeend', '<p id=r contenteditable>rich'), r.focus()"_s);
    QTRY_COMPARE(pasteStatus(), 3);
    m_session->choose("mnuEditPaste");
    QTRY_COMPARE(ask(u"r.querySelectorAll('img').length"_s).toInt(), 1);
}

namespace {
/// Ends its program, once it is armed, at the first question what there is.
class DeadlyData : public QMimeData {
public:
    bool armed = false;

    QStringList formats() const override
    {
        if (armed)
            ::raise(SIGKILL);
        return QMimeData::formats();
    }
};

/// Owns the clipboard until it is killed.
int ownClipboard(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const QByteArray kind = argv[2];
    auto *data = new DeadlyData;
    if (kind == "image")
        data->setImageData(QImage(64, 64, QImage::Format_RGB32));
    else if (kind == "encoded")
        data->setData(u"text/plain;charset=utf-8"_s, "of another program");
    else if (kind == "huge")
        data->setText(QString(100'000'000, u'a'));
    else
        data->setText(u"of another program"_s);
    QGuiApplication::clipboard()->setMimeData(data);
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &app, [] {});
    // Before the other program is told, which then asks at once.
    data->armed = kind == "die";
    std::puts("owned");
    std::fflush(stdout);
    if (kind == "hang")
        ::raise(SIGSTOP);
    return QCoreApplication::exec();
}

int readClipboard(int argc, char **argv)
{
    const QGuiApplication app(argc, argv);
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    const QByteArray html = data->html().simplified().toUtf8();
    std::printf("%s\n%s", data->text().toUtf8().constData(), html.constData());
    return 0;
}
}

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--own") == 0)
        return ownClipboard(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "--read") == 0)
        return readClipboard(argc, argv);
    return runEngineTest<tst_ClipboardOwners>(argc, argv);
}
#include "tst_clipboardowners.moc"
