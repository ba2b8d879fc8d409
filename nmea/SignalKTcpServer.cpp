// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/SignalKTcpServer.h"

#include <QtNetwork/QTcpSocket>

namespace {
constexpr int SystemBufferBytes = 32 * 1024;
}

std::atomic<int> SignalKTcpServer::retryInterval{10000};
// A minute of deltas at a tick every two seconds is some 30 kB.
std::atomic<qint64> SignalKTcpServer::backlogBound{64 * 1024};

SignalKTcpServer::SignalKTcpServer(QObject* parent)
    : QObject(parent)
    , server(this)
    , retry(this)
{
    status.channel = SignalKStatus::TcpServer;
    retry.setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, &SignalKTcpServer::listen);
    connect(&server, &QTcpServer::newConnection, this, &SignalKTcpServer::accept);
}

SignalKTcpServer::~SignalKTcpServer()
{
    for (QTcpSocket* client : qAsConst(clients)) {
        client->disconnect(this);
        client->abort();
    }
}

void SignalKTcpServer::start(quint16 port, const QByteArray& meta)
{
    wantedPort = port;
    metaLine = meta + '\n';
    listen();
}

void SignalKTcpServer::listen()
{
    status.port = wantedPort;
    if (server.listen(QHostAddress::Any, wantedPort)) {
        status.port = server.serverPort();
        status.phase = SignalKStatus::Listening;
        status.errorText.clear();
        status.addressInUse = false;
    } else {
        status.phase = SignalKStatus::Retrying;
        status.retryMs = retryMs();
        status.addressInUse = server.serverError() == QAbstractSocket::AddressInUseError;
        status.errorText = server.errorString();
        retry.start(retryMs());
    }
    publish();
}

void SignalKTcpServer::accept()
{
    while (QTcpSocket* client = server.nextPendingConnection()) {
        if (clients.size() >= MaxClients) {
            client->abort();
            client->deleteLater();
            continue;
        }
        clients.append(client);
        // The system's own buffer is bounded too, or it would hide a client that stalls.
        client->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, SystemBufferBytes);
        // Nothing is expected from a client; what comes is read and thrown away.
        connect(client, &QTcpSocket::readyRead, client, [client] { client->readAll(); });
        connect(client, &QTcpSocket::disconnected, this, [this, client] { drop(client); });
        write(client, metaLine);
        publish();
    }
}

void SignalKTcpServer::send(const QByteArray& message)
{
    const QByteArray line = message + '\n';
    // A copy: a client may be dropped on the way.
    const QList<QTcpSocket*> now = clients;
    for (QTcpSocket* client : now)
        write(client, line);
}

void SignalKTcpServer::write(QTcpSocket* client, const QByteArray& bytes)
{
    if (client->state() != QAbstractSocket::ConnectedState)
        return;
    if (client->bytesToWrite() + bytes.size() > maxBacklog()) {
        drop(client);
        return;
    }
    client->write(bytes);
}

void SignalKTcpServer::drop(QTcpSocket* client)
{
    if (!clients.removeOne(client))
        return;
    client->disconnect(this);
    client->abort();
    client->deleteLater();
    publish();
}

void SignalKTcpServer::publish()
{
    status.clients = clients.size();
    emit statusChanged(status);
}
