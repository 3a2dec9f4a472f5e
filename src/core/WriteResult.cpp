#include "WriteResult.h"

#include "Language.h"

using namespace Qt::StringLiterals;

namespace {
QString told(const char *key, const QString &english)
{
    return languageText(u"WriteResult"_s, QString::fromLatin1(key), english);
}

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
        return told("strNoRoom", u"There is no room left on the disk."_s);
    case Failure::NotAllowed:
        return told("strNotAllowed", u"The file or its folder may not be changed."_s);
    case Failure::FolderMissing:
        return told("strFolderMissing", u"The folder is missing."_s);
    case Failure::Taken:
        return told("strTaken", u"There is a file of that name already."_s);
    case Failure::Busy:
        return told("strBusy", u"Another program keeps the folder locked."_s);
    case Failure::Unreadable:
        return told("strUnreadable", u"What is there in its place cannot be read."_s);
    case Failure::SixteenBits:
        return told("strSixteenBits", u"The file there is UTF-16 text, which is left as it is."_s);
    case Failure::Refused:
    case Failure::Other:
        break;
    }
    return m_detail;
}
