#include "ConsoleBrake.h"

#include "Log.h"

#include <QCoreApplication>
#include <QSet>
#include <QTimer>
#include <utility>
#ifdef Q_OS_UNIX
#include <csignal>
#endif

namespace {
constexpr int linesPerSecond = 1000;
constexpr int second = 1000;
/// Milliseconds.
constexpr int rest = 400;

QSet<qint64> &restingProcesses()
{
    static QSet<qint64> processes;
    return processes;
}

void resume(qint64 process)
{
#ifdef Q_OS_UNIX
    if (restingProcesses().remove(process))
        kill(static_cast<pid_t>(process), SIGCONT);
#endif
}
}

bool ConsoleBrake::isTooMany()
{
    if (!m_second.isValid() || m_second.hasExpired(second)) {
        m_second.start();
        m_lines = 0;
    }
    return ++m_lines > linesPerSecond;
}

void ConsoleBrake::apply(qint64 process)
{
#ifdef Q_OS_UNIX
    if (process <= 0 || restingProcesses().contains(process)
        || kill(static_cast<pid_t>(process), SIGSTOP) != 0)
        return;
    restingProcesses().insert(process);
    m_resting = process;
    qCInfo(lcEngine) << "process" << process << "floods the console and rests for a moment";
    QTimer::singleShot(rest, qApp, [process] { resume(process); });
#endif
}

void ConsoleBrake::release()
{
    resume(std::exchange(m_resting, 0));
}
