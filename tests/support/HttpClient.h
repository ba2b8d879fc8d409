// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>

#include <functional>

// One HTTP answer as it came off the wire.
struct HttpReply
{
    // -1 when no status line came before the connection closed or the time ran out.
    int status = -1;
    bool connected = false;
    // The peer closed (or reset) the connection before a whole answer came.
    bool closedEarly = false;
    QByteArray head;
    QByteArray body;

    // The value of a header, by its name in any case; empty without one.
    QByteArray header(const QByteArray& name) const;
};

// A plain HTTP/1.1 client on raw sockets, for servers under test on loopback: it sends
// exactly the bytes it is given, so a test can send what no well-behaved client would.
class HttpClient
{
public:
    HttpClient() = delete;

    // One request on a new connection to 127.0.0.1:`port`; reads the head and then the
    // body by its Content-Length (none for HEAD), or to the end of the connection.
    static HttpReply exchange(quint16 port, const QByteArray& request, int timeoutMs = 10000);
    static HttpReply get(quint16 port, const QByteArray& path, const QByteArray& method = "GET");

    // Runs `request` on a thread of its own while this thread's event loop turns: for
    // answers that need this thread to work on them.
    static HttpReply pumping(const std::function<HttpReply()>& request);

    // A connected socket to 127.0.0.1:`port` from the loopback address `from` (such as
    // "127.0.0.2"), or -1 if the connection was refused.
    static int connectFrom(quint16 port, const char* from = "127.0.0.1");
    // Whether the peer has closed `fd` (end of file or reset) within `timeoutMs`.
    static bool closedByPeer(int fd, int timeoutMs);
};
