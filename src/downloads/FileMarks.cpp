#include "FileMarks.h"

#include "Download.h"
#include "Log.h"

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

using namespace Qt::StringLiterals;

namespace {
/// Some disks have no room for more beside a file. Bytes.
constexpr qsizetype longest = 2048;

/// Empty for what leads nowhere for anybody else.
QByteArray written(const QUrl &address)
{
    if (address.scheme() == "data"_L1 || address.scheme() == "blob"_L1)
        return {};
    const QByteArray bytes =
        address.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment | QUrl::FullyEncoded);
    return bytes.size() > longest ? QByteArray() : bytes;
}

void setOne(int file, const char *name, const QByteArray &value)
{
    if (value.isEmpty()) {
        ::fremovexattr(file, name);
        return;
    }
    if (::fsetxattr(file, name, value.constData(), value.size(), 0) != 0 && errno != ENOTSUP)
        qCInfo(lcFiles) << "a download is not marked:" << std::strerror(errno);
}
}

void FileMarks::set(int file, const Download &download)
{
    const bool marks = download.leavesTrace;
    setOne(file, "user.xdg.origin.url", marks ? written(download.address) : QByteArray());
    setOne(file, "user.xdg.referrer.url", marks ? written(download.page) : QByteArray());
}
