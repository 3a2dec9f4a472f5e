#pragma once

class QUrl;

/// The address is of the web.
bool isWeb(const QUrl &url);

/// Two addresses of the web whose pages share their storage: same scheme, host and port.
bool sameOrigin(const QUrl &one, const QUrl &other);
