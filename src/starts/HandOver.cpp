#include "HandOver.h"

#include "Log.h"
#include "StartRequest.h"
#include "StartWords.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

namespace {
constexpr int longestMs = 1000;
constexpr int pauseMs = 20;

/// What the other program says; empty where it says nothing in time.
QByteArray ask(const QString &socket, const QByteArray &request, const QDeadlineTimer &deadline)
{
    const auto left = [&deadline] { return int(deadline.remainingTime()); };
    QLocalSocket other;
    other.connectToServer(socket);
    if (!other.waitForConnected(left()))
        return {};
    other.write(request);
    QByteArray answer;
    while (!answer.endsWith('\n') && answer.size() < StartWords::elsewhere.size()
           && other.waitForReadyRead(left()))
        answer += other.readAll();
    return answer;
}
}

HandOver HandOver::attempt(const StartRequest &request)
{
    const QByteArray bytes = request.bytes();
    const QDeadlineTimer deadline(longestMs);
    const QString folder = StartPlace::folder();
    while (!folder.isEmpty()) {
        if (std::unique_ptr<StartPlace> place = StartPlace::take())
            return {false, std::move(place)};
        if (bytes.size() > StartRequest::largest)
            break;
        const QByteArray answer = ask(StartPlace::socketIn(folder), bytes, deadline);
        if (answer == StartWords::taken)
            return {true, nullptr};
        if (answer == StartWords::elsewhere || deadline.hasExpired())
            break;
        // It is about to listen, or about to end. Nothing tells of either (a lock that another
        // program gives back has no event), and here no event loop runs yet.
        QThread::msleep(pauseMs);
    }
    qCInfo(lcStart) << "this program has a frame of its own";
    return {};
}
