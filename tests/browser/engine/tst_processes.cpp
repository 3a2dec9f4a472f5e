// How many processes many pages take, and that sites never share one.
#include "EngineProfile.h"
#include "EngineTest.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QSet>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

class tst_processes : public QObject {
    Q_OBJECT

private slots:
    void pagesOfOneSiteShareProcesses();
    void sitesShareNone();

private:
    void open(const QString &url);
    bool allLoaded() const;

    TestServer m_server;
    std::vector<std::unique_ptr<WebPage>> m_pages;
    int m_loaded = 0;
};

void tst_processes::open(const QString &url)
{
    m_pages.emplace_back(takePageToLoad());
    connect(m_pages.back().get(), &QWebEnginePage::loadFinished, this, [this](bool arrived) {
        if (arrived)
            ++m_loaded;
    });
    m_pages.back()->load(QUrl(url));
}

bool tst_processes::allLoaded() const
{
    return m_loaded == static_cast<int>(m_pages.size());
}

void tst_processes::pagesOfOneSiteShareProcesses()
{
    constexpr int many = 40;
    m_server.page("/a", "<title>A</title>");
    QSet<qint64> processes;
    for (int i = 0; i < many; ++i) {
        open(m_server.url(u"/a"_s));
        QTRY_VERIFY_WITH_TIMEOUT(allLoaded(), 30000);
        processes.insert(m_pages.back()->renderProcessPid());
    }
    QVERIFY(!processes.contains(0));
    QVERIFY2(processes.size() > 5, "they are to share only where there are many");
    QVERIFY2(processes.size() <= 21, qPrintable(QString::number(processes.size())));
}

void tst_processes::sitesShareNone()
{
    QSet<qint64> processes;
    for (const std::unique_ptr<WebPage> &page : m_pages)
        processes.insert(page->renderProcessPid());
    QVERIFY(!processes.isEmpty());
    open(u"http://localhost:%1/a"_s.arg(QUrl(m_server.url(u"/a"_s)).port()));
    QTRY_VERIFY_WITH_TIMEOUT(allLoaded(), 30000);
    QVERIFY(!processes.contains(m_pages.back()->renderProcessPid()));
    m_pages.clear();
}

ORVANE_ENGINE_TEST_MAIN(tst_processes)
#include "tst_processes.moc"
