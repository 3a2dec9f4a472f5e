#include "StartServer.h"

#include "Log.h"
#include "StartWords.h"

#include <QLocalSocket>

#include <algorithm>

namespace {
/// What each of them may hold is `StartRequest::largest`.
constexpr int mostVisits = 64;
}

StartServer::StartServer(const QString &socket, const QStringList &displays)
    : m_socket(socket)
    , m_displays(displays)
{
    setSocketOptions(UserAccessOption);
}

void StartServer::begin()
{
    // A killed program's.
    removeServer(m_socket);
    if (!listen(m_socket))
        qCWarning(lcStart) << "later starts are not heard:" << errorString();
}

void StartServer::incomingConnection(quintptr descriptor)
{
    auto connection = std::make_unique<QLocalSocket>();
    connection->setReadBufferSize(StartRequest::largest);
    if (!connection->setSocketDescriptor(qintptr(descriptor)))
        return;
    makeRoom();
    if (m_visits.size() >= mostVisits)
        return;
    const int id = ++m_last;
    auto *visit = new StartVisit(std::move(connection), id, this);
    m_visits.insert(id, visit);
    connect(visit, &StartVisit::asked, this, &StartServer::hear);
    connect(visit, &StartVisit::over, this, &StartServer::forget);
}

void StartServer::makeRoom()
{
    if (m_visits.size() < mostVisits)
        return;
    const auto idle = std::find_if(m_visits.cbegin(), m_visits.cend(),
                                   [](const StartVisit *visit) { return !visit->hasAsked(); });
    if (idle != m_visits.cend())
        forget(idle.key());
}

void StartServer::hear(const std::shared_ptr<StartCall> &call)
{
    StartVisit *visit = m_visits.value(call->id);
    if (!call->request.isSeenOn(m_displays)) {
        call->close(StartCall::State::GivenUp);
        visit->answer(StartWords::elsewhere);
        return;
    }
    if (m_promises && call->close(StartCall::State::Taken))
        visit->answer(StartWords::taken);
    emit called(call);
}

void StartServer::answer(int id, bool isTaken)
{
    StartVisit *visit = m_visits.value(id);
    if (visit && isTaken)
        visit->answer(StartWords::taken);
    else
        forget(id);
}

void StartServer::forget(int id)
{
    if (StartVisit *visit = m_visits.take(id))
        visit->deleteLater();
}
