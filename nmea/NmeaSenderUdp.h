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

    // For inspection: the socket (null while waiting for a restart), the addresses of the
    // last scan, and the byte total of the last send, failed datagrams counting -1.
    QUdpSocket* getSocket() const { return socket; }
    QSet<QHostAddress> getBroadcastAddresses() const { return broadcastAddresses; }
    int lastSendTotal() const { return lastTotal; }

    // Milliseconds from a failed send to the new scan. Tests shorten it.
    static int restartDelayMs() { return restartDelay.load(std::memory_order_relaxed); }
    static void setRestartDelayMs(int ms) { restartDelay.store(ms, std::memory_order_relaxed); }

public slots:
    void slot_restart();

private:
    bool send(const QString& sentence, const int& port, const char* failed);

    QUdpSocket* socket = nullptr;
    QSet<QHostAddress> broadcastAddresses;
    int lastTotal = 0;

    static std::atomic<int> restartDelay;
};
