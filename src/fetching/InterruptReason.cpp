#include "InterruptReason.h"

namespace {
/// One that the engine's interface does not name: fewer or more bytes came than it was told of.
constexpr int contentLengthMismatch = 38;
}

Download::Problem
InterruptReason::of(const QWebEngineDownloadRequest::DownloadInterruptReason reason)
{
    using Request = QWebEngineDownloadRequest;
    using Problem = Download::Problem;
    if (int(reason) == contentLengthMismatch)
        return Problem::WrongLength;
    switch (reason) {
    case Request::FileNoSpace:
    case Request::FileTooLarge:
        return Problem::NoRoom;
    case Request::FileAccessDenied:
    case Request::FileBlocked:
        return Problem::NotAllowed;
    case Request::FileFailed:
    case Request::FileNameTooLong:
    case Request::FileTransientError:
        return Problem::WriteError;
    case Request::FileTooShort:
        return Problem::WrongLength;
    case Request::FileHashMismatch:
        return Problem::FileChanged;
    case Request::NetworkFailed:
    case Request::NetworkTimeout:
    case Request::NetworkDisconnected:
    case Request::NetworkServerDown:
    case Request::ServerUnreachable:
        return Problem::ConnectionLost;
    case Request::NetworkInvalidRequest:
    case Request::ServerFailed:
    case Request::ServerBadContent:
    case Request::ServerUnauthorized:
    case Request::ServerCertProblem:
    case Request::ServerForbidden:
        return Problem::ServerRefused;
    default:
        return Problem::Other;
    }
}
