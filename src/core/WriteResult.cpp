#include "WriteResult.h"

namespace {
WriteResult::Failure failureOf(const std::error_code &error)
{
    using Failure = WriteResult::Failure;
    // A quota that is used up has a number of its own.
    if (error == std::errc::no_space_on_device || error == std::errc::file_too_large)
        return Failure::NoRoom;
#ifdef EDQUOT
    if (error == std::error_code(EDQUOT, std::generic_category()))
        return Failure::NoRoom;
#endif
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted
        || error == std::errc::read_only_file_system)
        return Failure::NotAllowed;
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return Failure::FolderMissing;
    if (error == std::errc::file_exists)
        return Failure::Taken;
    return Failure::Other;
}
}

WriteResult WriteResult::of(const std::error_code &error)
{
    if (!error)
        return {};
    return WriteResult(failureOf(error), QString::fromLocal8Bit(error.message().c_str()));
}
