#include "EndSignals.h"

#include "Log.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array numbers = {SIGTERM, SIGINT, SIGHUP};
/// Seconds that the event loop has before the next request is taken as the last.
constexpr time_t patience = 3;

// All that the handler touches; it may run between any two instructions of any thread.
std::atomic<int> writeEnd = -1;
std::atomic<time_t> firstRequest = 0;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<time_t>::is_always_lock_free);

std::array<struct sigaction, numbers.size()> before;

time_t secondsNow()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

void onSignal(int number)
{
    const int error = errno;
    time_t none = 0;
    if (!firstRequest.compare_exchange_strong(none, secondsNow())
        && secondsNow() - firstRequest > patience) {
        std::signal(number, SIG_DFL);
        raise(number);
    }
    const char byte = 0;
    // A full pipe holds requests enough.
    [[maybe_unused]] const ssize_t written = write(writeEnd, &byte, 1);
    errno = error;
}

void takeOver()
{
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < numbers.size(); ++i) {
        sigaction(numbers[i], nullptr, &before[i]);
        if (numbers[i] != SIGHUP || before[i].sa_handler != SIG_IGN)
            sigaction(numbers[i], &action, nullptr);
    }
}

}

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    Q_ASSERT(writeEnd < 0);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        qCWarning(lcStart) << "requests to end the program are not heard:" << qt_error_string();
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this](QSocketDescriptor end) {
        std::array<char, 16> bytes{};
        while (read(end, bytes.data(), bytes.size()) > 0) { }
        Q_EMIT received();
    });
    firstRequest = 0;
    writeEnd = ends[1];
    takeOver();
}

EndSignals::~EndSignals()
{
    if (!m_notifier)
        return;
    for (size_t i = 0; i < numbers.size(); ++i)
        sigaction(numbers[i], &before[i], nullptr);
    close(writeEnd.exchange(-1));
    const auto readEnd = int(m_notifier->socket());
    m_notifier.reset();
    close(readEnd);
}

#else

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
}

EndSignals::~EndSignals() = default;

#endif
