#pragma once

#include "WriteResult.h"

#include <QString>

/// The ranges of the numbers.
namespace EngineLimits {
/// Megabytes: the engine counts bytes in 31 bits.
inline constexpr int cache = 2047;
/// CSS pixels.
inline constexpr int leastFont = 6;
inline constexpr int mostFont = 72;
}

/// What the user chose for the page engine, kept in AppData/Engine.ini. One that is made without a
/// file is the engine as it comes.
struct EngineOptions {
    enum class Proxy { System, None, Http, Socks5 };

    /// Megabytes on the disk; 0: as the engine sees fit.
    int cacheLimit = 0;
    bool refuseThirdPartyCookies = true;

    bool scripts = true;
    bool images = true;
    /// Else PDF files are downloaded.
    bool pdfInPage = true;
    /// Use of the graphics device, where the machine has one.
    bool hardwareRendering = true;

    /// Families; empty: the engine's own.
    QString standardFont;
    QString serifFont;
    QString sansSerifFont;
    QString fixedFont;
    /// CSS pixels.
    int fontSize = 16;
    int fixedFontSize = 13;
    int minimumFontSize = 0;

    Proxy proxy = Proxy::System;
    QString proxyHost;
    int proxyPort = 8080;
    /// Language tags, the most wanted first, with commas between; empty: the desktop's.
    QString languages;
    /// Empty: the engine's own.
    QString userAgent;
    /// Absolute; empty: the desktop's.
    QString downloadFolder;

    /// What is typed into pages is checked.
    bool spelling = true;
    /// By these, as language tags with commas between; empty: by those of the desktop's languages.
    QString dictionaries;

    /// The proxy is one of the user's, at `proxyHost`.
    bool usesOwnProxy() const { return proxy == Proxy::Http || proxy == Proxy::Socks5; }

    bool operator==(const EngineOptions &) const = default;

    /// From the file. What is missing there is as it comes, and so is what cannot be used; that is
    /// logged. May be called before there is an application object.
    static EngineOptions read();
    static QString path();
    /// All keys in one replacement of the file.
    WriteResult write() const;
};

/// What a text must be to be used. The empty text is none of these.
namespace EngineOptionText {
/// A host name or address.
bool isHost(const QString &text);
/// Language tags ("de-DE") with commas and blanks between.
bool isLanguageList(const QString &text);
/// Printable ASCII: it goes into a header as it is.
bool isUserAgent(const QString &text);
/// An absolute path.
bool isFolder(const QString &text);
}
