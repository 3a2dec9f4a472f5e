#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTcpServer>

/// One start of one program: from the process's start to its page's second animation frame, which
/// the page itself reports.
struct Start {
    double milliseconds = 0;
    double megabytes = 0;
};

/// Serves the page and measures starts of programs that open it.
class Measurement {
public:
    Measurement();

    /// Starts `program` on the page with `environment` added, a fresh home each time, which has
    /// `links` shortcut files in its folder of links. Ends with the program when it never paints.
    Start run(const QString &program, const QStringList &environment, int links = 0);

private:
    /// Answers what the page asks for until it says that it is painted; false after the limit.
    bool serveUntilPainted();

    QTcpServer m_server;
};
