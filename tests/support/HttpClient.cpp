// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/HttpClient.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QList>

#include <arpa/inet.h>
#include <cerrno>
#include <future>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

QByteArray HttpReply::header(const QByteArray& name) const
{
    const QList<QByteArray> lines = head.split('\n');
    for (const QByteArray& line : lines) {
        const int colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name.toLower())
            return line.mid(colon + 1).trimmed();
    }
    return QByteArray();
}

int HttpClient::connectFrom(quint16 port, const char* from)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    sockaddr_in local {};
    local.sin_family = AF_INET;
    inet_pton(AF_INET, from, &local.sin_addr);
    sockaddr_in remote {};
    remote.sin_family = AF_INET;
    remote.sin_port = htons(port);
    inet_pton(AF_INET, "127.0.0.1", &remote.sin_addr);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0
        || ::connect(fd, reinterpret_cast<sockaddr*>(&remote), sizeof remote) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

bool HttpClient::closedByPeer(int fd, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    char buffer[4096];
    while (timer.elapsed() < timeoutMs) {
        pollfd waiting{fd, POLLIN, 0};
        if (::poll(&waiting, 1, int(qMax<qint64>(1, timeoutMs - timer.elapsed()))) <= 0)
            continue;
        const ssize_t got = ::recv(fd, buffer, sizeof buffer, 0);
        if (got == 0 || (got < 0 && errno == ECONNRESET))
            return true;
    }
    return false;
}

HttpReply HttpClient::exchange(quint16 port, const QByteArray& request, int timeoutMs)
{
    HttpReply reply;
    const int fd = connectFrom(port);
    if (fd < 0)
        return reply;
    reply.connected = true;
    QElapsedTimer timer;
    timer.start();
    const auto left = [&] { return int(qMax<qint64>(0, timeoutMs - timer.elapsed())); };

    // What the server will not read it may refuse to take: a send that fails is no failure
    // of the test, the answer that comes (or not) tells.
    for (qint64 sent = 0; sent < request.size() && left() > 0;) {
        pollfd writable{fd, POLLOUT, 0};
        if (::poll(&writable, 1, left()) <= 0)
            break;
        const ssize_t wrote = ::send(fd, request.constData() + sent, size_t(request.size() - sent), MSG_NOSIGNAL);
        if (wrote <= 0)
            break;
        sent += wrote;
    }

    const bool headOnly = request.startsWith("HEAD ");
    QByteArray received;
    qint64 wanted = -1;
    for (;;) {
        const int end = received.indexOf("\r\n\r\n");
        if (end >= 0 && reply.head.isEmpty()) {
            reply.head = received.left(end);
            const QList<QByteArray> words = reply.head.split(' ');
            reply.status = words.size() > 1 ? words.at(1).toInt() : -1;
            const QByteArray length = reply.header("Content-Length");
            wanted = headOnly ? 0 : length.isEmpty() ? -1 : length.toLongLong();
            received.remove(0, end + 4);
        }
        if (!reply.head.isEmpty() && wanted >= 0 && received.size() >= wanted)
            break;
        pollfd readable{fd, POLLIN, 0};
        if (left() == 0 || ::poll(&readable, 1, left()) <= 0)
            break;
        char buffer[65536];
        const ssize_t got = ::recv(fd, buffer, sizeof buffer, 0);
        if (got <= 0) {
            reply.closedEarly = reply.head.isEmpty() || (wanted >= 0 && received.size() < wanted);
            break;
        }
        received.append(buffer, int(got));
    }
    reply.body = wanted >= 0 ? received.left(int(wanted)) : received;
    ::close(fd);
    return reply;
}

HttpReply HttpClient::get(quint16 port, const QByteArray& path, const QByteArray& method)
{
    return exchange(port, method + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n");
}

HttpReply HttpClient::pumping(const std::function<HttpReply()>& request)
{
    std::future<HttpReply> answer = std::async(std::launch::async, request);
    while (answer.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return answer.get();
}
