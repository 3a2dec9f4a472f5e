#pragma once

#include "Download.h"

#include <system_error>

/// What the system's word for a failed step on a download's file means to the user.
namespace DownloadProblem {
Download::Problem of(const std::error_code &error);
}
