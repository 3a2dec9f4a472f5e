#include "../Session.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "VisitFile.h"
#include "VisitHistory.h"

#include <QWebEnginePage>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

/// Which pages of a real server, in the real engine, come into the file of the visits.
class tst_Visits : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pagesWithTheirTitles();
    void namesAndPasswordsStayOut();
    void ownPagesStayOut();
    void pagesKeptOutStayOut();
    void whatFailsStaysOut();
    void redirectedPagesOnceAndWhereTheyEnd();
    void changedAddressesKeepAPace();
    void hostileTitles();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    void go(const QString &path) const
    {
        m_session->frame->navigateActive(url(path));
        QTRY_VERIFY(m_session->shows(url(path)));
    }
    /// The window is called so, soon: what is written before that has another title.
    bool hasTitle(const QString &title) const
    {
        return QTest::qWaitFor([&] { return m_session->active()->windowTitle() == title; });
    }
    /// Address and title of each line; all that there is by now is in the file then.
    QStringList lines() const;
    void run(const QString &script) const
    {
        m_session->active()->findChild<QWebEngineView *>()->page()->runJavaScript(script);
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<VisitHistory> m_history;
};

void tst_Visits::init()
{
    m_session = std::make_unique<Session>();
    m_history = std::make_unique<VisitHistory>(VisitFile::path());
    m_session->start(url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QVERIFY(hasTitle(u"home page"_s));
    QCOMPARE(lines(), QStringList{url(u"/home"_s) + u" home page"_s});
}

void tst_Visits::cleanup()
{
    m_session->end();
    m_history.reset();
    dropEngineProfile();
    m_session.reset();
}

QStringList tst_Visits::lines() const
{
    m_history->flush();
    QStringList lines;
    const QByteArrayList all = m_session->folder.read(u"AppData/History.txt"_s).split('\n');
    for (const QByteArray &each : all) {
        if (const auto visit = VisitLine::read(each))
            lines.append(QString::fromUtf8(visit->address) + u' '
                         + QString::fromUtf8(visit->title));
    }
    return lines;
}

void tst_Visits::pagesWithTheirTitles()
{
    go(u"/one"_s);
    QVERIFY(hasTitle(u"the quick brown fox"_s));
    QTRY_COMPARE(lines().value(1), url(u"/one"_s) + u" the quick brown fox"_s);
    go(u"/two"_s);
    QVERIFY(hasTitle(u"Two"_s));
    QTRY_COMPARE(lines().value(2), url(u"/two"_s) + u" Two"_s);
    QCOMPARE(lines().size(), 3);
}

void tst_Visits::namesAndPasswordsStayOut()
{
    QString secret = url(u"/one"_s);
    secret.replace(u"http://"_s, u"http://me:secret@"_s);
    m_session->frame->navigateActive(secret);
    QTRY_COMPARE(lines().size(), 2);
    QVERIFY(lines().last().startsWith(url(u"/one"_s)));
    QVERIFY(!m_session->folder.read(u"AppData/History.txt"_s).contains("secret"));
}

void tst_Visits::ownPagesStayOut()
{
    for (const QString &own : {u"orvane:start"_s, u"orvane:guide"_s}) {
        m_session->frame->navigateActive(own);
        QTRY_VERIFY(m_session->shows(own));
    }
    go(u"/one"_s);
    QTRY_COMPARE(lines().size(), 2);
    QVERIFY(lines().last().startsWith(url(u"/one"_s)));
}

void tst_Visits::pagesKeptOutStayOut()
{
    m_session->choose("mnuToolsAddPagesToHistory");
    QCOMPARE(m_session->frame->navigationFlags(), NavFlags::NoHistory);
    go(u"/one"_s);
    run(u"history.pushState({}, '', '/pushed'); document.title = 'pushed'"_s);
    QTRY_COMPARE(m_session->location(), url(u"/pushed"_s));
    m_session->choose("mnuToolsAddPagesToHistory");
    go(u"/two"_s);
    QTRY_COMPARE(lines().size(), 2);
    QVERIFY(lines().last().startsWith(url(u"/two"_s)));
}

void tst_Visits::whatFailsStaysOut()
{
    // Nobody listens there.
    const QString dead = u"http://127.0.0.1:1/"_s;
    m_session->frame->navigateActive(dead);
    QTRY_VERIFY(m_session->shows(dead));
    m_session->frame->navigateActive(u"data:text/html,<title>data</title>"_s);
    m_session->frame->navigateActive(u"about:blank"_s);
    go(u"/two"_s);
    QTRY_COMPARE(lines().size(), 2);
    QVERIFY(lines().last().startsWith(url(u"/two"_s)));
}

void tst_Visits::redirectedPagesOnceAndWhereTheyEnd()
{
    m_session->server.redirect("/from", "/two");
    m_session->frame->navigateActive(url(u"/from"_s));
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QVERIFY(hasTitle(u"Two"_s));
    QTRY_COMPARE(lines().size(), 2);
    QCOMPARE(lines().last(), url(u"/two"_s) + u" Two"_s);
}

void tst_Visits::changedAddressesKeepAPace()
{
    m_session->server.page("/flood",
                           "<title>flood</title><script>onload = () => {"
                           "for (let i = 0; i < 100; ++i) history.pushState({}, '', '/flood/' + i);"
                           "}</script>");
    m_session->frame->navigateActive(url(u"/flood"_s));
    QTRY_COMPARE(m_session->location(), url(u"/flood/99"_s));
    QVERIFY(hasTitle(u"flood"_s));
    QTRY_COMPARE(lines().value(lines().size() - 1), url(u"/flood/99"_s) + u" flood"_s);
    QVERIFY2(lines().size() < 20, qPrintable(QString::number(lines().size())));
}

void tst_Visits::hostileTitles()
{
    m_session->server.page("/hostile",
                           "<script>document.title = 'a\\nb\\t' + 'x'.repeat(10000000)</script>");
    m_session->frame->navigateActive(url(u"/hostile"_s));
    QTRY_COMPARE(lines().size(), 2);
    QTRY_VERIFY(m_session->shows(url(u"/hostile"_s)));
    QVERIFY(m_session->folder.read(u"AppData/History.txt"_s).size() < 2000);
}

ORVANE_ENGINE_TEST_MAIN(tst_Visits)
#include "tst_visits.moc"
