// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtNetwork/QHostAddress>

#include <atomic>

class QUdpSocket;

// Re-broadcasts pressure and position as NMEA sentences to every local broadcast address.
// Always a plain object with no parent; its owner deletes it when output is switched off.
// It is used only on the thread that made it.
class NmeaSenderUdp : public QObject
{
    Q_OBJECT

public:
    NmeaSenderUdp();
    ~NmeaSenderUdp() override;

    // `port` is the destination port, cut to 16 bits.
    bool sendPressure(const double& pressure, const int& port);
    bool sendPosition(const QPointF& position, const double& sog, const double& cog, const int& port);

    // The RMC sentence with its checksum and without a line end.
    static QString positionNmeaRMC(const QPointF& position, const double& sog, const double& cog);
    static QString computeChecksum(const QByteArray& sentence);

    // Beyond the XDR and RMC above, for navigation software that reads only these.
    // MDA: the pressure in inches of mercury (4 decimals) and in bars (5), nothing else.
    bool sendPressureMda(const double& pressure, const int& port);
    static QString pressureNmeaMDA(const double& pressure);
    // ALR for the pressure-fall warning: `level` 0 none, 1 warning, 2 alarm; `changedAt`
    // the time of the last change of level, in seconds since the epoch.
    bool sendAlarm(const qint64& changedAt, const int& level, const bool& acknowledged, const int& port);
    static QString alarmNmeaALR(const qint64& changedAt, const int& level, const bool& acknowledged);

    // For inspection: the socket (null while waiting for a restart), the addresses of the
    // last scan, and the byte total of the last send, failed datagrams counting -1.
    QUdpSocket* getSocket() const { return socket; }
    QSet<QHostAddress> getBroadcastAddresses() const { return broadcastAddresses; }
    int lastSendTotal() const { return lastTotal; }

    // Milliseconds from a failed send to the new scan. Tests shorten it.
    static int restartDelayMs() { return restartDelay.load(std::memory_order_relaxed); }
    static void setRestartDelayMs(int ms) { restartDelay.store(ms, std::memory_order_relaxed); }

signals:
    // A new scan has filled the address list (after a failed send).
    void broadcastAddressesChanged();

public slots:
    void slot_restart();

private:
    bool send(const QString& sentence, const int& port, const char* failed);

    QUdpSocket* socket = nullptr;
    QSet<QHostAddress> broadcastAddresses;
    int lastTotal = 0;

    static std::atomic<int> restartDelay;
};
