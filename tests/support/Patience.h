#pragma once

#include <QTest>

/// Milliseconds in which what a test waits for must have come, where it names no time: a machine
/// that runs more programs than it has cores may take more than the five seconds of the library.
/// Every test is compiled with this header ahead.
inline constexpr int patience = 15'000;

// A wait that failed goes on for twice its time, to say how much more would have done: after a
// minute and a half the function is then ended from outside, and nothing says what did not come.
#undef QTRY_TIMEOUT_DEBUG_IMPL
#define QTRY_TIMEOUT_DEBUG_IMPL(...)

#undef QTRY_VERIFY
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT(expr, patience)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(expr, message) QTRY_VERIFY2_WITH_TIMEOUT(expr, message, patience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT(expr, expected, patience)
