// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/SignalKUdpSender.h"

std::atomic<int> SignalKUdpSender::metaInterval{60000};

SignalKUdpSender::SignalKUdpSender(QObject* parent)
    : QObject(parent)
    , socket(this)
    , metaTimer(this)
{
    status.channel = SignalKStatus::UdpDatagrams;
    connect(&metaTimer, &QTimer::timeout, this, &SignalKUdpSender::sendMeta);
}

void SignalKUdpSender::start(const QString& host, quint16 destination, const QByteArray& meta)
{
    status.host = host.trimmed();
    status.port = destination;
    port = destination;
    metaDatagram = meta;
    if (!address.setAddress(status.host)) {
        report(SignalKStatus::BadAddress);
        return;
    }
    report(SignalKStatus::Sending);
    sendMeta();
    metaTimer.start(metaIntervalMs());
}

void SignalKUdpSender::sendMeta()
{
    send(metaDatagram);
}

void SignalKUdpSender::send(const QByteArray& message)
{
    if (address.isNull())
        return;
    if (socket.writeDatagram(message, address, port) == message.size()) {
        if (status.phase != SignalKStatus::Sending)
            report(SignalKStatus::Sending);
        return;
    }
    // Said once, not at every tick; the next datagram that goes ends it.
    if (status.phase != SignalKStatus::SendFailed || status.errorText != socket.errorString())
        report(SignalKStatus::SendFailed, socket.errorString());
}

void SignalKUdpSender::report(SignalKStatus::Phase phase, const QString& errorText)
{
    status.phase = phase;
    status.errorText = errorText;
    emit statusChanged(status);
}
