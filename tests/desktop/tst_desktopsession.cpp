#include "DesktopNotice.h"
#include "DesktopPrograms.h"
#include "DesktopSession.h"
#include "FakeOpener.h"
#include "TaskBarProgress.h"

#include <QDesktopServices>
#include <QSignalSpy>
#include <QtTest>
#include <algorithm>

using namespace Qt::StringLiterals;

/// Other programs of the desktop, on a real bus, as they are there, refuse, or do not answer.
class tst_DesktopSession : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void noticeShowsMarkupAsItIs_data();
    void noticeShowsMarkupAsItIs();
    void nextNoticeTakesThePlaceOfTheLast();
    void clickOnTheNoticeIsTold();
    void closedNoticeIsTold();
    void noticeIsTakenAway();
    void pictureIsSent();
    void noServiceIsToldAsGone();
    void nobodyWaitsForASilentService();
    void noServiceIsNoFailure();
    void progressIsToldThinned();
    void hiddenProgressIsToldOnce();
    void filesAreShownInTheirFolder();
    void withoutAFileManagerTheFolderOpens();
    void filesAreOpened();
    void refusedFileIsTold_data();
    void refusedFileIsTold();
    void missingOpenerIsTold();

private:
    const FakeNotifications::Notice *find(const QString &title) const;

    std::unique_ptr<DesktopSession> m_session;
};

void tst_DesktopSession::initTestCase()
{
    m_session = std::make_unique<DesktopSession>();
    QVERIFY(m_session->isRunning());
}

void tst_DesktopSession::init()
{
    m_session->setNotifying(true);
    m_session->setFileManaging(true);
    m_session->notifications.shown.clear();
    m_session->notifications.isSilent = false;
    m_session->files.shown.clear();
    m_session->progress.clear();
}

/// Null while none of that title was shown.
const FakeNotifications::Notice *tst_DesktopSession::find(const QString &title) const
{
    const QList<FakeNotifications::Notice> &shown = m_session->notifications.shown;
    const auto found =
        std::find_if(shown.begin(), shown.end(), [&title](const FakeNotifications::Notice &each) {
            return each.title == title;
        });
    return found == shown.end() ? nullptr : &*found;
}

void tst_DesktopSession::noticeShowsMarkupAsItIs_data()
{
    QTest::addColumn<bool>("takesMarkup");
    QTest::addColumn<QString>("body");
    QTest::newRow("service with markup") << true << u"&lt;b&gt;x&lt;/b&gt; &amp; y"_s;
    QTest::newRow("service without") << false << u"<b>x</b> & y"_s;
}

void tst_DesktopSession::noticeShowsMarkupAsItIs()
{
    QFETCH(bool, takesMarkup);
    QFETCH(QString, body);
    m_session->notifications.capabilities =
        takesMarkup ? QStringList{u"body"_s, u"body-markup"_s} : QStringList{u"body"_s};
    DesktopNotice notice;
    notice.show(u"Title <i>"_s, u"<b>x</b> & y"_s, u"Show"_s);
    QTRY_COMPARE(m_session->notifications.shown.size(), 1);
    const FakeNotifications::Notice shown = m_session->notifications.shown.first();
    QCOMPARE(shown.program, u"Orvane"_s);
    QCOMPARE(shown.title, u"Title <i>"_s);
    QCOMPARE(shown.body, body);
    QCOMPARE(shown.actions, QStringList({u"default"_s, u"Show"_s}));
}

void tst_DesktopSession::nextNoticeTakesThePlaceOfTheLast()
{
    DesktopNotice notice;
    notice.show(u"one"_s, {}, {});
    QTRY_VERIFY(find(u"one"_s));
    const FakeNotifications::Notice first = *find(u"one"_s);
    QCOMPARE(first.replaced, 0U);
    // The service's number is known with its answer.
    QTRY_VERIFY([&] {
        notice.show(u"two"_s, {}, {});
        QCoreApplication::processEvents();
        return m_session->notifications.shown.last().replaced == first.number;
    }());
}

