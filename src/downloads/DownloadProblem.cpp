#include "DownloadProblem.h"

#include "WriteResult.h"

Download::Problem DownloadProblem::of(const std::error_code &error)
{
    return error ? of(WriteResult::of(error)) : Download::Problem::None;
}

Download::Problem DownloadProblem::of(const WriteResult &failure)
{
    using Failure = WriteResult::Failure;
    switch (failure.failure()) {
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
