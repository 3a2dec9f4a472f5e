#include "Measurement.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>

#include "ProcessMemory.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int limitMs = 30000;
/// After the page is painted, so that what a program does next is counted too.
constexpr int settleMs = 1500;

const QByteArray page = R"(<!DOCTYPE html><title>Start</title><h1>Start</h1>
<p>One paragraph of text, as small as a page can be.</p>
<script>requestAnimationFrame(() => requestAnimationFrame(() => fetch('/painted')));</script>)";

void writeLinks(const QDir &home, int count)
{
    if (count > 0 && !home.mkpath(u"Favorites/Links"_s))
        qFatal("no folder of links");
    for (int i = 0; i < count; ++i) {
        QFile file(home.filePath(u"Favorites/Links/Link %1.url"_s.arg(i, 4, 10, QChar(u'0'))));
        if (!file.open(QIODevice::WriteOnly)
            || file.write("[InternetShortcut]\r\nURL=http://127.0.0.1/" + QByteArray::number(i)
                          + "\r\n")
                < 0)
            qFatal("no links");
    }
}

QByteArray response(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

}

Measurement::Measurement()
{
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no port to serve the page on");
}

bool Measurement::serveUntilPainted()
{
    const QDeadlineTimer limit(limitMs);
    while (!limit.hasExpired()) {
        if (!m_server.waitForNewConnection(int(limit.remainingTime())))
            return false;
        QTcpSocket *socket = m_server.nextPendingConnection();
        // An engine opens connections ahead that never ask for anything.
        while (!socket->canReadLine() && socket->waitForReadyRead(50)) { }
        const QByteArray request = socket->readLine();
        if (request.startsWith("GET /painted"))
            return true;
        socket->write(response(request.startsWith("GET / ") ? page : QByteArray()));
        socket->waitForBytesWritten();
        socket->disconnectFromHost();
    }
    return false;
}

Start Measurement::run(const QString &program, const QStringList &environment, int links)
{
    const QTemporaryDir home;
    writeLinks(QDir(home.path()), links);
    QProcess process;
    QStringList full = QProcess::systemEnvironment();
    full += environment;
    full += u"HOME="_s + home.path();
    full += u"XDG_CONFIG_HOME="_s + home.filePath(u"config"_s);
    full += u"XDG_DATA_HOME="_s + home.filePath(u"data"_s);
    full += u"XDG_CACHE_HOME="_s + home.filePath(u"cache"_s);
    process.setEnvironment(full);
    process.setStandardErrorFile(QProcess::nullDevice());

    QElapsedTimer clock;
    clock.start();
    process.start(program, {u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort())});
    Start result;
    if (!serveUntilPainted())
        qFatal("%s painted nothing", qPrintable(program));
    result.milliseconds = double(clock.nsecsElapsed()) / 1e6;
    process.waitForFinished(settleMs);
    result.megabytes = double(treeMemory(process.processId())) / 1024;
    process.kill();
    process.waitForFinished();
    // What the engine asked for meanwhile is not the next start's.
    while (QTcpSocket *socket = m_server.nextPendingConnection())
        delete socket;
    return result;
}
