#include "DownloadProblem.h"

#include "WriteResult.h"

Download::Problem DownloadProblem::of(const std::error_code &error)
{
    using Failure = WriteResult::Failure;
    if (!error)
        return Download::Problem::None;
    switch (WriteResult::of(error).failure()) {
    case Failure::NoRoom:
        return Download::Problem::NoRoom;
    case Failure::NotAllowed:
        return Download::Problem::NotAllowed;
    case Failure::FolderMissing:
        return Download::Problem::FolderGone;
    default:
        return Download::Problem::WriteError;
    }
}
