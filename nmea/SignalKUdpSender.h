// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/SignalKStatus.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QUdpSocket>

#include <atomic>

// Sends each delta as one datagram to the address and port a Signal K server's "Signal K
// over UDP" connection listens on. UDP has no connection to greet, so the meta goes at the
// start and again every minute, and a server that starts later learns it within that
// minute. Nothing waits for an answer: a server that is away costs a datagram a tick. Lives
// on the output's thread.
class SignalKUdpSender : public QObject
{
    Q_OBJECT

public:
    explicit SignalKUdpSender(QObject* parent = nullptr);

    // `host` is an IPv4 or IPv6 address as typed; a name is not looked up.
    void start(const QString& host, quint16 port, const QByteArray& meta);
    void send(const QByteArray& message);

    // How often the meta goes again, in milliseconds. Tests shorten it.
    static int metaIntervalMs() { return metaInterval.load(std::memory_order_relaxed); }
    static void setMetaIntervalMs(int ms) { metaInterval.store(ms, std::memory_order_relaxed); }

signals:
    void statusChanged(const SignalKStatus& status);

private:
    void sendMeta();
    void report(SignalKStatus::Phase phase, const QString& errorText = QString());

    QUdpSocket socket;
    QTimer metaTimer;
    QHostAddress address;
    quint16 port = 0;
    QByteArray metaDatagram;
    SignalKStatus status;

    static std::atomic<int> metaInterval;
};
