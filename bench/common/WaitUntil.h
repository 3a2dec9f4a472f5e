#pragma once

#include <functional>

/// Lets events run until `done`, deleting what waits to be deleted; ends the program, saying that
/// it waited in vain for `what`, when that takes longer than two minutes.
void waitUntil(const char *what, const std::function<bool()> &done);
