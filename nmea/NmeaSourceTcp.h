// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSource.h"

#include <QtNetwork/QAbstractSocket>

class QTcpSocket;
class QTimer;

// A TCP client of a server that streams sentences.
class NmeaSourceTcp : public NmeaSource
{
    Q_OBJECT

public:
    NmeaSourceTcp(NmeaReceiver* receiver, const QString& host, const int& port);
    ~NmeaSourceTcp() override;

    void stopReceiving() override;
    bool myWrite(const QString& message) override;

    QTcpSocket* getSocket() const { return socket; }
    QString getBuffer() const { return buffer; }
    QString getHost() const { return host; }

public slots:
    void slot_startReceiving() override;
    void slot_tcpError(QAbstractSocket::SocketError error);
    void slot_readData();
    void slot_tcpSocketDisconnected();
    void slot_timeOut();

private:
    void disconnectSocket();
    // A link that was up is lost: said, shown, unhooked (and with `closeFirst` closed),
    // then retried.
    void dropLostSocket(const char* diagnostic, bool closeFirst);
    void publishPhase(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason = ConnectionStatus::NoReason,
                      const QString& errorText = QString(), int milliseconds = 0);

    QTcpSocket* socket = nullptr;
    int port;
    QString host;
    QString buffer;
    // Never created: every use tests it first. A silent server is left to age out.
    QTimer* watchdog = nullptr;
};
