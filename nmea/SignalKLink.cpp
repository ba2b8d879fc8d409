// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/SignalKLink.h"

#include "nmea/EchoGuard.h"
#include "nmea/ReceiverHost.h"
#include "nmea/SignalKTcpServer.h"
#include "nmea/SignalKUdpSender.h"
#include "util/SanitizerSync.h"
#include "util/SettingKeys.h"
#include "util/StatePublisher.h"

#include <QtCore/QDateTime>

// A tick comes every two seconds: a quarter of a second late is nothing to a barometer.
std::atomic<int> SignalKLink::pollInterval{250};

SignalKLink::SignalKLink(const Settings& settings)
    : settings(settings)
    , poll(this)
{
    connect(&poll, &QTimer::timeout, this, &SignalKLink::take);
}

SignalKLink::~SignalKLink() = default;

SignalKLink::Settings SignalKLink::settingsNow()
{
    Settings s;
    ReceiverHost* host = ReceiverHost::installed();
    if (!host)
        return s;
    s.tcpOn = host->getSetting(SettingKey::SignalKTcpOn, SettingDefault::SignalKTcpOn).toInt() == 1;
    s.tcpPort = host->getSetting(SettingKey::SignalKTcpPort, SettingDefault::SignalKTcpPort).toInt();
    s.udpOn = host->getSetting(SettingKey::SignalKUdpOn, SettingDefault::SignalKUdpOn).toInt() == 1;
    s.udpHost = host->getSetting(SettingKey::SignalKUdpHost, SettingDefault::SignalKUdpHost).toString();
    s.udpPort = host->getSetting(SettingKey::SignalKUdpPort, SettingDefault::SignalKUdpPort).toInt();
    return s;
}

void SignalKLink::start()
{
    const QByteArray meta = SignalKDelta::meta(QDateTime::currentMSecsSinceEpoch());
    // The copy a queued receiver of the status makes is read on its own thread, after a
    // hand-off through Qt's event queue that the thread sanitizer cannot see.
    const auto pass = [this](const SignalKStatus& status) {
        SanitizerSync::release(&SignalKLink::staticMetaObject);
        emit statusChanged(status);
    };
    if (settings.tcpOn) {
        tcp = new SignalKTcpServer(this);
        connect(tcp, &SignalKTcpServer::statusChanged, this, pass);
        tcp->start(static_cast<quint16>(settings.tcpPort), meta);
    }
    if (settings.udpOn) {
        udp = new SignalKUdpSender(this);
        connect(udp, &SignalKUdpSender::statusChanged, this, pass);
        udp->start(settings.udpHost, static_cast<quint16>(settings.udpPort), meta);
    }
    poll.start(pollMs());
}

void SignalKLink::take()
{
    StatePublisher* publisher = StatePublisher::installed();
    if (!publisher)
        return;
    const std::shared_ptr<const ShownState> state = publisher->current();
    if (state->sequence == lastSequence)
        return;
    lastSequence = state->sequence;
    const QByteArray message = delta.next(*state);
    if (message.isEmpty())
        return;
    if (delta.sentOwnPressure())
        EchoGuard::noteSent();
    if (tcp)
        tcp->send(message);
    if (udp)
        udp->send(message);
}
