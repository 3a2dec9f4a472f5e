#include "StartVisit.h"

#include "Log.h"

#include <QTimer>

#ifdef Q_OS_LINUX
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace {
/// Longer than any start waits.
constexpr int longestMs = 2000;

bool isOfThisUser(const QLocalSocket &connection)
{
#ifdef Q_OS_LINUX
    ucred other = {};
    socklen_t size = sizeof other;
    return ::getsockopt(int(connection.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &other, &size)
        == 0
        && other.uid == ::geteuid();
#else
    Q_UNUSED(connection)
    return true;
#endif
}
}

StartVisit::StartVisit(std::unique_ptr<QLocalSocket> connection, int id, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
    , m_id(id)
{
    if (!isOfThisUser(*m_connection)) {
        qCWarning(lcStart) << "another user's program is refused";
        m_connection->abort();
    }
    connect(m_connection.get(), &QLocalSocket::readyRead, this, &StartVisit::read);
    connect(m_connection.get(), &QLocalSocket::disconnected, this, &StartVisit::leave);
    QTimer::singleShot(longestMs, this, &StartVisit::leave);
    QMetaObject::invokeMethod(
        this, [this] { m_connection->isValid() ? read() : leave(); }, Qt::QueuedConnection);
}

StartVisit::~StartVisit()
{
    m_connection->disconnect(this);
    if (m_call)
        m_call->close(StartCall::State::GivenUp);
}

void StartVisit::read()
{
    if (m_call)
        return;
    m_line += m_connection->read(StartRequest::largest + 1 - m_line.size());
    const bool isWhole = m_line.endsWith('\n');
    if (!isWhole && m_line.size() <= StartRequest::largest)
        return;
    const auto request = isWhole ? StartRequest::from(m_line) : std::nullopt;
    if (!request) {
        leave();
        return;
    }
    m_line.clear();
    m_call = std::make_shared<StartCall>();
    m_call->id = m_id;
    m_call->request = *request;
    emit asked(m_call);
}

void StartVisit::answer(QByteArrayView word)
{
    m_connection->write(word.data(), word.size());
    m_connection->disconnectFromServer();
}

void StartVisit::leave()
{
    if (m_call)
        m_call->close(StartCall::State::GivenUp);
    emit over(m_id);
}
