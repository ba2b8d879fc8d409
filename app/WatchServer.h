// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/WatchResponse.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QString>

#include <atomic>
#include <functional>
#include <mutex>

struct MHD_Daemon;

// The HTTP side of the watch page, on GNU libmicrohttpd: a thread that listens on all
// interfaces and one thread per client connection, none of them the main thread. It takes
// GET and HEAD only and hands each request to `Handler`, which runs on the connection's
// thread and must not touch the main thread's objects. What a hostile client can hold is
// bounded: clients at once (a connection beyond the bound is closed at once), clients per
// address, the request line and headers together (memory per connection), the number of
// headers, and the time a silent or unreading client keeps its connection.
class WatchServer
{
public:
    using Handler = std::function<WatchResponse(const QByteArray& method, const QByteArray& path)>;

    struct Limits
    {
        int clients = 32;
        int clientsPerAddress = 12;
        // The request line and every header must fit in it: beyond, 414 or 431.
        int requestBytes = 16 * 1024;
        int headers = 64;
        // Seconds a connection may stay without a byte moving either way.
        int idleSeconds = 15;
    };

    enum class State { Off, Serving, InUse, Failed };

    explicit WatchServer(Handler handler);
    WatchServer(Handler handler, const Limits& limits);
    ~WatchServer();
    WatchServer(const WatchServer&) = delete;
    WatchServer& operator=(const WatchServer&) = delete;

    // Listens on `port` of every interface; false with the state telling why not.
    bool start(quint16 port);
    // Closes every connection and the port; waits for the connections' threads.
    void stop();

    State state() const { return current.load(); }
    quint16 port() const { return listenPort.load(); }
    // The system's words for a failure other than a port in use.
    QString error() const;
    // Connections open now.
    int connections() const { return open.load(); }
    // Distinct addresses that asked for anything within the last `windowMs`, on the Clock.
    int recentClients(qint64 windowMs = 10000) const;
    const Limits& limits() const { return bounds; }

private:
    struct Callbacks;
    friend struct Callbacks;

    void noteClient(const QByteArray& address);

    Handler handler;
    Limits bounds;
    MHD_Daemon* daemon = nullptr;
    std::atomic<State> current{State::Off};
    std::atomic<quint16> listenPort{0};
    std::atomic<int> open{0};
    QString failure;
    // Written by the connections' threads, read by the Connections page once a second.
    mutable std::mutex clientsLock;
    QHash<QByteArray, qint64> lastSeen;
};
