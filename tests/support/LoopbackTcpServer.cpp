// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/LoopbackTcpServer.h"

#include <QtCore/QElapsedTimer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

bool LoopbackTcpServer::listen(quint16 wanted)
{
    if (!server.listen(QHostAddress::LocalHost, wanted))
        return false;
    port = server.serverPort();
    return true;
}

bool LoopbackTcpServer::accept()
{
    QElapsedTimer timer;
    timer.start();
    while (!server.hasPendingConnections() && timer.elapsed() < 15000)
        QTest::qWait(10);
    peer = server.nextPendingConnection();
    return peer != nullptr;
}

void LoopbackTcpServer::send(const QByteArray& bytes)
{
    peer->write(bytes);
    peer->flush();
}
