#include <QPlainTextEdit>
#include <QtTest>

#include "../Session.h"
#include "EngineTest.h"
#include "ScriptErrorsDialog.h"

using namespace Qt::StringLiterals;

/// Errors of real pages, from the engine to the window that shows them.
class tst_ScriptErrors_Engine : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void uncaughtErrorIsShownWithItsPlace();
    void rejectedPromiseIsShown();
    void whatThePageHandlesIsNotShown();
    void suppressedErrorsAreNotShown();

private:
    ScriptErrorsDialog *form() const
    {
        return m_session->active()->findChild<ScriptErrorsDialog *>();
    }
    QString shown() const
    {
        return form() ? form()->findChild<QPlainTextEdit *>()->toPlainText() : QString();
    }
    void open(const QByteArray &script, const QString &title = u"after"_s)
    {
        m_session->server.page("/bad",
                               "<title>before</title>\n<script>\n" + script + "\n</script>"
                                   + "<script>document.title='after'</script>");
        m_session->start(m_session->server.url(u"/bad"_s));
        QTRY_VERIFY_WITH_TIMEOUT(m_session->active() && m_session->active()->windowTitle() == title,
                                 20000);
    }

    std::unique_ptr<Session> m_session;
};

void tst_ScriptErrors_Engine::init()
{
    m_session = std::make_unique<Session>();
}

void tst_ScriptErrors_Engine::cleanup()
{
    m_session.reset();
}

void tst_ScriptErrors_Engine::uncaughtErrorIsShownWithItsPlace()
{
    open("var x = 1;\n  missing();");
    QTRY_VERIFY(form() && form()->isVisible());
    const QStringList lines = shown().split(u'\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(0).contains("missing is not defined"_L1));
    QCOMPARE(lines.at(1), u"Line: 4"_s);
    QCOMPARE(lines.at(2), u"Column: 3"_s);
    QCOMPARE(lines.at(3), "Address: "_L1 + m_session->server.url(u"/bad"_s));
}

void tst_ScriptErrors_Engine::rejectedPromiseIsShown()
{
    open("Promise.reject(new Error('lost'));");
    QTRY_VERIFY(form() && form()->isVisible());
    QVERIFY(shown().contains("lost"_L1));
}

void tst_ScriptErrors_Engine::whatThePageHandlesIsNotShown()
{
    open(
        "onerror = () => true; console.error('said'); setTimeout(() => { document.title = 'later'; "
        "throw 1; }, 0);",
        u"later"_s);
    QVERIFY(!form());
}

void tst_ScriptErrors_Engine::suppressedErrorsAreNotShown()
{
    m_session->folder.setSetting(u"Settings"_s, u"Suppress-Script-Errors"_s, u"1"_s);
    open("missing();");
    QVERIFY(m_session->active()->browser()->isSilent());
    QVERIFY(!form());
}

ORVANE_ENGINE_TEST_MAIN(tst_ScriptErrors_Engine)
#include "tst_scripterrors_engine.moc"
