#pragma once

#include <QByteArray>
#include <QList>
#include <QNetworkCookie>

#include <functional>

/// How a request of our own goes out, so that a server takes it for one of the pages'.
struct WebManners {
    /// As the headers have them; empty: none is sent.
    QByteArray userAgent;
    QByteArray languages;
    /// All that may be told: which of them go to a server is found out as it is asked.
    QList<QNetworkCookie> cookies;
    /// The desktop's proxy; else the one that the application was given.
    bool usesSystemProxy = false;
    /// Milliseconds without a byte after which a server is taken for gone.
    int longestSilence = 60'000;
};

/// What they are by now; asked on the interface's thread.
using MannersNow = std::function<WebManners()>;
