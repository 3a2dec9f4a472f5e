#pragma once

#include "Download.h"

#include <QMap>

/// What is known of a download, in words and numbers for the eye, in the language of the moment in
/// which the object was made and the locale's forms. Names, addresses and messages come from
/// outside: here they become texts that stay in one line and cannot pass for something else.
class DownloadTexts {
public:
    /// The language files are read here and not at each text: some are shown five times a second.
    DownloadTexts();

    static QString name(const Download &download);
    /// Of a file or page. What holds its contents itself ("data:") is cut.
    static QString address(const QUrl &url);
    /// "12.3 MB"; empty for an unknown one (-1).
    static QString size(qint64 bytes);
    static QString when(const QDateTime &time);
    /// Hundredths that are there; -1 where the size is unknown.
    static int share(qint64 received, qint64 size);

    /// "45 %"; where the size is unknown, the bytes that came.
    QString progress(qint64 received, qint64 size) const;
    /// "1.2 MB/s, 0:45 left", as far as they are known: bytes in a second (0), seconds (-1).
    QString pace(qint64 rate, qint64 secondsLeft) const;
    /// What it is doing or what became of it, and why; `pace` is what is said of one that comes in.
    QString state(const Download &download, const QString &pace) const;

private:
    QString timeLeft(qint64 seconds) const;

    QMap<Download::State, QString> m_states;
    QMap<Download::Problem, QString> m_problems;
    /// Why it did not go on where it was.
    QMap<Download::Problem, QString> m_anew;
    QString m_rate;
    QString m_timeLeft;
    QString m_share;
};
