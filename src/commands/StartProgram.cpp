#include "StartProgram.h"

#include <QFile>
#include <QProcess>
#include <system_error>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

/// Why a file that did not start cannot be run.
std::errc reason(const QString &file)
{
#ifdef Q_OS_UNIX
    if (::access(QFile::encodeName(file).constData(), X_OK) != 0)
        return static_cast<std::errc>(errno);
    return std::errc::executable_format_error;
#else
    return QFile::exists(file) ? std::errc::permission_denied
                               : std::errc::no_such_file_or_directory;
#endif
}

}

std::optional<SystemError> startProgram(const QString &file, const QStringList &arguments)
{
    if (QProcess::startDetached(file, arguments))
        return {};
    const std::error_code code = std::make_error_code(reason(file));
    return SystemError{code.value(), QString::fromStdString(code.message())};
}
