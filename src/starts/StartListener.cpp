#include "StartListener.h"

#include "StartPlace.h"
#include "StartServer.h"

StartListener::StartListener(std::unique_ptr<StartPlace> place)
    : m_place(std::move(place))
{
    if (!m_place)
        return;
    m_server = new StartServer(m_place->socket(), StartRequest::displaysHere());
    m_server->moveToThread(&m_thread);
    connect(&m_thread, &QThread::started, m_server, &StartServer::begin);
    connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    connect(m_server, &StartServer::called, this, &StartListener::take);
    m_thread.start();
}

StartListener::~StartListener()
{
    end();
}

void StartListener::end()
{
    m_thread.quit();
    m_thread.wait();
    m_server = nullptr;
    m_handler = [](const StartRequest &) { return false; };
}

void StartListener::begin(const Handler &handler)
{
    m_handler = handler;
    const QList<StartRequest> early = std::exchange(m_early, {});
    for (const StartRequest &request : early)
        handler(request);
    if (m_server)
        QMetaObject::invokeMethod(m_server, &StartServer::endPromises, Qt::QueuedConnection);
}

void StartListener::take(const std::shared_ptr<StartCall> &call)
{
    const bool isPromised = call->state == StartCall::State::Taken;
    if (!isPromised && !call->close(StartCall::State::Taken))
        return;
    if (!m_handler) {
        m_early.append(call->request);
        return;
    }
    const bool isTaken = m_handler(call->request);
    if (!isPromised && m_server) {
        QMetaObject::invokeMethod(
            m_server, [server = m_server, id = call->id, isTaken] { server->answer(id, isTaken); },
            Qt::QueuedConnection);
    }
}
