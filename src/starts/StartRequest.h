#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// What one start of the program asks of another that runs already.
struct StartRequest {
    /// More than any command line has, bytes.
    static constexpr qsizetype largest = 256 * 1024;

    /// The command line; empty: none.
    QString text;
    /// The current folder: what relative paths in the text begin at.
    QString folder;
    /// The displays that the start can be seen on; none: it has no display.
    QStringList displays;
    /// What allows the frame to come to the front, from whoever started the program; may be empty.
    QString activation;
    /// In a private window.
    bool isPrivate = false;

    bool operator==(const StartRequest &) const = default;

    /// Of this process, with the arguments behind the program's name.
    static StartRequest ofThisStart(const QStringList &arguments);
    /// The displays of this process.
    static QStringList displaysHere();

    /// One line, with its end.
    QByteArray bytes() const;
    /// Of such a line; nothing where it is none.
    static std::optional<StartRequest> from(const QByteArray &line);

    /// Whether a window on one of `others` is where this start looks for it.
    bool isSeenOn(const QStringList &others) const;
};
