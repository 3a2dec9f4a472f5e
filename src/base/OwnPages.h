#pragma once

#include <QLatin1StringView>

class QString;
class QUrl;

/// Pages of the program's own, which it has in itself: the start page, "orvane:start", and those of
/// the guide, "orvane:guide" and "orvane:guide/keys". Only the user opens one, or another of them;
/// no page of the web leads there, shows it in a frame or reads it.
inline constexpr QLatin1StringView ownScheme("orvane");

bool isOwnPage(const QUrl &address);
bool isStartPage(const QUrl &address);
/// The name of a page of the guide, whether there is such a page or not; else empty.
QString guidePage(const QUrl &address);
