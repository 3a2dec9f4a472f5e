#pragma once

#include "StartRequest.h"

#include <QList>
#include <QObject>
#include <QThread>

#include <functional>
#include <memory>

class StartPlace;
class StartServer;
struct StartCall;

/// Hears, from its making on, of the starts that are handed over to this program. What comes while
/// the program itself is still starting waits for `begin`. Nothing another program sends, or does
/// not send, holds the interface.
class StartListener : public QObject {
    Q_OBJECT

public:
    /// Where there is no place nobody is heard.
    explicit StartListener(std::unique_ptr<StartPlace> place);
    ~StartListener() override;

    /// Told each request; returns at once. False: it is not done, and the start goes on by itself.
    using Handler = std::function<bool(const StartRequest &request)>;
    void begin(const Handler &handler);
    /// Nobody is heard any more; the place is kept until this goes, so that a start that waits for
    /// it finds what the program had in use free.
    void end();

private:
    void take(const std::shared_ptr<StartCall> &call);

    std::unique_ptr<StartPlace> m_place;
    QThread m_thread;
    /// The thread's.
    StartServer *m_server = nullptr;
    Handler m_handler;
    /// Came before `begin`.
    QList<StartRequest> m_early;
};
