#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

/// One file on its way to the user's disk, or what became of it: what is known of it, as a value
/// that knows no engine.
struct Download {
    enum class State {
        /// Comes in.
        Running,
        /// Stopped by the user, who can go on with it.
        Paused,
        /// Its page started it unasked, and the user has not said yet whether he wants it.
        Held,
        /// All is there, and the user has not said yet where it goes.
        Unplaced,
        /// All is there, and on its way under its name.
        Finishing,
        Done,
        Cancelled,
        Failed,
        /// The program ended before it did.
        Unfinished,
    };
    /// Why it is `Failed`, or why it began anew.
    enum class Problem {
        None,
        NoRoom,
        FolderGone,
        NotAllowed,
        WriteError,
        ConnectionLost,
        /// The server refused it or has it no more.
        ServerRefused,
        /// Less or more came than the server had announced.
        WrongLength,
        /// What is there cannot be continued: the server's file is another one by now.
        FileChanged,
        /// What is there cannot be continued: the server only gives whole files.
        NoRanges,
        /// Another program has what is there.
        InUse,
        Other,
    };

    /// Who named the place where it goes.
    enum class Place {
        /// The program did, after what server and page propose: nothing is replaced.
        Proposed,
        /// The user did, and nothing was there then.
        Chosen,
        /// The user did, and agreed that the file that is there is replaced.
        Replaced,
    };

    /// Of this download alone, in all programs: what files and windows know it by.
    QString id;
    /// Without a folder; while it runs the name that it will have if nobody takes it meanwhile.
    QString name;
    /// Absolute.
    QString folder;
    /// Not kept over a restart: another program may have put a file there since.
    Place place = Place::Proposed;
    /// The stage's path while there is something to continue; else empty.
    QString stage;
    QUrl address;
    /// Of the page that it came from; empty where that is unknown or not to be kept.
    QUrl page;
    /// Bytes; -1: the server did not say.
    qint64 size = -1;
    qint64 received = 0;
    QDateTime began;
    QDateTime ended;
    State state = State::Running;
    Problem problem = Problem::None;
    /// What the system or server said of the problem, for the tool tip and the log.
    QString detail;
    /// By which the server tells this file from a later one of the same address.
    QByteArray etag;
    QByteArray lastModified;
    /// Its address alone brings the same once more: not so for the answer to a form, and for what a
    /// page made by itself.
    bool isRepeatable = true;
    /// The file is marked with where it came from; not where pages are kept out of the history.
    bool leavesTrace = true;
    /// The private windows that it came from, as those that are open at a time are numbered; 0: an
    /// ordinary window. It is listed as long as they are there, and in no file.
    int privateSession = 0;

    QString path() const { return folder + u'/' + name; }
    /// Nothing more comes of it by itself.
    bool isOver() const { return state >= State::Done; }
    /// Bytes are on their way, or held back.
    bool isUnderWay() const { return !isOver(); }
    bool isPrivate() const { return privateSession != 0; }
    /// A server is asked for it.
    bool isOfWeb() const
    {
        return address.scheme() == QLatin1String("http")
            || address.scheme() == QLatin1String("https");
    }

    bool operator==(const Download &) const = default;
};
