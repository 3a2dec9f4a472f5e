#include "../Session.h"
#include "DesktopSession.h"
#include "DownloadList.h"
#include "DownloadStrip.h"
#include "DownloadsWindow.h"
#include "DripServer.h"
#include "EngineProfile.h"
#include "EngineTest.h"

#include <QStandardPaths>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;
using State = Download::State;

/// A file from a real server through the real engine, as the user sees it and what he does with it.
class tst_DownloadsSeen : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void pausedResumedAndShown();
    void cancelledOneLeavesNothing();
    void severalAreTaken();
    void windowsOfPagesCloseWithoutEndingThem();

private:
    static QString folder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    }
    static QStringList kept()
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QByteArray bytesOf(const QString &name)
    {
        QFile file(folder() + u'/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static const Download *entry(const QString &name);
    static bool is(const QString &name, State state)
    {
        const Download *download = entry(name);
        return download && download->state == state;
    }
    void begin(const QString &name) const;
    DownloadsWindow *window() const { return m_program->frame->findChild<DownloadsWindow *>(); }
    DownloadStrip &strip() const { return *m_program->frame->findChild<DownloadStrip *>(); }
    QTreeView &list() const { return *window()->findChild<QTreeView *>(); }
    void press(const char *name) const;

    std::unique_ptr<DesktopSession> m_desktop;
    std::unique_ptr<Session> m_program;
    std::unique_ptr<DripServer> m_server;
    QByteArray m_body;
};

void tst_DownloadsSeen::initTestCase()
{
    m_desktop = std::make_unique<DesktopSession>();
    QVERIFY(m_desktop->isRunning());
    m_desktop->setFileManaging(true);
    while (m_body.size() < 2000000)
        m_body.append(QByteArray::number(m_body.size())).append(' ');
}

void tst_DownloadsSeen::init()
{
    m_server = std::make_unique<DripServer>(m_body);
    m_program = std::make_unique<Session>();
    m_program->start(m_program->server.url(u"/home"_s));
    QTRY_VERIFY(m_program->shows(m_program->server.url(u"/home"_s)));
    m_program->frame->activateWindow();
    QTRY_VERIFY(m_program->frame->isActiveWindow());
}

void tst_DownloadsSeen::cleanup()
{
    QStringList ids;
    for (const Download &download : downloadList().all())
        ids.append(download.id);
    downloadList().remove(ids);
    m_program.reset();
    dropEngineProfile();
    m_server.reset();
    QDir(folder()).removeRecursively();
    m_desktop->files.shown.clear();
}

const Download *tst_DownloadsSeen::entry(const QString &name)
{
    for (const Download &download : downloadList().all()) {
        if (download.name == name)
            return &download;
    }
    return nullptr;
}

void tst_DownloadsSeen::begin(const QString &name) const
{
    const int before = m_server->waiting();
    m_program->frame->navigateActive(m_server->url(name));
    QTRY_COMPARE(m_server->waiting(), before + 1);
    QTRY_VERIFY(is(name, State::Running));
    QTRY_VERIFY(entry(name)->received > 0);
}

void tst_DownloadsSeen::press(const char *name) const
{
    auto *button = window()->findChild<QToolButton *>(QLatin1StringView(name));
    QTRY_VERIFY2(button->isEnabled(), name);
    QTest::mouseClick(button, Qt::LeftButton);
}

void tst_DownloadsSeen::pausedResumedAndShown()
{
    const QString name = u"parcel.bin"_s;
    begin(name);
    QVERIFY(strip().isVisible());
    QVERIFY(strip().accessibleName().contains(name));
    QVERIFY2(!kept().contains(name), "not under its name before it is whole");
    QTest::mouseClick(&strip(), Qt::LeftButton);
    QTRY_VERIFY(window());
    QCOMPARE(list().model()->index(0, 0).data().toString(), name);
    list().selectAll();
    press("cmdPause");
    QTRY_VERIFY(is(name, State::Paused));
    QTRY_VERIFY(strip().accessibleName().contains("Paused"_L1));
    press("cmdResume");
    QTRY_VERIFY(is(name, State::Running));
    m_server->finish();
    QTRY_VERIFY(is(name, State::Done));
    QTRY_VERIFY(!strip().isVisible());
    QCOMPARE(kept(), QStringList(name));
    QCOMPARE(bytesOf(name), m_body);
    press("cmdOpenFolder");
    QTRY_COMPARE(m_desktop->files.shown.size(), 1);
    QVERIFY(m_desktop->files.shown.first().first().endsWith("/parcel.bin"_L1));
}

void tst_DownloadsSeen::cancelledOneLeavesNothing()
{
    begin(u"parcel.bin"_s);
    QTest::keyClick(m_program->frame.get(), Qt::Key_J, Qt::ControlModifier);
    QTRY_VERIFY(window());
    list().selectAll();
    press("cmdCancel");
    QTRY_VERIFY(is(u"parcel.bin"_s, State::Cancelled));
    QTRY_VERIFY(!strip().isVisible());
    QTRY_COMPARE(kept(), QStringList());
    press("cmdRemove");
    QTRY_COMPARE(list().model()->rowCount(), 0);
}

void tst_DownloadsSeen::severalAreTaken()
{
    begin(u"one.bin"_s);
    begin(u"two.bin"_s);
    begin(u"three.bin"_s);
    QTRY_VERIFY(strip().accessibleName().startsWith("Downloads: 3"_L1));
    m_server->finish();
    for (const char *name : {"one.bin", "two.bin", "three.bin"}) {
        QTRY_VERIFY(is(QLatin1StringView(name), State::Done));
        QCOMPARE(bytesOf(QLatin1StringView(name)), m_body);
    }
    QTRY_VERIFY(!strip().isVisible());
}

void tst_DownloadsSeen::windowsOfPagesCloseWithoutEndingThem()
{
    begin(u"parcel.bin"_s);
    m_program->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_program->windows(), 0);
    QVERIFY(strip().isVisible());
    m_server->finish();
    QTRY_VERIFY(is(u"parcel.bin"_s, State::Done));
    QCOMPARE(bytesOf(u"parcel.bin"_s), m_body);
}

ORVANE_ENGINE_TEST_MAIN(tst_DownloadsSeen)
#include "tst_downloadsseen.moc"
