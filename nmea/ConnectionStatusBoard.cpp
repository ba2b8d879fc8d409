// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/ConnectionStatusBoard.h"

#include "nmea/NmeaReceiver.h"
#include "nmea/SentenceTimes.h"
#include "util/SanitizerSync.h"

ConnectionStatusBoard::ConnectionStatusBoard(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<ConnectionStatus>();
    follow(nullptr);
}

ConnectionStatusBoard::~ConnectionStatusBoard() = default;

void ConnectionStatusBoard::follow(NmeaReceiver* receiver)
{
    ++generation;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        statuses[channel] = ConnectionStatus();
        statuses[channel].channel = static_cast<ConnectionStatus::Channel>(channel);
    }
    times.reset();
    if (!receiver)
        return;
    times = std::make_shared<SentenceTimes>();
    receiver->setSentenceTimes(times);
    const int followed = generation;
    // Queued even where the receiver shares this thread (tests), so that a report never
    // runs inside the source's own call.
    connect(
            receiver, &NmeaReceiver::statusChanged, this,
            [this, followed](const ConnectionStatus& status) { take(followed, status); }, Qt::QueuedConnection);
}

void ConnectionStatusBoard::take(int fromGeneration, const ConnectionStatus& status)
{
    SanitizerSync::acquire(&NmeaReceiver::staticMetaObject);
    if (fromGeneration != generation || status.channel < 0 || status.channel >= ChannelCount)
        return;
    statuses[status.channel] = status;
    emit statusChanged(status.channel);
}

ConnectionStatus ConnectionStatusBoard::status(ConnectionStatus::Channel channel) const
{
    if (channel < 0 || channel >= ChannelCount)
        return ConnectionStatus();
    return statuses[channel];
}

qint64 ConnectionStatusBoard::lastSentenceMs(ConnectionStatus::Channel channel) const
{
    if (!times || channel == ConnectionStatus::UdpOutput)
        return -1;
    return times->last(static_cast<NmeaSourceType>(channel));
}
