// The whole program is left, and used, while a page waits for an answer.
#include <QTimer>
#include <algorithm>
#include <utility>

#include "../Session.h"
#include "Answer.h"
#include "EngineTest.h"
#include "PageAsks.h"
#include "PopupScene.h"

using namespace Qt::StringLiterals;

class tst_exitwhileasked : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }
    void programIsLeft_data();
    void programIsLeft();
    void programIsLeftWhileFilesAreChosen_data();
    void programIsLeftWhileFilesAreChosen();
    void programIsNotLeft();
    void questionOfThePageDoesNotHoldUpTheAnswer_data();
    void questionOfThePageDoesNotHoldUpTheAnswer();
    void messageWhileWindowsOpen();
    void openerClosesTheWindowThatAsks();

private:
    void ask(const QString &call) const
    {
        PopupScene::control(m_session->active())
            ->page()
            ->runJavaScript("setTimeout(() => { "_L1 + call
                            + "; document.title = 'after' }, 0); 1"_L1);
    }

    std::unique_ptr<Session> m_session;
};

void tst_exitwhileasked::init()
{
    m_session = std::make_unique<Session>();
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"1"_s);
    const QString page = m_session->server.url(u"/one"_s);
    m_session->start(page);
    QTRY_VERIFY(m_session->active() && m_session->shows(page));
}

void tst_exitwhileasked::programIsLeft_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<bool>("byMenu");
    for (const char *call : {"alert()", "confirm()", "prompt()", "while (true) alert()"}) {
        QTest::addRow("%s, close box", call) << QString::fromLatin1(call) << false;
        QTest::addRow("%s, menu", call) << QString::fromLatin1(call) << true;
    }
}

void tst_exitwhileasked::programIsLeft()
{
    QFETCH(const QString, call);
    QFETCH(const bool, byMenu);
    const QPointer<BrowserWindow> form = m_session->active();
    Answer yes(QMessageBox::Yes);
    const WhenAsked asked(form, [this, byMenu](PageQuestionBox *) {
        if (byMenu)
            m_session->choose("mnuFileExit");
        else
            m_session->frame->close();
    });
    ask(call);
    QTRY_COMPARE(yes.count(), 1);
    QTRY_VERIFY(!m_session->frame->isVisible());
    QCOMPARE(m_session->windows(), 0);
    QTRY_VERIFY(!form);
}

void tst_exitwhileasked::programIsLeftWhileFilesAreChosen_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::newRow("files") << QByteArray("multiple");
    QTest::newRow("folder") << QByteArray("webkitdirectory");
}

void tst_exitwhileasked::programIsLeftWhileFilesAreChosen()
{
    QFETCH(const QByteArray, attribute);
    m_session->server.page("/files",
                           "<title>files</title><input id=f type=file " + attribute + '>');
    const QPointer<BrowserWindow> form = m_session->active();
    form->browser()->navigate(m_session->server.url(u"/files"_s));
    QTRY_COMPARE(form->windowTitle(), u"files"_s);
    Answer yes(QMessageBox::Yes);
    QTimer look;
    QPointer<QWidget> dialog;
    connect(&look, &QTimer::timeout, this, [&] {
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto found = std::find_if(all.begin(), all.end(), [](const QWidget *each) {
            return each->objectName() == "CommonDialog"_L1 && each->isVisible();
        });
        if (dialog || found == all.end())
            return;
        dialog = *found;
        m_session->choose("mnuFileExit");
    });
    look.start(10);
    PopupScene::click(form, u"f"_s);
    QTRY_COMPARE(yes.count(), 1);
    QTRY_VERIFY(!m_session->frame->isVisible());
    QTRY_VERIFY(!form && !dialog);
}

void tst_exitwhileasked::programIsNotLeft()
{
    const BrowserWindow *form = m_session->active();
    Answer no(QMessageBox::No);
    const WhenAsked asked(m_session->active(),
                          [this](PageQuestionBox *) { m_session->frame->close(); });
    ask(u"alert('read me')"_s);
    QTRY_COMPARE(no.count(), 1);
    QTRY_COMPARE(form->windowTitle(), u"after"_s);
    QVERIFY(m_session->frame->isVisible());
    QCOMPARE(PageAsks::textOf(PageAsks::shownIn(form)), u"read me"_s);
}

void tst_exitwhileasked::questionOfThePageDoesNotHoldUpTheAnswer_data()
{
    QTest::addColumn<QString>("call");
    for (const char *call : {"alert()", "confirm()", "prompt()"})
        QTest::newRow(call) << QString::fromLatin1(call);
}

void tst_exitwhileasked::questionOfThePageDoesNotHoldUpTheAnswer()
{
    QFETCH(const QString, call);
    const BrowserWindow *form = m_session->active();
    bool answered = false;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && form->windowTitle() == "after"_L1 && !std::exchange(answered, true))
            box->button(QMessageBox::Yes)->click();
    });
    look.start(10);
    QTimer::singleShot(0, m_session->frame.get(), [&] { ask(call); });
    m_session->frame->close();
    QVERIFY(answered);
    QVERIFY(!m_session->frame->isVisible());
}

/// Windows go on being opened while a page of one of them says something.
void tst_exitwhileasked::messageWhileWindowsOpen()
{
    m_session->server.page("/says", "<title>says</title><script>alert(1); alert(2)</script>");
    const QString says = m_session->server.url(u"/says"_s);
    bool closed = false;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        if (m_session->windows() == 11 && PageAsks::shownIn(m_session->active())
            && !std::exchange(closed, true))
            m_session->choose("mnuFileCloseAll");
    });
    look.start(10);
    for (int i = 0; i < 10; ++i)
        m_session->frame->openBrowserWindow(says, WindowState::AsOthers);
    QTRY_VERIFY(closed);
    QTRY_COMPARE(m_session->windows(), 0);
    QTRY_VERIFY(m_session->frame->findChildren<BrowserWindow *>().isEmpty());
}

/// Whichever comes first, the popup's own question or the one whether it may go.
void tst_exitwhileasked::openerClosesTheWindowThatAsks()
{
    const BrowserWindow *opener = m_session->active();
    m_session->server.page("/asks", "<title>asks</title><script>confirm('?')</script>");
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        const QList<BrowserWindow *> forms = browserForms();
        PageQuestionBox *box = forms.size() > 1 ? PageAsks::shownIn(forms.last()) : nullptr;
        if (box)
            PageAsks::press(PageAsks::yes(box));
    });
    look.start(10);
    // Closed before that, the window would never have asked for its page.
    ask(u"w = open('/asks'); setInterval(() => w.location.pathname == '/asks' && w.close(), 20)"_s);
    QTRY_COMPARE(m_session->server.count("/asks"), 1);
    QTRY_COMPARE(m_session->windows(), 1);
    QCOMPARE(PopupScene::script(opener, u"1 + 1"_s).toInt(), 2);
}

ORVANE_ENGINE_TEST_MAIN(tst_exitwhileasked)
#include "tst_exitwhileasked.moc"
