// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtNetwork/QTcpServer>

class QTcpSocket;

// A TCP server on loopback for a source under test to connect to, with the one peer it
// accepted.
struct LoopbackTcpServer
{
    // On `wanted`, or on a port the system picks.
    bool listen(quint16 wanted = 0);
    // Waits up to 15 s for the source, keeping this thread's event loop running: the
    // source may live on it.
    bool accept();
    void send(const QByteArray& bytes);

    QTcpServer server;
    QTcpSocket* peer = nullptr;
    quint16 port = 0;
};
