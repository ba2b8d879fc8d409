// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>
#include <QtCore/QList>
#include <QtNetwork/QUdpSocket>

// Collects every datagram that reaches one port on all IPv4 addresses, with the time it
// came, for tests that check output byte for byte.
class DatagramListener
{
public:
    explicit DatagramListener(quint16 port);

    bool isListening() const { return socket.state() == QAbstractSocket::BoundState; }
    quint16 port() const { return socket.localPort(); }
    // Reads what has come so far.
    QList<QByteArray> datagrams();
    // Milliseconds since the listener was made, at which each datagram was read.
    QList<qint64> arrivals();
    // Runs the event loop until at least `count` datagrams are in, or the time is up.
    bool waitFor(int count, int timeoutMs = 5000);
    // Runs the event loop for `ms` and says whether anything came meanwhile.
    bool staysQuietFor(int ms);
    void clear();

private:
    void drain();

    QUdpSocket socket;
    QElapsedTimer clock;
    QList<QByteArray> received;
    QList<qint64> times;
};
