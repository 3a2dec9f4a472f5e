// Pages that tell the console more than anybody reads.
#include "ControlScene.h"
#include "EngineTest.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {
/// The state of a process as the system has it: 'T' while it is stopped; 0 when it is gone.
char stateOf(qint64 process)
{
    QFile file(u"/proc/%1/stat"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray line = file.readAll();
    return line.mid(line.lastIndexOf(')') + 2, 1).at(0);
}
}

class tst_consoleflood : public QObject {
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<ControlScene>(); }
    void cleanup() { m_scene.reset(); }
    void rests_data();
    void rests();
    void chattyPageDoesNotRest();
    void closedPageLeavesNothingStopped();

private:
    qint64 process() const { return m_scene->browser->page()->renderProcessPid(); }

    std::unique_ptr<ControlScene> m_scene;
};

void tst_consoleflood::rests_data()
{
    QTest::addColumn<QByteArray>("flood");
    const auto row = [](const char *name, const QByteArray &flood) {
        QTest::addRow("%s", name) << flood;
    };
    row("lines", "setInterval(() => { for (let i = 0; i < 500; ++i) console.log('line ' + i) })");
    row("errors", "setInterval(() => { for (let i = 0; i < 500; ++i) Promise.reject(i) })");
    row("exceptions", "for (let i = 0; i < 50; ++i) setInterval(() => { throw i })");
    row("worker",
        "new Worker(URL.createObjectURL(new Blob(["
        "`setInterval(() => { for (let i = 0; i < 500; ++i) console.log(i) })`])))");
    row("frame",
        "const f = document.createElement('iframe'); document.body.append(f);"
        "setInterval(() => { for (let i = 0; i < 500; ++i) f.contentWindow.console.log(i)"
        " })");
}

/// The process rests, goes on, and the next page comes.
void tst_consoleflood::rests()
{
    QFETCH(const QByteArray, flood);
    m_scene->server.page("/flood", "<!doctype html><body><script>" + flood + "</script>");
    m_scene->server.page("/next", "<title>Next</title>");
    m_scene->browser->navigate(m_scene->server.url(u"/flood"_s));
    QTRY_VERIFY(m_scene->browser->hasDocument());
    const qint64 flooding = process();
    QTRY_COMPARE(stateOf(flooding), 'T');
    QTRY_VERIFY(stateOf(flooding) != 'T');
    m_scene->browser->navigate(m_scene->server.url(u"/next"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_scene->browser->page()->title(), u"Next"_s, 20000);
    QTRY_VERIFY(stateOf(flooding) != 'T');
}

void tst_consoleflood::chattyPageDoesNotRest()
{
    m_scene->server.page("/chatty",
                         "<title>x</title><script>for (let i = 0; i < 800; ++i) console.log(i);"
                         "document.title = 'told'</script>");
    m_scene->browser->navigate(m_scene->server.url(u"/chatty"_s));
    while (m_scene->browser->page() == nullptr || m_scene->browser->page()->title() != "told"_L1) {
        QVERIFY(!m_scene->browser->page() || process() == 0 || stateOf(process()) != 'T');
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void tst_consoleflood::closedPageLeavesNothingStopped()
{
    m_scene->server.page("/flood",
                         "<script>setInterval(() => { for (let i = 0; i < 500; ++i)"
                         " console.log(i) })</script>");
    m_scene->browser->navigate(m_scene->server.url(u"/flood"_s));
    QTRY_VERIFY(m_scene->browser->hasDocument());
    const qint64 flooding = process();
    QTRY_COMPARE(stateOf(flooding), 'T');
    m_scene.reset();
    QVERIFY(stateOf(flooding) != 'T');
}

ORVANE_ENGINE_TEST_MAIN(tst_consoleflood)
#include "tst_consoleflood.moc"
