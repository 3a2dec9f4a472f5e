#pragma once

#include "Download.h"

#include <QByteArray>

/// What a server says to a request for the rest of a file, before the bytes.
struct RangeAnswer {
    int status = 0;
    QByteArray contentRange;
    QByteArray contentEncoding;
    /// -1: not said.
    qint64 contentLength = -1;
    QByteArray etag;
    QByteArray lastModified;
    /// When it was sent.
    QByteArray date;

    /// Of a file that can be continued: the whole of it, from "bytes 5-9/10" or "bytes */10"; -1
    /// where it is not said.
    qint64 total() const;
    /// The first byte that comes; -1 where that is not said.
    qint64 first() const;
};

/// What is there of a file, and how the server named it.
struct RangeAsked {
    qint64 from = 0;
    /// Of the whole; -1: unknown.
    qint64 size = -1;
    QByteArray etag;
    QByteArray lastModified;

    /// The header by which the server gives the rest only of the very same file; empty where
    /// nothing tells that.
    QByteArray condition() const;
};

/// What is to be done about an answer.
struct RangeVerdict {
    enum class Kind {
        /// The bytes follow those that are there.
        Append,
        /// These are the bytes of the whole file.
        Anew,
        /// Of no use: the whole is to be asked for.
        AskAnew,
        /// All is there.
        Whole,
        /// A page may get it: it knows passwords and how to ask for them.
        Page,
        /// The server does not give it, now at least.
        Refused,
    };
    Kind kind = Kind::Refused;
    /// Why it begins anew.
    Download::Problem problem = Download::Problem::None;
    /// Of the whole; -1: unknown.
    qint64 size = -1;
};

RangeVerdict judge(const RangeAsked &asked, const RangeAnswer &answer);
