// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSource.h"

#include <QtNetwork/QAbstractSocket>

class QUdpSocket;

// Listens on a UDP port for sentences.
class NmeaSourceUdp : public NmeaSource
{
    Q_OBJECT

public:
    NmeaSourceUdp(NmeaReceiver* receiver, const QString& host, const int& port);
    ~NmeaSourceUdp() override;

    void stopReceiving() override;

    QUdpSocket* getSocket() const { return socket; }
    QString getBuffer() const { return buffer; }

public slots:
    void slot_startReceiving() override;
    void slot_udpError(QAbstractSocket::SocketError error);
    void slot_readPendingDatagrams();
    void slot_udpSocketDisconnected();

private:
    void disconnectSocket();
    void publishPhase(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason = ConnectionStatus::NoReason,
                      const QString& errorText = QString());

    QUdpSocket* socket = nullptr;
    int port;
    QString host;
    QString buffer;
};
