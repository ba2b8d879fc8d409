// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/SignalKStatus.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>

#include <atomic>

class QTcpSocket;

// The TCP server a Signal K server's "Signal K over TCP" connection reads: each client gets
// the meta, then every delta as one line. It listens on every interface, as the server
// usually runs on another computer of the boat. A client costs at most a bounded buffer: one
// that does not read is dropped once its backlog passes the bound, and one that vanishes
// is forgotten. Lives on the output's thread.
class SignalKTcpServer : public QObject
{
    Q_OBJECT

public:
    // More clients than this are turned away: a boat has one server, a second one at most.
    static constexpr int MaxClients = 8;

    explicit SignalKTcpServer(QObject* parent = nullptr);
    ~SignalKTcpServer() override;

    // `meta` goes first to every client, then what `send` gives.
    void start(quint16 port, const QByteArray& meta);
    void send(const QByteArray& message);

    int clientCount() const { return clients.size(); }
    quint16 port() const { return server.serverPort(); }

    // A port that cannot be taken is tried again this often, in milliseconds. Tests shorten it.
    static int retryMs() { return retryInterval.load(std::memory_order_relaxed); }
    static void setRetryMs(int ms) { retryInterval.store(ms, std::memory_order_relaxed); }
    // The backlog in bytes at which a client is dropped. Tests lower it.
    static qint64 maxBacklog() { return backlogBound.load(std::memory_order_relaxed); }
    static void setMaxBacklog(qint64 bytes) { backlogBound.store(bytes, std::memory_order_relaxed); }

signals:
    void statusChanged(const SignalKStatus& status);

private:
    void listen();
    void accept();
    // Queues `bytes` for `client`, or drops the client whose backlog is past the bound.
    void write(QTcpSocket* client, const QByteArray& bytes);
    void drop(QTcpSocket* client);
    void publish();

    QTcpServer server;
    QList<QTcpSocket*> clients;
    QTimer retry;
    quint16 wantedPort = 0;
    QByteArray metaLine;
    SignalKStatus status;

    static std::atomic<int> retryInterval;
    static std::atomic<qint64> backlogBound;
};