void tst_DesktopSession::clickOnTheNoticeIsTold()
{
    DesktopNotice notice;
    const QSignalSpy chosen(&notice, &DesktopNotice::chosen);
    notice.show(u"clicked"_s, {}, u"Show"_s);
    // Calls of a notice that has gone may still be on their way.
    QTRY_VERIFY(find(u"clicked"_s));
    const uint number = find(u"clicked"_s)->number;
    QTRY_VERIFY([&] {
        emit m_session->notifications.ActionInvoked(number + 7, u"default"_s);
        emit m_session->notifications.ActionInvoked(number, u"default"_s);
        QCoreApplication::processEvents();
        return !chosen.isEmpty();
    }());
}

void tst_DesktopSession::closedNoticeIsTold()
{
    DesktopNotice notice;
    const QSignalSpy gone(&notice, &DesktopNotice::gone);
    notice.show(u"closed"_s, {}, u"Show"_s);
    QTRY_VERIFY(find(u"closed"_s));
    const uint number = find(u"closed"_s)->number;
    QTRY_VERIFY([&] {
        emit m_session->notifications.NotificationClosed(number + 7, 2);
        emit m_session->notifications.NotificationClosed(number, 2);
        QCoreApplication::processEvents();
        return !gone.isEmpty();
    }());
    QCOMPARE(gone.size(), 1);
}

/// Also where the service has not answered yet.
void tst_DesktopSession::noticeIsTakenAway()
{
    DesktopNotice notice;
    const QSignalSpy gone(&notice, &DesktopNotice::gone);
    for (const bool waits : {false, true}) {
        m_session->notifications.shown.clear();
        m_session->notifications.closed.clear();
        notice.show(u"away"_s, {}, u"Show"_s);
        if (waits) {
            QTRY_VERIFY(find(u"away"_s));
            QTRY_VERIFY((notice.close(), !m_session->notifications.closed.isEmpty()));
            QCOMPARE(m_session->notifications.closed.first(), find(u"away"_s)->number);
        } else {
            notice.close();
            DesktopNotice other;
            other.show(u"other"_s, {}, {});
            QTRY_VERIFY(find(u"other"_s));
            const auto *away = find(u"away"_s);
            QVERIFY(!away || m_session->notifications.closed.contains(away->number));
        }
    }
    QVERIFY(gone.isEmpty());
}

void tst_DesktopSession::pictureIsSent()
{
    DesktopNotice notice;
    QImage picture(2000, 3000, QImage::Format_RGB32);
    picture.fill(Qt::red);
    notice.show(u"picture"_s, {}, u"Show"_s, picture);
    QTRY_VERIFY(find(u"picture"_s));
    QVERIFY(find(u"picture"_s)->hasPicture);
    notice.show(u"none"_s, {}, u"Show"_s);
    QTRY_VERIFY(find(u"none"_s));
    QVERIFY(!find(u"none"_s)->hasPicture);
}

void tst_DesktopSession::noServiceIsToldAsGone()
{
    m_session->setNotifying(false);
    DesktopNotice notice;
    const QSignalSpy gone(&notice, &DesktopNotice::gone);
    notice.show(u"one"_s, {}, {});
    QTRY_COMPARE(gone.size(), 1);
}

void tst_DesktopSession::nobodyWaitsForASilentService()
{
    m_session->notifications.isSilent = true;
    DesktopNotice notice;
    notice.show(u"one"_s, {}, {});
    // Were this waited for, the service, which lives in this thread, could not even be asked.
    m_session->notifications.isSilent = false;
    DesktopNotice other;
    other.show(u"two"_s, {}, {});
    QTRY_VERIFY(!m_session->notifications.shown.isEmpty());
}

