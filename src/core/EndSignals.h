#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;

/// Makes the system's requests to end the program (SIGTERM, SIGINT and SIGHUP; the last not where
/// the program was started to outlive it) a signal in the event loop. Where that does not come to
/// run, a request that is made again a while later ends the process at once. At most one exists.
class EndSignals : public QObject {
    Q_OBJECT

public:
    explicit EndSignals(QObject *parent = nullptr);
    /// What the system did before is done again.
    ~EndSignals() override;

Q_SIGNALS:
    void received();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
