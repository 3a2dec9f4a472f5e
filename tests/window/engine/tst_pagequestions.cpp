#include <QDeadlineTimer>
#include <QDialog>
#include <QLineEdit>
#include <QMdiArea>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineView>
#include <csignal>

#include "EngineTest.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "PopupScene.h"
#include "WebPage.h"
#include "Yield.h"

using namespace Qt::StringLiterals;

/// The questions that scripts of pages wait for, in their windows.
class tst_pagequestions : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void alertIsShownInItsWindow();
    void markupIsShownAsText();
    void confirmAndPrompt_data();
    void confirmAndPrompt();
    void tabStaysInside();
    void longMessageFits();
    void tenMegabytesAreCut_data();
    void tenMegabytesAreCut();
    void frameIsNamed();
    void frameWithoutASiteDoesNotSpeakForThePage_data();
    void frameWithoutASiteDoesNotSpeakForThePage();
    void pageWithoutASiteIsNamed_data();
    void pageWithoutASiteIsNamed();
    void restIsUsableMeanwhile();
    void endlessAlertsCanBeEnded();
    void silencedPageLeavesTheRestUsable();
    void userDoingSomethingEndsTheSilence();
    void otherWindowEndsTheWait();
    void messageLeftIsThereStill();
    void messagesLeftDoNotHeapUp();
    void dialogEndsTheWait();
    void messageBehindADialogIsThereAfterwards();
    void nothingWaitsBehindADialog();
    void nothingWaitsBetweenTheStepsOfALongRoutine();
    void pageBehindDoesNotWait();
    void minimizingEndsTheWait();
    void closingTheWindow_data();
    void closingTheWindow();
    void closingAnotherWindow();
    void typedAddressEndsIt();
    void stopEndsIt();
    void endlessDialogsCanBeLeft_data();
    void endlessDialogsCanBeLeft();
    void endlessDialogsCanBeStopped();
    void unheardPageCanBeLeft();
    void leavingOfferedBesideADialogIsStillAsked();
    void processEndsMeanwhile_data();
    void processEndsMeanwhile();
    void leavingIsAsked_data();
    void leavingIsAsked();
    void focusStaysWhereTheUserTypes();

private:
    void start(const QString &code) { run(m_form, code); }
    static void run(BrowserWindow *form, const QString &code)
    {
        PopupScene::control(form)->page()->runJavaScript("setTimeout(() => { "_L1 + code
                                                         + " }, 0); 1"_L1);
    }
    QString title() const { return m_form->windowTitle(); }
    /// A window with a page of its own, behind that of the questions.
    void openOther()
    {
        m_scene->server.page("/other", "<title>other</title>");
        m_other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
        QTRY_COMPARE(m_other->windowTitle(), u"other"_s);
        m_scene->frame.area->setActiveSubWindow(m_form);
    }
    void goToOther() { m_scene->frame.area->setActiveSubWindow(m_other); }
    /// Answers, and wants no more where that is offered.
    static void silence(PageQuestionBox *box)
    {
        if (QCheckBox *noMore = PageAsks::noMore(box))
            noMore->click();
        PageAsks::press(PageAsks::yes(box));
    }

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
    QPointer<BrowserWindow> m_other;
};

void tst_pagequestions::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_form = m_scene->openPage("<input id=i><p>text</p>", true);
    QVERIFY(QTest::qWaitForWindowActive(m_scene->frame.window()));
}

void tst_pagequestions::cleanup()
{
    m_scene.reset();
}

