#include "SmallDisk.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace {
bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}
}

SmallDisk::SmallDisk()
    : m_mounted(m_folder.isValid()
                && run(u"mount"_s,
                       {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=256k"_s, u"none"_s, m_folder.path()}))
{
}

SmallDisk::~SmallDisk()
{
    if (m_mounted)
        run(u"umount"_s, {u"--lazy"_s, m_folder.path()});
}

bool SmallDisk::makeReadOnly() const
{
    return m_mounted && run(u"mount"_s, {u"-o"_s, u"remount,ro"_s, m_folder.path()});
}
