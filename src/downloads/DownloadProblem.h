#pragma once

#include "Download.h"

#include <system_error>

class WriteResult;

/// What the system's word for a failed step on a download's file means to the user.
namespace DownloadProblem {
Download::Problem of(const std::error_code &error);
Download::Problem of(const WriteResult &failure);
}
