// Whom the program as it is built speaks to, by itself, from its first start on.
#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include "BuiltProgram.h"
#include "TestServer.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int longest = 60'000;
/// The page asks for this one when it has been there for a while, with the keyboard in a field.
constexpr char quietPage[] = R"(<title>quiet</title><input id=i spellcheck=true value="Wrods">
<script>i.focus(); setTimeout(() => fetch('/later'), 8000)</script>)";

/// Of a process and all that it started.
QSet<QByteArray> socketsOf(qint64 process)
{
    QMultiHash<qint64, qint64> children;
    const QStringList all = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
    for (const QString &each : all) {
        QFile stat("/proc/"_L1 + each + "/stat"_L1);
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> words = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (words.size() > 1)
            children.insert(words.at(1).toLongLong(), each.toLongLong());
    }
    QSet<QByteArray> sockets;
    QList<qint64> waiting{process};
    while (!waiting.isEmpty()) {
        const qint64 next = waiting.takeFirst();
        waiting += children.values(next);
        const QDir files(u"/proc/%1/fd"_s.arg(next));
        const QStringList names = files.entryList(QDir::Files | QDir::System | QDir::Hidden);
        for (const QString &each : names) {
            const QByteArray target =
                QFile::symLinkTarget(files.filePath(each)).section(u'/', -1).toLatin1();
            if (target.startsWith("socket:["))
                sockets.insert(target.mid(8).chopped(1));
        }
    }
    return sockets;
}

/// Whom they are connected to, or try to be, other than this machine.
QStringList strangersOf(qint64 process)
{
    const QSet<QByteArray> sockets = socketsOf(process);
    QStringList strangers;
    for (const char *table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        QFile file(QString::fromLatin1(table));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (words.size() < 10 || !sockets.contains(words.at(9)))
                continue;
            const QByteArray peer = words.at(2).split(':').first();
            const bool isHere = peer.endsWith("7F") || peer == QByteArray(24, '0') + "01000000";
            if (!isHere && peer.count('0') != peer.size())
                strangers.append(QString::fromLatin1(words.at(2)));
        }
    }
    return strangers;
}
}

class tst_Quiet : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void freshStartSpeaksToThePagesServerOnly();
    void whatAPageWantsIsCounted();

private:
    void start(const QByteArray &page);

    std::unique_ptr<TestServer> m_server;
    /// All that does not stay on this machine goes there.
    std::unique_ptr<QTcpServer> m_proxy;
    int m_asked = 0;
    std::unique_ptr<BuiltProgram> m_program;
    QProcess *m_process = nullptr;
};

void tst_Quiet::init()
{
    m_server = std::make_unique<TestServer>();
    m_proxy = std::make_unique<QTcpServer>();
    QVERIFY(m_proxy->listen(QHostAddress::LocalHost));
    m_asked = 0;
    connect(m_proxy.get(), &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_proxy->nextPendingConnection()) {
            ++m_asked;
            connect(socket, &QTcpSocket::readyRead, this, [socket] {
                qInfo() << "asked for:" << socket->readAll().split('\r').first();
                socket->abort();
            });
        }
    });
}

void tst_Quiet::cleanup()
{
    m_program.reset();
    m_proxy.reset();
    m_server.reset();
}

void tst_Quiet::start(const QByteArray &page)
{
    m_server->page("/home", page);
    m_server->page("/later", "later");
    m_program =
        std::make_unique<BuiltProgram>(QStringLiteral(ORVANE_PROGRAM), m_server->url(u"/home"_s));
    const QString proxy = u"http://127.0.0.1:%1"_s.arg(m_proxy->serverPort());
    for (const char *name : {"http_proxy", "https_proxy", "ftp_proxy", "all_proxy"})
        m_program->setVariable(QString::fromLatin1(name), proxy);
    m_process = &m_program->start();
}

void tst_Quiet::freshStartSpeaksToThePagesServerOnly()
{
    start(quietPage);
    QStringList strangers;
    QTRY_VERIFY_WITH_TIMEOUT(
        (strangers += strangersOf(m_process->processId()), m_server->count("/later") == 1),
        longest);
    QCOMPARE(m_process->state(), QProcess::Running);
    QCOMPARE(strangers, QStringList());
    QCOMPARE(m_asked, 0);
    QCOMPARE(m_server->count("/home"), 1);
}

/// The test can fail.
void tst_Quiet::whatAPageWantsIsCounted()
{
    start("<title>loud</title><img src='http://elsewhere.example/x.png'>");
    QTRY_VERIFY_WITH_TIMEOUT(m_asked > 0, longest);
}

QTEST_GUILESS_MAIN(tst_Quiet)

#include "tst_quiet.moc"
