#include "FileServer.h"

#include <QtGlobal>

#include <algorithm>
#include <arpa/inet.h>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <netinet/in.h>
#include <string>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

std::mutex guard;
std::condition_variable changed;
int waiting = 0;
int released = 0;

bool sendAll(int socket, const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t sent = ::send(socket, bytes, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes += sent;
        size -= std::size_t(sent);
    }
    return true;
}

bool sendPage(int socket, const std::string &body)
{
    const std::string reply = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: "
        + std::to_string(body.size()) + "\r\nCache-Control: no-store\r\n\r\n" + body;
    return sendAll(socket, reply.data(), reply.size());
}

/// `name` is what stands between "/file/" and the size.
bool sendFile(int socket, const std::string &name, unsigned long long size)
{
    static const std::vector<char> piece(1024 * 1024, 'x');
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: application/x-parcel\r\n"
                             "Content-Disposition: attachment; filename="
        + name + "\r\nContent-Length: " + std::to_string(size) + "\r\n\r\n";
    bool isWell = sendAll(socket, head.data(), head.size());
    for (unsigned long long left = size; isWell && left > 0;) {
        const auto now = std::size_t(std::min<unsigned long long>(left, piece.size()));
        isWell = sendAll(socket, piece.data(), now);
        left -= now;
    }
    return isWell;
}

void holdPage()
{
    std::unique_lock lock(guard);
    const int before = released;
    ++waiting;
    changed.notify_all();
    changed.wait(lock, [before] { return released != before; });
    --waiting;
}

bool answer(int socket, const std::string &path, const std::string &page)
{
    if (path.rfind("/file/", 0) == 0) {
        const std::size_t end = path.rfind('/');
        return sendFile(socket, path.substr(6, end - 6),
                        std::strtoull(path.c_str() + end + 1, nullptr, 10));
    }
    if (path == "/wait") {
        holdPage();
    } else if (path == "/waits") {
        std::unique_lock lock(guard);
        changed.wait(lock, [] { return waiting > 0; });
    } else if (path == "/go") {
        const std::lock_guard lock(guard);
        ++released;
        changed.notify_all();
    }
    return sendPage(socket, page);
}

void talk(int socket, const std::string &page)
{
    std::string asked;
    char bytes[4096];
    for (ssize_t got = 0; (got = ::recv(socket, bytes, sizeof bytes, 0)) > 0;) {
        asked.append(bytes, std::size_t(got));
        if (asked.find("\r\n\r\n") == std::string::npos)
            continue;
        const std::size_t from = asked.find(' ') + 1;
        const std::string path = asked.substr(from, asked.find(' ', from) - from);
        asked.clear();
        if (!answer(socket, path, page))
            break;
    }
    ::close(socket);
}

[[noreturn]] void serve(int listener, const std::string &page)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (;;) {
        const int socket = ::accept(listener, nullptr, nullptr);
        if (socket >= 0)
            std::thread(talk, socket, page).detach();
    }
}

sockaddr_in localPort(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(in_port_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}

FileServer::FileServer(const char *page)
{
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = localPort(0);
    socklen_t size = sizeof address;
    auto *general = reinterpret_cast<sockaddr *>(&address);
    if (::bind(listener, general, size) != 0 || ::listen(listener, 256) != 0
        || ::getsockname(listener, general, &size) != 0)
        qFatal("no port to serve files on");
    m_port = ntohs(address.sin_port);
    m_process = ::fork();
    if (m_process == 0)
        serve(listener, page);
    ::close(listener);
}

FileServer::~FileServer()
{
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
}

QString FileServer::url(const QString &path) const
{
    return u"http://127.0.0.1:%1%2"_s.arg(m_port).arg(path);
}

void FileServer::awaitPage() const
{
    ask("/waits");
}

void FileServer::go() const
{
    ask("/go");
}

/// Returns with the answer.
void FileServer::ask(const char *path) const
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = localPort(m_port);
    const std::string request = std::string("GET ") + path + " HTTP/1.1\r\n\r\n";
    char byte = 0;
    if (::connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || !sendAll(socket, request.data(), request.size()) || ::recv(socket, &byte, 1, 0) != 1)
        qFatal("the server is gone");
    ::close(socket);
}
