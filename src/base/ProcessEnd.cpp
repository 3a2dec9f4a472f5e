#include "ProcessEnd.h"

#include "Log.h"

#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

ProcessEnd::ProcessEnd(qint64 process, const std::function<void()> &then)
{
    if (process <= 0)
        return;
    m_process = static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0));
    if (m_process < 0 && errno == ESRCH) {
        QTimer::singleShot(0, this, then);
    } else if (m_process < 0) {
        qCWarning(lcEngine) << "the end of process" << process << "cannot be seen: error" << errno;
    } else {
        auto *notifier = new QSocketNotifier(m_process, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [notifier, then] {
            notifier->setEnabled(false);
            then();
        });
    }
}

ProcessEnd::~ProcessEnd()
{
    if (m_process < 0)
        return;
    qDeleteAll(findChildren<QSocketNotifier *>());
    close(m_process);
}
