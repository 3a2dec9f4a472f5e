#include "PipesAndDevices.h"

#include "Log.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <sys/stat.h>
#include <thread>
#endif

#ifdef Q_OS_UNIX

namespace {
using namespace std::chrono_literals;

constexpr auto patience = 1s;
/// Questions that no disk has answered yet; each has a thread, which nobody can end.
constexpr int mostOpen = 2;

bool isNeitherFileNorFolder(const QByteArray &path)
{
    struct stat found = {};
    return ::stat(path.constData(), &found) == 0 && !S_ISREG(found.st_mode)
        && !S_ISDIR(found.st_mode);
}
}

bool isPipeOrDevice(const QString &path)
{
    static std::atomic<int> open = 0;
    if (open >= mostOpen)
        return false;
    ++open;
    auto answer = std::make_shared<std::promise<bool>>();
    std::future<bool> comes = answer->get_future();
    std::thread([answer, name = QFile::encodeName(path)] {
        const bool is = isNeitherFileNorFolder(name);
        --open;
        answer->set_value(is);
    }).detach();
    if (comes.wait_for(patience) == std::future_status::ready)
        return comes.get();
    qCWarning(lcFiles) << "the disk of" << path << "does not answer";
    return false;
}

#else

bool isPipeOrDevice(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isFile() && !file.isDir();
}

#endif