void tst_pagequestions::alertIsShownInItsWindow()
{
    m_form->browser()->setFocus();
    const WhenAsked asked(m_form, [this](PageQuestionBox *box) {
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(m_form->isAncestorOf(box));
        QCOMPARE(PageAsks::titleOf(box),
                 u"Message from http://127.0.0.1:%1"_s.arg(m_scene->server.port()));
        QCOMPARE(PageAsks::textOf(box), u"hello"_s);
        QCOMPARE(box->accessibleName(), PageAsks::titleOf(box));
        QCOMPARE(box->accessibleDescription(), u"hello"_s);
        QCOMPARE(PageAsks::yes(box)->accessibleName(), u"OK"_s);
        QVERIFY(!PageAsks::no(box) && !PageAsks::noMore(box));
        QTRY_VERIFY(PageAsks::yes(box)->hasFocus());
        QTest::keyClick(PageAsks::yes(box), Qt::Key_Escape);
    });
    start(u"alert('hello'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
    QCOMPARE(asked.count(), 1);
    QTRY_COMPARE(PageAsks::countIn(m_form), 0);
    const QWidget *control = m_form->browser()->widget();
    QTRY_VERIFY(control->isAncestorOf(QApplication::focusWidget()));
}

void tst_pagequestions::markupIsShownAsText()
{
    const WhenAsked asked(m_form, [](PageQuestionBox *box) {
        for (const QLabel *label : box->findChildren<QLabel *>())
            QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(PageAsks::textOf(box), u"<b>bold</b>"_s);
        PageAsks::press(PageAsks::yes(box));
    });
    start(u"alert('<b>bold</b>'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
}

void tst_pagequestions::confirmAndPrompt_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("result");
    QTest::newRow("confirm, Return") << u"confirm('?')"_s << int(Qt::Key_Return) << u"true"_s;
    QTest::newRow("confirm, Escape") << u"confirm('?')"_s << int(Qt::Key_Escape) << u"false"_s;
    QTest::newRow("prompt, Return") << u"prompt('?', 'x')"_s << int(Qt::Key_Return) << u"Ann"_s;
    QTest::newRow("prompt, Escape") << u"prompt('?', 'x')"_s << int(Qt::Key_Escape) << u"null"_s;
}

void tst_pagequestions::confirmAndPrompt()
{
    QFETCH(QString, call);
    QFETCH(int, key);
    QFETCH(QString, result);
    m_form->browser()->setFocus();
    const WhenAsked asked(m_form, [key](PageQuestionBox *box) {
        QTRY_VERIFY(box->isAncestorOf(QApplication::focusWidget()));
        if (auto *field = box->findChild<QLineEdit *>()) {
            QCOMPARE(field->text(), u"x"_s);
            QCOMPARE(field->accessibleName(), u"?"_s);
            QVERIFY(field->hasFocus());
            QTest::keyClicks(field, u"Ann"_s);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
    });
    start("document.title = 'got ' + "_L1 + call);
    QTRY_COMPARE(title(), "got "_L1 + result);
}

void tst_pagequestions::tabStaysInside()
{
    m_form->browser()->setFocus();
    const WhenAsked asked(m_form, [](PageQuestionBox *box) {
        QTRY_VERIFY(box->isAncestorOf(QApplication::focusWidget()));
        QSet<QWidget *> seen;
        for (int i = 0; i < 6; ++i) {
            QTest::keyClick(QApplication::focusWidget(), i < 3 ? Qt::Key_Tab : Qt::Key_Backtab);
            QVERIFY(box->isAncestorOf(QApplication::focusWidget()));
            seen.insert(QApplication::focusWidget());
        }
        QCOMPARE(seen.size(), 3);
        PageAsks::press(PageAsks::no(box));
    });
    start(u"prompt('?'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
}

void tst_pagequestions::longMessageFits()
{
    m_form->showNormal();
    m_form->resize(300, 260);
    const WhenAsked asked(m_form, [this](PageQuestionBox *box) {
        const QWidget *client = m_form->widget();
        QVERIFY(client->rect().contains(box->geometry()));
        const QPushButton *button = PageAsks::yes(box);
        QVERIFY(box->rect().contains(QRect(button->mapTo(box, QPoint()), button->size())));
        QCOMPARE(PageAsks::textOf(box).size(), 2000);
        PageAsks::press(PageAsks::yes(box));
    });
    start(u"alert('word '.repeat(200000)); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
}

void tst_pagequestions::tenMegabytesAreCut_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("result");
    const QString text = u"'\u202e\u0430W'.repeat(1e7 / 3)"_s;
    QTest::newRow("alert") << u"alert(%1)"_s.arg(text) << u"undefined"_s;
    QTest::newRow("confirm") << u"confirm(%1)"_s.arg(text) << u"true"_s;
    QTest::newRow("prompt") << u"(prompt(%1, %1).length < 1e4)"_s.arg(text) << u"true"_s;
}

/// Painting all of it would hold the program.
void tst_pagequestions::tenMegabytesAreCut()
{
    QFETCH(const QString, call);
    QFETCH(const QString, result);
    const WhenAsked asked(m_form, [this](PageQuestionBox *box) {
        QCOMPARE(PageAsks::textOf(box).size(), 2000);
        QVERIFY(m_form->rect().contains(QRect(box->mapTo(m_form, QPoint()), box->size())));
        PageAsks::press(PageAsks::yes(box));
    });
    start("document.title = 'got ' + "_L1 + call);
    QTRY_COMPARE(title(), "got "_L1 + result);
    QCOMPARE(asked.count(), 1);
}

void tst_pagequestions::frameIsNamed()
{
    m_scene->server.page("/inner", "<script>confirm('inner')</script>");
    QStringList named;
    const WhenAsked asked(m_form, [&named](PageQuestionBox *box) {
        named.append(PageAsks::titleOf(box).section(u' ', -1));
        named.append(box->findChild<QLabel *>(u"lblAround"_s)->accessibleName());
        PageAsks::press(PageAsks::yes(box));
    });
    const QString elsewhere = m_scene->server.url(u"/inner"_s, u"localhost"_s);
    start("document.body.innerHTML = '<iframe src=\""_L1 + elsewhere + "\"></iframe>'"_L1);
    const QString port = QString::number(m_scene->server.port());
    QTRY_COMPARE(named,
                 QStringList({u"http://localhost:"_s + port,
                              u"inside a page of http://127.0.0.1:"_s + port}));
}

void tst_pagequestions::frameWithoutASiteDoesNotSpeakForThePage_data()
{
    QTest::addColumn<QString>("document");
    const QString ask = u"<script>confirm()<\\/script>"_s;
    QTest::newRow("data") << u"f.src = `data:text/html,"_s + ask + u'`';
    QTest::newRow("srcdoc") << u"f.srcdoc = `"_s + ask + u'`';
    QTest::newRow("blob") << u"f.src = URL.createObjectURL(new Blob([`"_s + ask
            + u"`], {type: 'text/html'}))"_s;
    QTest::newRow("sandboxed") << u"f.sandbox = 'allow-scripts allow-modals'; f.src = '/asks'"_s;
    QTest::newRow("written") << u"f.contentDocument.write(`"_s + ask + u"`)"_s;
}

/// A frame of another site makes one of its own, and that one asks.
void tst_pagequestions::frameWithoutASiteDoesNotSpeakForThePage()
{
    QFETCH(const QString, document);
    m_scene->server.page("/advert",
                         "<body><script>const f = document.createElement('iframe');"
                         "document.body.append(f);"
                             + document.toUtf8() + "</script>");
    m_scene->server.page("/asks", "<script>confirm()</script>");
    QStringList named;
    const WhenAsked asked(m_form, [&named](PageQuestionBox *box) {
        named.append(PageAsks::titleOf(box));
        PageAsks::press(PageAsks::yes(box));
    });
    const QString elsewhere = m_scene->server.url(u"/advert"_s, u"localhost"_s);
    start("document.body.innerHTML = '<iframe src=\""_L1 + elsewhere + "\"></iframe>'"_L1);
    QTRY_COMPARE(named.size(), 1);
    QVERIFY2(named.first() != u"Message from http://127.0.0.1:%1"_s.arg(m_scene->server.port()),
             qPrintable(named.first()));
}

void tst_pagequestions::pageWithoutASiteIsNamed_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("title");
    QTest::newRow("data") << u"data:text/html,<script>confirm()</script>"_s
                          << u"Message from data:"_s;
    QTest::newRow("data that looks like an address")
        << u"data:text/html;http://www.bank.example/,<script>confirm()</script>"_s
        << u"Message from data:"_s;
}

void tst_pagequestions::pageWithoutASiteIsNamed()
{
    QFETCH(const QString, address);
    QFETCH(const QString, title);
    QStringList named;
    const WhenAsked asked(m_form, [&named](PageQuestionBox *box) {
        named.append(PageAsks::titleOf(box));
        PageAsks::press(PageAsks::yes(box));
    });
    m_form->browser()->navigate(address);
    QTRY_COMPARE(named, QStringList(title));
}

void tst_pagequestions::restIsUsableMeanwhile()
{
    QLineEdit beside(m_scene->frame.window());
    beside.show();
    const WhenAsked asked(m_form, [&](PageQuestionBox *box) {
        // What is outside the page works.
        QTest::mouseClick(&beside, Qt::LeftButton);
        QTRY_VERIFY(beside.hasFocus());
        QTest::keyClicks(&beside, u"typed"_s);
        QCOMPARE(beside.text(), u"typed"_s);
        m_form->showNormal();
        m_form->move(10, 20);
        QVERIFY(box->isVisible());
        // A press on the page reaches nobody.
        m_form->browser()->setFocus();
        QTRY_VERIFY(box->isAncestorOf(QApplication::focusWidget()));
        PageAsks::press(PageAsks::yes(box));
    });
    start(u"alert('x'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
}

void tst_pagequestions::endlessAlertsCanBeEnded()
{
    const WhenAsked asked(m_form, [](PageQuestionBox *box) {
        if (QCheckBox *noMore = PageAsks::noMore(box)) {
            QVERIFY(!noMore->accessibleName().isEmpty());
            noMore->click();
        }
        PageAsks::press(PageAsks::yes(box));
    });
    start(u"for (let i = 0; i < 1000; i++) alert(i); document.title = 'after'"_s);
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"after"_s, 100'000);
    QCOMPARE(asked.count(), 2);
    start(u"document.title = 'said ' + confirm() + prompt()"_s);
    QTRY_COMPARE(title(), u"said falsenull"_s);
    QCOMPARE(asked.count(), 2);
}

/// A page that goes on for ever after it has been shut up: the window can be left and closed, and
/// another shows its page.
void tst_pagequestions::silencedPageLeavesTheRestUsable()
{
    const WhenAsked asked(m_form, silence);
    start(u"while (true) alert()"_s);
    QTRY_COMPARE(asked.count(), 2);
    m_scene->server.page("/other", "<title>other</title>");
    const BrowserWindow *other =
        m_scene->frame.open(m_scene->server.url(u"/other"_s, u"localhost"_s));
    QTRY_COMPARE_WITH_TIMEOUT(other->windowTitle(), u"other"_s, 20000);
    m_form->unload();
    QTRY_VERIFY(!m_form);
    QCOMPARE(PopupScene::script(other, u"1 + 1"_s).toInt(), 2);
}

void tst_pagequestions::userDoingSomethingEndsTheSilence()
{
    m_scene->server.page("/b", "<title>b</title>");
    const WhenAsked asked(m_form, silence);
    start(u"alert(1); alert(2); alert(3); location = '/b'"_s);
    QTRY_COMPARE(title(), u"b"_s);
    QCOMPARE(asked.count(), 2);
    // The page went there by itself.
    start(u"alert(4); document.title = 'c'"_s);
    QTRY_COMPARE(title(), u"c"_s);
    QCOMPARE(asked.count(), 2);
    m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE(title(), u"opener"_s);
    start(u"alert(5); document.title = 'd'"_s);
    QTRY_COMPARE(title(), u"d"_s);
    QCOMPARE(asked.count(), 3);
}

void tst_pagequestions::otherWindowEndsTheWait()
{
    openOther();
    const WhenAsked asked(m_form, [this](PageQuestionBox *) { goToOther(); });
    start(u"document.title = 'said ' + confirm('?')"_s);
    QTRY_COMPARE(title(), u"said false"_s);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(PopupScene::script(m_other, u"1 + 1"_s).toInt(), 2);
}

/// The page goes on; what it said can be read later.
void tst_pagequestions::messageLeftIsThereStill()
{
    openOther();
    const WhenAsked asked(m_form, [this](PageQuestionBox *) { goToOther(); });
    start(u"alert('read me'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
    m_scene->frame.area->setActiveSubWindow(m_form);
    QCOMPARE(PageAsks::countIn(m_form), 1);
    QCOMPARE(PageAsks::textOf(PageAsks::shownIn(m_form)), u"read me"_s);
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(PageAsks::countIn(m_form), 0);
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
}

void tst_pagequestions::messagesLeftDoNotHeapUp()
{
    openOther();
    const WhenAsked asked(m_form, [this](PageQuestionBox *) { goToOther(); });
    for (int i = 0; i < 4; ++i) {
        m_scene->frame.area->setActiveSubWindow(m_form);
        start(u"alert(%1); document.title = 'after %1'"_s.arg(i));
        QTRY_COMPARE(title(), u"after %1"_s.arg(i));
    }
    m_scene->frame.area->setActiveSubWindow(m_form);
    QTRY_COMPARE(m_form->findChildren<PageQuestionBox *>().size(), 1);
    QCOMPARE(PageAsks::textOf(PageAsks::shownIn(m_form)), u"0"_s);
}

void tst_pagequestions::dialogEndsTheWait()
{
    QDialog dialog(m_scene->frame.window());
    const WhenAsked asked(m_form, [&dialog](PageQuestionBox *) { dialog.open(); });
    start(u"document.title = 'said ' + confirm('?')"_s);
    QTRY_COMPARE(title(), u"said false"_s);
    QVERIFY(dialog.isVisible());
    QCOMPARE(asked.count(), 1);
}

void tst_pagequestions::messageBehindADialogIsThereAfterwards()
{
    QDialog dialog(m_scene->frame.window());
    dialog.open();
    start(u"alert('read me'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
    dialog.close();
    QCOMPARE(PageAsks::textOf(PageAsks::shownIn(m_form)), u"read me"_s);
}

/// A dialog that is waited for returns when it is closed, not when the page has its answer.
void tst_pagequestions::nothingWaitsBehindADialog()
{
    QDialog dialog(m_scene->frame.window());
    QTimer look;
    connect(&look, &QTimer::timeout, &dialog, [&] {
        if (title() == "said falsenull"_L1)
            dialog.close();
    });
    look.start(10);
    QTimer::singleShot(0, &dialog,
                       [this] { start(u"document.title = 'said ' + confirm() + prompt()"_s); });
    dialog.exec();
    QCOMPARE(title(), u"said falsenull"_s);
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_pagequestions::nothingWaitsBetweenTheStepsOfALongRoutine()
{
    const WhenAsked asked(m_form,
                          [](PageQuestionBox *box) { PageAsks::press(PageAsks::yes(box)); });
    start(u"document.title = 'said ' + confirm('?')"_s);
    const QDeadlineTimer limit(10000);
    while (!title().startsWith("said"_L1) && !limit.hasExpired())
        letPendingEventsRun();
    QCOMPARE(title(), u"said false"_s);
    QCOMPARE(asked.count(), 0);
}

void tst_pagequestions::pageBehindDoesNotWait()
{
    m_scene->server.page("/other", "<title>other</title>");
    BrowserWindow *other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(other->windowTitle(), u"other"_s);
    other->browser()->setFocus();
    start(u"for (let i = 0; i < 100; i++) alert('behind ' + i); document.title = 'went on'"_s);
    QTRY_COMPARE(title(), u"went on"_s);
    // One of them is there to be read, and the keyboard stays where it was.
    QCOMPARE(PageAsks::countIn(m_form), 1);
    QCOMPARE(PageAsks::textOf(PageAsks::shownIn(m_form)), u"behind 0"_s);
    QVERIFY(other->isAncestorOf(QApplication::focusWidget()));
    m_scene->frame.area->setActiveSubWindow(m_form);
    QTRY_VERIFY(PageAsks::yes(PageAsks::shownIn(m_form))->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(PageAsks::countIn(m_form), 0);
}

void tst_pagequestions::minimizingEndsTheWait()
{
    const WhenAsked asked(m_form, [this](PageQuestionBox *) { m_form->showMinimized(); });
    start(u"document.title = 'said ' + prompt('?')"_s);
    QTRY_COMPARE(title(), u"said null"_s);
    QCOMPARE(asked.count(), 1);
}

void tst_pagequestions::closingTheWindow_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("its close box") << 0;
    QTest::newRow("unloaded") << 1;
    QTest::newRow("deleted") << 2;
}

void tst_pagequestions::closingTheWindow()
{
    QFETCH(int, way);
    m_scene->server.page("/other", "<title>other</title>");
    const BrowserWindow *other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(other->windowTitle(), u"other"_s);
    m_scene->frame.area->setActiveSubWindow(m_form);
    const QPointer<WebPage> page = PopupScene::control(m_form)->page();
    const WhenAsked asked(m_form, [this, way](PageQuestionBox *) {
        if (way == 0)
            m_form->close();
        else if (way == 1)
            m_form->unload();
        else
            delete m_form;
    });
    start(u"while (true) confirm('stay?')"_s);
    QTRY_COMPARE(asked.count(), 1);
    QTRY_VERIFY(!m_form);
    QTRY_VERIFY(!page);
    QCOMPARE(PopupScene::script(other, u"1 + 1"_s).toInt(), 2);
}

void tst_pagequestions::closingAnotherWindow()
{
    m_scene->server.page("/other", "<title>other</title>");
    const QPointer<BrowserWindow> other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(other->windowTitle(), u"other"_s);
    m_scene->frame.area->setActiveSubWindow(m_form);
    const WhenAsked asked(m_form, [other](PageQuestionBox *box) {
        other->close();
        QTRY_VERIFY(!other);
        PageAsks::press(PageAsks::yes(box));
    });
    start(u"document.title = 'said ' + confirm('?')"_s);
    QTRY_COMPARE(title(), u"said true"_s);
    QVERIFY(!other);
}

void tst_pagequestions::typedAddressEndsIt()
{
    m_scene->server.page("/b", "<title>b</title>");
    const WhenAsked asked(m_form, [this](PageQuestionBox *) {
        m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    });
    start(u"alert('x')"_s);
    QTRY_COMPARE(title(), u"b"_s);
    QCOMPARE(asked.count(), 1);
    QTRY_COMPARE(PageAsks::countIn(m_form), 0);
    QVERIFY(m_form->browser()->goBack());
    QTRY_COMPARE(title(), u"opener"_s);
}

void tst_pagequestions::stopEndsIt()
{
    const WhenAsked asked(m_form, [this](PageQuestionBox *) { m_form->browser()->stop(); });
    start(u"document.title = 'said ' + confirm('?')"_s);
    QTRY_COMPARE(title(), u"said false"_s);
}

void tst_pagequestions::endlessDialogsCanBeLeft_data()
{
    QTest::addColumn<QString>("loop");
    QTest::addColumn<int>("way");
    const QString alerts = u"while (true) alert()"_s;
    QTest::newRow("another page of the site") << alerts << 0;
    QTest::newRow("another site") << alerts << 1;
    QTest::newRow("back") << alerts << 2;
    QTest::newRow("anew") << alerts << 3;
    QTest::newRow("questions") << u"while (true) confirm()"_s << 0;
    QTest::newRow("again and again") << u"setInterval(() => alert(), 10)"_s << 0;
    QTest::newRow("while it comes") << u"location = '/loop'"_s << 0;
    QTest::newRow("in frames") << u"for (let i = 0; i < 3; i++) {"
                                  "const f = document.body.appendChild(document.createElement("
                                  "'iframe')); f.contentWindow.eval('while (true) prompt()') }"_s
                               << 0;
}

/// The page that comes has the keyboard's answer and nothing of the one before it.
void tst_pagequestions::endlessDialogsCanBeLeft()
{
    QFETCH(const QString, loop);
    QFETCH(const int, way);
    m_scene->server.page("/a", "<title>a</title>");
    m_scene->server.page("/loop", "<title>loop</title><script>while (true) alert()</script>");
    m_scene->server.page("/b", "<title>b</title>");
    m_form->browser()->navigate(m_scene->server.url(u"/a"_s));
    QTRY_COMPARE(title(), u"a"_s);
    QStringList came{u"b"_s, u"b"_s, u"opener"_s, u"a"_s};
    const WhenAsked asked(m_form, [&](PageQuestionBox *) {
        if (way == 2)
            m_form->browser()->goBack();
        else if (way == 3)
            m_form->browser()->refresh();
        else
            m_form->browser()->navigate(
                m_scene->server.url(u"/b"_s, way == 1 ? u"localhost"_s : u"127.0.0.1"_s));
    });
    start("document.title = 'loop';"_L1 + loop);
    QTRY_COMPARE_WITH_TIMEOUT(asked.count(), 1, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(title(), came.at(way), 20000);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QTRY_COMPARE_WITH_TIMEOUT(PopupScene::script(m_form, u"document.title"_s).toString(),
                              came.at(way), 10000);
    // It is heard itself.
    start(u"alert('x')"_s);
    QTRY_COMPARE(asked.count(), 2);
}

/// Nothing is left to be shown of it but that it has ended.
void tst_pagequestions::endlessDialogsCanBeStopped()
{
    const WhenAsked asked(m_form, [this](PageQuestionBox *) { m_form->browser()->stop(); });
    start(u"while (true) alert()"_s);
    QTRY_COMPARE(asked.count(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(m_form->findChild<QPushButton *>(u"cmdReload"_s), 20000);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    m_form->browser()->refresh();
    const WebPage &page = *PopupScene::control(m_form)->page();
    QTRY_COMPARE(page.lifecycleState(), QWebEnginePage::LifecycleState::Active);
    QTRY_COMPARE(PopupScene::script(m_form, u"document.title"_s).toString(), u"opener"_s);
}

void tst_pagequestions::unheardPageCanBeLeft()
{
    m_scene->server.page("/b", "<title>b</title>");
    const WhenAsked asked(m_form, silence);
    start(u"while (true) alert()"_s);
    QTRY_COMPARE(asked.count(), 2);
    QTRY_VERIFY(m_form->questions()->isSilenced());
    m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"b"_s, 20000);
    QCOMPARE(asked.count(), 2);
}

void tst_pagequestions::leavingOfferedBesideADialogIsStillAsked()
{
    m_scene->server.page("/b", "<title>b</title>");
    start(u"onbeforeunload = event => { event.preventDefault(); event.returnValue = 'x' };"
          "document.title = 'ready'"_s);
    QTRY_COMPARE(title(), u"ready"_s);
    PopupScene::click(m_form, u"i"_s);
    QTRY_COMPARE(PopupScene::script(m_form, u"navigator.userActivation.hasBeenActive"_s), true);
    const WhenAsked asked(m_form, [this](PageQuestionBox *box) {
        if (PageAsks::textOf(box) == "hello"_L1)
            m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
        else
            PageAsks::press(PageAsks::no(box));
    });
    start(u"alert('hello')"_s);
    QTRY_COMPARE(asked.count(), 2);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(PopupScene::script(m_form, u"document.title"_s).toString(), u"ready"_s);
}

void tst_pagequestions::processEndsMeanwhile_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("alert") << u"alert('x')"_s;
    QTest::newRow("confirm") << u"confirm('x')"_s;
    QTest::newRow("prompt") << u"prompt('x', 'y')"_s;
    QTest::newRow("beforeunload")
        << u"onbeforeunload = event => { event.preventDefault(); event.returnValue = 'x' };"
           "location = 'about:blank'"_s;
}

void tst_pagequestions::processEndsMeanwhile()
{
    QFETCH(QString, code);
    PopupScene::click(m_form, u"i"_s);
    QTRY_COMPARE(PopupScene::script(m_form, u"navigator.userActivation.hasBeenActive"_s), true);
    bool stayed = false;
    const WhenAsked asked(m_form, [&](PageQuestionBox *box) {
        ::kill(pid_t(PopupScene::control(m_form)->page()->renderProcessPid()), SIGKILL);
        // Where it does not go by itself, the test would wait for ever.
        QTimer::singleShot(10'000, box, [&stayed, box] {
            stayed = true;
            PageAsks::press(PageAsks::yes(box));
        });
    });
    start(code);
    QTRY_VERIFY_WITH_TIMEOUT(m_form->findChild<QPushButton *>(u"cmdReload"_s), 20'000);
    QVERIFY(!stayed);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_pagequestions::leavingIsAsked_data()
{
    QTest::addColumn<bool>("leave");
    QTest::newRow("stay") << false;
    QTest::newRow("leave") << true;
}

void tst_pagequestions::leavingIsAsked()
{
    QFETCH(bool, leave);
    m_scene->server.page("/b", "<title>b</title>");
    start(u"onbeforeunload = event => { event.preventDefault(); event.returnValue = 'x' };"
          "document.title = 'ready'"_s);
    QTRY_COMPARE(title(), u"ready"_s);
    // The engine asks only where the user has done something.
    PopupScene::click(m_form, u"i"_s);
    QTRY_COMPARE(PopupScene::script(m_form, u"navigator.userActivation.hasBeenActive"_s), true);
    const WhenAsked asked(m_form, [leave](PageQuestionBox *box) {
        QVERIFY(PageAsks::textOf(box).startsWith("Leave this page?"_L1));
        QCOMPARE(PageAsks::no(box)->text(), u"Stay"_s);
        PageAsks::press(leave ? PageAsks::yes(box) : PageAsks::no(box));
    });
    m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_COMPARE(asked.count(), 1);
    if (leave) {
        QTRY_COMPARE(title(), u"b"_s);
    } else {
        QTRY_VERIFY(!m_form->browser()->isBusy());
        QCOMPARE(PopupScene::script(m_form, u"document.title"_s).toString(), u"ready"_s);
    }
}

void tst_pagequestions::focusStaysWhereTheUserTypes()
{
    QLineEdit beside(m_scene->frame.window());
    beside.show();
    beside.setFocus();
    const WhenAsked asked(m_form, [&](PageQuestionBox *box) {
        QCoreApplication::processEvents();
        QVERIFY(beside.hasFocus());
        PageAsks::press(PageAsks::yes(box));
    });
    start(u"alert('x'); document.title = 'after'"_s);
    QTRY_COMPARE(title(), u"after"_s);
    QVERIFY(beside.hasFocus());
}

ORVANE_ENGINE_TEST_MAIN(tst_pagequestions)
#include "tst_pagequestions.moc"
