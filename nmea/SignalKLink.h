// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/SignalKDelta.h"
#include "nmea/SignalKStatus.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <atomic>

class SignalKTcpServer;
class SignalKUdpSender;

// The working part of the Signal K output, on its own thread: it takes each state the tick
// publishes, makes the delta, and hands it to the TCP server and the UDP sender that the
// settings switch on. The tick never waits for it: it only reads the published pointer.
class SignalKLink : public QObject
{
    Q_OBJECT

public:
    struct Settings
    {
        bool tcpOn = false;
        int tcpPort = 0;
        bool udpOn = false;
        QString udpHost;
        int udpPort = 0;
    };

    explicit SignalKLink(const Settings& settings);
    ~SignalKLink() override;

    // The settings as they stand, read through the installed ReceiverHost.
    static Settings settingsNow();
    bool wanted() const { return settings.tcpOn || settings.udpOn; }

    // How often the published state is looked at, in milliseconds. Tests may change it.
    static int pollMs() { return pollInterval.load(std::memory_order_relaxed); }
    static void setPollMs(int ms) { pollInterval.store(ms, std::memory_order_relaxed); }

    // For inspection on the link's own thread.
    SignalKTcpServer* getTcpServer() const { return tcp; }
    SignalKUdpSender* getUdpSender() const { return udp; }

public slots:
    // On the link's thread, once it runs.
    void start();

signals:
    void statusChanged(const SignalKStatus& status);

private:
    // Sends what the newest published state changes, if it is new.
    void take();

    Settings settings;
    SignalKDelta delta;
    QTimer poll;
    quint64 lastSequence = 0;
    SignalKTcpServer* tcp = nullptr;
    SignalKUdpSender* udp = nullptr;

    static std::atomic<int> pollInterval;
};
