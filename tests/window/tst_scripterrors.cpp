#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "ScriptError.h"
#include "ScriptErrorsDialog.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

/// The window that collects the script errors of one browser window.
class tst_ScriptErrors : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void noWindowBeforeTheFirstError();
    void oneWindowCollectsThemAll();
    void itTakesNoFocus();
    void sameErrorIsKeptOnce();
    void errorsWithoutEndAreBounded();
    void copyTakesTheErrorShown();
    void closedItStaysAwayUntilAnotherPage();
    void pageThatIsIgnoredIsNotShown();
    void anotherBrowserWindowHasItsOwn();
    void itGoesWithItsBrowserWindow();
    void unknownPlacesAreLeftOpen();

private:
    FakeWebBrowser &engine() const { return *FakeWebBrowser::made().last(); }
    void fail(const QString &message, int line = 3) const
    {
        engine().events->scriptFailed({message, line, 7, u"http://page/script.js"_s});
    }
    void browseTo(const QString &url) const
    {
        engine().location = url;
        engine().events->navigateComplete2(url);
    }
    ScriptErrorsDialog *form() const { return m_window->findChild<ScriptErrorsDialog *>(); }
    QString shown() const { return form()->findChild<QPlainTextEdit *>()->toPlainText(); }
    QString position() const { return form()->findChild<QLabel *>()->text(); }
    QPushButton *button(const char *name) const
    {
        return form()->findChild<QPushButton *>(QLatin1String(name));
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
    BrowserWindow *m_window = nullptr;
};

void tst_ScriptErrors::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
    m_window = m_frame->open(u"http://page/"_s);
    engine().location = u"http://page/"_s;
}

void tst_ScriptErrors::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_folder.reset();
}

void tst_ScriptErrors::noWindowBeforeTheFirstError()
{
    QVERIFY(!form());
    fail(u"Uncaught one"_s);
    QVERIFY2(!form()->isVisible(), "nothing is shown inside the engine's call");
    QTRY_VERIFY(form()->isVisible());
    QVERIFY(!form()->isModal());
    QCOMPARE(form()->windowTitle(), u"Script Errors"_s);
}

void tst_ScriptErrors::oneWindowCollectsThemAll()
{
    fail(u"Uncaught one"_s);
    fail(u"Uncaught two"_s);
    QTRY_VERIFY(form()->isVisible());
    fail(u"Uncaught three"_s);
    QTRY_COMPARE(position(), u"Error 1 of 3"_s);
    QCOMPARE(m_window->findChildren<ScriptErrorsDialog *>().size(), 1);
    QCOMPARE(shown(), u"Uncaught one\nLine: 3\nColumn: 7\nAddress: http://page/script.js"_s);
    QVERIFY(!button("cmdPrevious")->isEnabled());
    button("cmdNext")->click();
    button("cmdNext")->click();
    QVERIFY(shown().startsWith("Uncaught three"_L1));
    QVERIFY(!button("cmdNext")->isEnabled());
    button("cmdPrevious")->click();
    QVERIFY(shown().startsWith("Uncaught two"_L1));
}

void tst_ScriptErrors::itTakesNoFocus()
{
    QLineEdit field;
    field.show();
    field.activateWindow();
    field.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&field));
    fail(u"Uncaught one"_s);
    QTRY_VERIFY(form()->isVisible());
    QVERIFY(QTest::qWaitForWindowExposed(form()));
    QVERIFY(field.hasFocus());
    QCOMPARE(QApplication::activeWindow(), &field);
}

void tst_ScriptErrors::sameErrorIsKeptOnce()
{
    for (int number = 0; number < 10; ++number)
        fail(u"Uncaught again"_s);
    fail(u"Uncaught again"_s, 4);
    QTRY_VERIFY(form()->isVisible());
    QCOMPARE(position(), u"Error 1 of 2"_s);
}

void tst_ScriptErrors::errorsWithoutEndAreBounded()
{
    for (int number = 0; number < 5000; ++number)
        fail(u"Uncaught %1"_s.arg(number));
    QTRY_VERIFY(form()->isVisible());
    QCOMPARE(position(), u"Error 1 of %1"_s.arg(ScriptErrorsDialog::most));
}

void tst_ScriptErrors::copyTakesTheErrorShown()
{
    fail(u"Uncaught one"_s);
    QTRY_VERIFY(form()->isVisible());
    button("cmdCopy")->click();
    QCOMPARE(QApplication::clipboard()->text(), shown());
}

void tst_ScriptErrors::closedItStaysAwayUntilAnotherPage()
{
    fail(u"Uncaught one"_s);
    QTRY_VERIFY(form()->isVisible());
    button("cmdClose")->click();
    QVERIFY(!form()->isVisible());
    fail(u"Uncaught two"_s);
    browseTo(u"http://other/"_s);
    fail(u"Uncaught three"_s);
    QTRY_VERIFY(form()->isVisible());
    QCOMPARE(position(), u"Error 1 of 1"_s);
    QVERIFY(shown().startsWith("Uncaught three"_L1));
}

void tst_ScriptErrors::pageThatIsIgnoredIsNotShown()
{
    fail(u"Uncaught one"_s);
    QTRY_VERIFY(form()->isVisible());
    form()->findChild<QCheckBox *>()->click();
    button("cmdClose")->click();
    browseTo(u"http://page/"_s);
    fail(u"Uncaught two"_s);
    browseTo(u"http://other/"_s);
    fail(u"Uncaught three"_s);
    QTRY_VERIFY(form()->isVisible());
    QCOMPARE(position(), u"Error 1 of 1"_s);
    QVERIFY(shown().startsWith("Uncaught three"_L1));
}

void tst_ScriptErrors::anotherBrowserWindowHasItsOwn()
{
    fail(u"Uncaught one"_s);
    BrowserWindow *other = m_frame->open(u"http://other/"_s);
    fail(u"Uncaught two"_s);
    auto *second = other->findChild<ScriptErrorsDialog *>();
    QTRY_VERIFY(form()->isVisible() && second->isVisible());
    QVERIFY(form() != second);
}

void tst_ScriptErrors::itGoesWithItsBrowserWindow()
{
    fail(u"Uncaught one"_s);
    QTRY_VERIFY(form()->isVisible());
    const QPointer<ScriptErrorsDialog> window = form();
    m_window->close();
    QTRY_VERIFY(!window);
}

void tst_ScriptErrors::unknownPlacesAreLeftOpen()
{
    engine().events->scriptFailed({u"Uncaught (in promise) x"_s, 0, 0, {}});
    QTRY_VERIFY(form()->isVisible());
    QVERIFY(shown().contains("Line: -\nColumn: -"_L1));
}

QTEST_MAIN(tst_ScriptErrors)
#include "tst_scripterrors.moc"
