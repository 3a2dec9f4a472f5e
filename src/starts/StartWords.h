#pragma once

#include <QByteArrayView>

/// What a program answers a start.
namespace StartWords {
inline constexpr QByteArrayView taken = "taken\n";
/// What it opens would not be seen where the start was made.
inline constexpr QByteArrayView elsewhere = "elsewhere\n";
}
