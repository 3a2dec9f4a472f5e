#include "DeskStore.h"

#include "DeskFile.h"
#include "LastDeskFile.h"

#include <QDir>
#include <QFileInfo>

namespace {
constexpr int retryMs = 5000;
}

DeskStore::DeskStore(QObject *parent)
    : QObject(parent)
{
    m_worker.setMaxThreadCount(1);
    m_again.setSingleShot(true);
    m_again.setInterval(retryMs);
    connect(&m_again, &QTimer::timeout, this, &DeskStore::start);
}

DeskStore::~DeskStore()
{
    m_worker.waitForDone();
}

void DeskStore::put(const Desk &desk)
{
    m_next = desk;
    start();
}

void DeskStore::flush()
{
    m_worker.waitForDone();
    end(m_write.get());
    start();
    m_worker.waitForDone();
    end(m_write.get());
}

void DeskStore::start()
{
    if (m_write || !m_next)
        return;
    m_again.stop();
    const Desk desk = *std::exchange(m_next, std::nullopt);
    if (desk == m_known)
        return;
    m_write = std::make_shared<Write>(Write{desk});
    m_worker.start([this, write = m_write] {
        const QString path = LastDeskFile::path();
        QDir().mkpath(QFileInfo(path).path());
        // Before the first page that may end the program has come.
        m_hasMark = m_hasMark || LastDeskFile::beginRun();
        write->isWritten = bool(DeskFile::save(path, write->desk));
        QMetaObject::invokeMethod(
            this, [this, write] { end(write.get()); }, Qt::QueuedConnection);
    });
}

/// Nothing is left to do where that write has been ended by what waited for it.
void DeskStore::end(const Write *write)
{
    if (!write || write != m_write.get())
        return;
    const std::shared_ptr<Write> done = std::exchange(m_write, nullptr);
    if (done->isWritten) {
        m_known = done->desk;
        start();
        return;
    }
    if (!m_next)
        m_next = done->desk;
    m_again.start();
}
