// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSourceTcp.h"


#include <QtCore/QDebug>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpSocket>

NmeaSourceTcp::NmeaSourceTcp(NmeaReceiver* receiver, const QString& host, const int& port)
    : NmeaSource(receiver)
    , port(port)
    , host(host)
{
    sourceType = Tcp;
    watchdog = nullptr;
}

NmeaSourceTcp::~NmeaSourceTcp() = default;

bool NmeaSourceTcp::myWrite(const QString& message)
{
    return writeTo(socket, message);
}

void NmeaSourceTcp::slot_startReceiving()
{
    stopReceiving();
    socket = new QTcpSocket(this);
    socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    qWarning().noquote() << "trying to connect to tcp";
    // Before the wait below, which holds this thread but not the page.
    publishPhase(ConnectionStatus::Opening);
    // The host goes as the user typed it, zero-padded default included.
    socket->connectToHost(host, static_cast<quint16>(port), QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    // Blocks the worker thread, and every source on it, for up to 5 seconds.
    if (socket->waitForConnected(5000)) {
        connect(socket, &QTcpSocket::disconnected, this, &NmeaSourceTcp::slot_tcpSocketDisconnected,
                Qt::UniqueConnection);
        connect(socket, &QTcpSocket::errorOccurred, this, &NmeaSourceTcp::slot_tcpError, Qt::UniqueConnection);
        connect(socket, &QTcpSocket::readyRead, this, &NmeaSourceTcp::slot_readData, Qt::UniqueConnection);
        qWarning().noquote() << "tcp source activated";
        connected = true;
        reconnecting = false;
        if (watchdog)
            watchdog->start();
        publishPhase(ConnectionStatus::Open);
        return;
    }

    connected = false;
    qWarning().noquote() << socket->errorString();
    publishPhase(reconnecting ? ConnectionStatus::Retrying : ConnectionStatus::GivenUp,
                 ConnectionStatus::reasonFor(socket->error()), socket->errorString());
    if (reconnecting) {
        // Once a connection has existed the retries never end. The socket stays for the
        // next start to remove.
        qWarning().noquote() << "trying to reconnect to Tcp";
        scheduleReconnect();
    } else {
        // A server absent at the first attempt leaves the source dead until the next
        // start of the receiver.
        socket->deleteLater();
        socket = nullptr;
        withdrawPressure();
        qWarning().noquote() << "failed to connect to TCP host" << host << port;
    }
}

void NmeaSourceTcp::slot_readData()
{
    if (watchdog)
        watchdog->stop();
    if (!socket)
        return;
    const QByteArray data = socket->readAll();
    const int nul = data.indexOf('\0');
    buffer += QString::fromLatin1(data.constData(), nul >= 0 ? nul : data.size());
    const QStringList lines = takeCompleteLines(buffer);
    boundUnfinished(buffer);
    if (lines.isEmpty()) {
        if (watchdog)
            watchdog->start();
        return;
    }
    for (const QString& line : lines) {
        // Rubbish ahead of the "$" is not stripped on TCP.
        if (!line.startsWith(QLatin1Char('$')) && !line.startsWith(QLatin1Char('!')))
            continue;
        handOn(line);
    }
    if (watchdog)
        watchdog->start();
}

void NmeaSourceTcp::disconnectSocket()
{
    disconnect(socket, &QTcpSocket::readyRead, this, &NmeaSourceTcp::slot_readData);
    disconnect(socket, &QTcpSocket::errorOccurred, this, &NmeaSourceTcp::slot_tcpError);
    disconnect(socket, &QTcpSocket::disconnected, this, &NmeaSourceTcp::slot_tcpSocketDisconnected);
}

void NmeaSourceTcp::slot_tcpError(QAbstractSocket::SocketError error)
{
    Q_UNUSED(error)
    dropLostSocket("tcp socket error", true);
}

void NmeaSourceTcp::slot_tcpSocketDisconnected()
{
    dropLostSocket("tcp socket disconnected", false);
}

void NmeaSourceTcp::dropLostSocket(const char* diagnostic, bool closeFirst)
{
    if (watchdog)
        watchdog->stop();
    if (!socket)
        return;
    qWarning().noquote() << diagnostic << socket->errorString();
    publishPhase(ConnectionStatus::Retrying, ConnectionStatus::Lost, socket->errorString());
    disconnectSocket();
    if (closeFirst) {
        socket->disconnectFromHost();
        if (socket->state() != QAbstractSocket::UnconnectedState)
            socket->waitForDisconnected(5000);
    }
    retryWithout(socket, retryIntervalMs());
}

void NmeaSourceTcp::slot_timeOut()
{
    if (!socket)
        return;
    publishPhase(ConnectionStatus::Retrying, ConnectionStatus::Lost, QString(), 10);
    disconnectSocket();
    socket->abort();
    retryWithout(socket, 10);
}

void NmeaSourceTcp::publishPhase(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason,
                                 const QString& errorText, int milliseconds)
{
    ConnectionStatus status = statusIn(phase, reason, errorText);
    status.where = host;
    status.number = port;
    status.milliseconds = milliseconds;
    publish(status);
}

void NmeaSourceTcp::stopReceiving()
{
    if (watchdog)
        watchdog->stop();
    if (socket) {
        // The reverse order of the UDP source's.
        disconnectSocket();
        socket->disconnectFromHost();
        if (socket->state() != QAbstractSocket::UnconnectedState)
            socket->waitForDisconnected(5000);
        socket->deleteLater();
        socket = nullptr;
    }
    withdrawPressure();
    connected = false;
}