void tst_DesktopSession::noServiceIsNoFailure()
{
    m_session->setNotifying(false);
    DesktopNotice notice;
    notice.show(u"one"_s, {}, {});
    m_session->setNotifying(true);
    DesktopNotice other;
    other.show(u"two"_s, {}, {});
    QTRY_VERIFY(!m_session->notifications.shown.isEmpty());
}

void tst_DesktopSession::progressIsToldThinned()
{
    TaskBarProgress bar;
    for (int i = 0; i <= 1000; ++i)
        bar.show(i / 1000.0);
    QTRY_VERIFY(!m_session->progress.isEmpty());
    const auto [entry, first] = m_session->progress.first();
    QCOMPARE(entry, u"application://com.example.Orvane.desktop"_s);
    QCOMPARE(first.value(u"progress-visible"_s), true);
    for (int i = 0; i <= 500; ++i)
        bar.show(i / 1000.0);
    QTRY_COMPARE(m_session->progress.last().second.value(u"progress"_s), 0.5);
    QVERIFY2(m_session->progress.size() <= 3,
             qPrintable(QString::number(m_session->progress.size())));
}

void tst_DesktopSession::hiddenProgressIsToldOnce()
{
    TaskBarProgress bar;
    bar.show(0.25);
    QTRY_COMPARE(m_session->progress.size(), 1);
    bar.hide();
    bar.hide();
    QTRY_COMPARE(m_session->progress.size(), 2);
    QCOMPARE(m_session->progress.last().second.value(u"progress-visible"_s), false);
    bar.hide();
    bar.show(0.5);
    QTRY_COMPARE(m_session->progress.size(), 3);
}

void tst_DesktopSession::filesAreShownInTheirFolder()
{
    const FakeOpener opener;
    DesktopPrograms::showInFolder({u"/some where/a%20b ü.txt"_s, u"/some where/c"_s}, [] {});
    QTRY_COMPARE(m_session->files.shown.size(), 1);
    QCOMPARE(
        m_session->files.shown.first(),
        QStringList({u"file:///some%20where/a%2520b%20%C3%BC.txt"_s, u"file:///some%20where/c"_s}));
    QCOMPARE(opener.opened(), QStringList());
}

void tst_DesktopSession::withoutAFileManagerTheFolderOpens()
{
    m_session->setFileManaging(false);
    const FakeOpener opener;
    DesktopPrograms::showInFolder({u"/some where/a.txt"_s}, [] {});
    QTRY_COMPARE(opener.opened(), QStringList(u"/some where"_s));
}

void tst_DesktopSession::filesAreOpened()
{
    const FakeOpener opener;
    bool isTold = false;
    DesktopPrograms::open(u"/some where/$(touch x) 'a' %u.txt"_s, [&isTold] { isTold = true; });
    QTRY_COMPARE(opener.opened(), QStringList(u"/some where/$(touch x) 'a' %u.txt"_s));
    QVERIFY(!isTold);
}

void tst_DesktopSession::refusedFileIsTold_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("no such file") << 2;
    QTest::newRow("no program") << 3;
    QTest::newRow("failed") << 4;
}

void tst_DesktopSession::refusedFileIsTold()
{
    QFETCH(int, status);
    const FakeOpener opener;
    opener.setStatus(status);
    int told = 0;
    QTest::ignoreMessage(QtWarningMsg, "no program took \"/a.txt\"");
    DesktopPrograms::open(u"/a.txt"_s, [&told] { ++told; });
    QTRY_COMPARE(told, 1);
}

void tst_DesktopSession::missingOpenerIsTold()
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    QDesktopServices::setUrlHandler(u"file"_s, this, "noSuchHandler");
    int told = 0;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"."_s));
    DesktopPrograms::open(u"/a.txt"_s, [&told] { ++told; });
    QDesktopServices::unsetUrlHandler(u"file"_s);
    qputenv("PATH", path);
    QCOMPARE(told, 1);
}

QTEST_MAIN(tst_DesktopSession)
#include "tst_desktopsession.moc"
