#include "WriteResult.h"

#include "Texts.h"

namespace {
constexpr Texts<"WriteResult"> texts;

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

QString WriteResult::text() const
{
    if (m_done)
        return {};
    switch (m_failure) {
    case Failure::NoRoom:
        return texts.at<"strNoRoom", "There is no room left on the disk.">();
    case Failure::NotAllowed:
        return texts.at<"strNotAllowed", "The file or its folder may not be changed.">();
    case Failure::FolderMissing:
        return texts.at<"strFolderMissing", "The folder is missing.">();
    case Failure::Taken:
        return texts.at<"strTaken", "There is a file of that name already.">();
    case Failure::Busy:
        return texts.at<"strBusy", "Another program keeps the folder locked.">();
    case Failure::Unreadable:
        return texts.at<"strUnreadable", "What is there in its place cannot be read.">();
    case Failure::SixteenBits:
        return texts
            .at<"strSixteenBits", "The file there is UTF-16 text, which is left as it is.">();
    case Failure::Refused:
    case Failure::Other:
        break;
    }
    return m_detail;
}
