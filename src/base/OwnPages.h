#pragma once

#include <QLatin1StringView>

class QUrl;

/// Pages of the program's own, which it has in itself: the start page, "orvane:start". Only the
/// user opens one; no page of the web leads there, shows it in a frame or reads it.
inline constexpr QLatin1StringView ownScheme("orvane");

bool isOwnPage(const QUrl &address);
