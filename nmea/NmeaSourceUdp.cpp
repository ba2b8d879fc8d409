// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSourceUdp.h"


#include <QtCore/QDebug>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QUdpSocket>

namespace {

// One call stops reading datagrams once the buffer has passed this many characters.
constexpr int BufferReadLimit = 10240;

// Qt warns when asked to wait on a socket that is already closed; the wait would return
// at once anyway.
void closeAndWait(QAbstractSocket* socket)
{
    socket->disconnectFromHost();
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->waitForDisconnected(5000);
}

} // namespace

NmeaSourceUdp::NmeaSourceUdp(NmeaReceiver* receiver, const QString& host, const int& port)
    : NmeaSource(receiver)
    , port(port)
    , host(host)
{
    sourceType = Udp;
}

NmeaSourceUdp::~NmeaSourceUdp() = default;

void NmeaSourceUdp::slot_startReceiving()
{
    stopReceiving();
    socket = new QUdpSocket(this);

    // The host text only decides the flags and the joining; any host but "any" binds to
    // every address.
    QHostAddress address(QHostAddress::Any);
    if (host.toLower() == QLatin1String("any"))
        address = QHostAddress(QHostAddress::AnyIPv4);
    const QAbstractSocket::BindMode flags = host == QLatin1String("0.0.0.0")
            ? QAbstractSocket::BindMode(QAbstractSocket::ShareAddress)
            : QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint;

    if (!socket->bind(address, static_cast<quint16>(port), flags)) {
        connected = false;
        publishPhase(reconnecting ? ConnectionStatus::Retrying : ConnectionStatus::GivenUp,
                     ConnectionStatus::reasonFor(socket->error()), socket->errorString());
        if (reconnecting) {
            qWarning().noquote() << "trying to reconnect to udp";
            scheduleReconnect();
        } else {
            // A port that cannot be bound at the first try leaves the source dead until
            // the next start of the receiver.
            delete socket;
            socket = nullptr;
            withdrawPressure();
        }
        return;
    }

    if (host != QLatin1String("0.0.0.0") && host.toLower() != QLatin1String("any")) {
        if (socket->joinMulticastGroup(QHostAddress(host)))
            qWarning().noquote() << "joined to multicast group ok!";
        else
            qWarning().noquote() << "unable to join multicast group" << host;
    }

    connect(socket, &QUdpSocket::disconnected, this, &NmeaSourceUdp::slot_udpSocketDisconnected,
            Qt::UniqueConnection);
    connect(socket, &QUdpSocket::errorOccurred, this, &NmeaSourceUdp::slot_udpError, Qt::UniqueConnection);
    connect(socket, &QUdpSocket::readyRead, this, &NmeaSourceUdp::slot_readPendingDatagrams,
            Qt::UniqueConnection);
    connected = true;
    reconnecting = false;
    publishPhase(ConnectionStatus::Open);
    slot_readPendingDatagrams();
    qWarning().noquote() << "udp source activated" << host << port;
}

void NmeaSourceUdp::slot_readPendingDatagrams()
{
    if (!socket)
        return;
    while (socket->hasPendingDatagrams()) {
        QByteArray datagram;
        datagram.resize(static_cast<int>(qMax<qint64>(socket->pendingDatagramSize(), 0)));
        const qint64 read = socket->readDatagram(datagram.data(), datagram.size());
        datagram.truncate(static_cast<int>(qMax<qint64>(read, 0)));
        const int nul = datagram.indexOf('\0');
        buffer += QString::fromUtf8(datagram.constData(), nul >= 0 ? nul : datagram.size());
        // The rest waits in the socket for the next readyRead.
        if (buffer.size() > BufferReadLimit)
            break;
    }
    if (buffer.isEmpty()) {
        qWarning().noquote() << "empty datagram data received";
        return;
    }
    const QStringList lines = takeCompleteLines(buffer);
    for (const QString& line : lines) {
        // Unlike the serial line, rubbish ahead of the "$" is not stripped here.
        if (!line.startsWith(QLatin1Char('$')) && !line.startsWith(QLatin1Char('!')))
            continue;
        handOn(line);
    }
}

void NmeaSourceUdp::disconnectSocket()
{
    disconnect(socket, &QUdpSocket::disconnected, this, &NmeaSourceUdp::slot_udpSocketDisconnected);
    disconnect(socket, &QUdpSocket::errorOccurred, this, &NmeaSourceUdp::slot_udpError);
    disconnect(socket, &QUdpSocket::readyRead, this, &NmeaSourceUdp::slot_readPendingDatagrams);
}

void NmeaSourceUdp::slot_udpError(QAbstractSocket::SocketError error)
{
    Q_UNUSED(error)
    if (!socket)
        return;
    qWarning().noquote() << "udp socket error" << socket->errorString();
    publishPhase(ConnectionStatus::Retrying, ConnectionStatus::Lost, socket->errorString());
    disconnectSocket();
    closeAndWait(socket);
    retryWithout(socket, retryIntervalMs());
}

void NmeaSourceUdp::slot_udpSocketDisconnected()
{
    if (!socket)
        return;
    qWarning().noquote() << "Udp socket disconnected" << socket->errorString();
    publishPhase(ConnectionStatus::Retrying, ConnectionStatus::Lost, socket->errorString());
    disconnectSocket();
    retryWithout(socket, retryIntervalMs());
}

void NmeaSourceUdp::publishPhase(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason,
                                 const QString& errorText)
{
    ConnectionStatus status = statusIn(phase, reason, errorText);
    status.number = port;
    publish(status);
}

void NmeaSourceUdp::stopReceiving()
{
    if (socket) {
        disconnectSocket();
        closeAndWait(socket);
        socket->deleteLater();
        socket = nullptr;
    }
    withdrawPressure();
    connected = false;
}
