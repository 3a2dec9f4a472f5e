#pragma once

#include <QString>

/// A web server in a process of its own, as fast as plain sockets are, so that what is measured is
/// not the server. "/file/NAME/SIZE" is a file of that many bytes to be kept; "/wait" is answered
/// when `go` is called; every other path shows the page given.
class FileServer {
public:
    /// Before there is an application object or a thread.
    explicit FileServer(const char *page);
    ~FileServer();
    FileServer(const FileServer &) = delete;
    FileServer &operator=(const FileServer &) = delete;

    QString url(const QString &path) const;
    /// Waits until a page waits.
    void awaitPage() const;
    void go() const;

private:
    void ask(const char *path) const;

    int m_port = 0;
    int m_process = 0;
};
