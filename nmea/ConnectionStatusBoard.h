// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/ConnectionStatus.h"

#include <QtCore/QObject>

#include <memory>

class NmeaReceiver;
class SentenceTimes;

// The state of each connection of the receiver now running, kept on the main thread for
// the Connections page. The receiver's state changes arrive as values by queued signals;
// the times of the last sentences are read from the receiver's SentenceTimes. A replaced
// receiver is forgotten at once: what it still reports while it ends is dropped.
class ConnectionStatusBoard : public QObject
{
    Q_OBJECT

public:
    explicit ConnectionStatusBoard(QObject* parent = nullptr);
    ~ConnectionStatusBoard() override;

    // Follows `receiver` from now on, or none; every connection starts as off. Call it
    // before the receiver's thread starts: the receiver is handed its sentence times here.
    void follow(NmeaReceiver* receiver);

    ConnectionStatus status(ConnectionStatus::Channel channel) const;
    // Clock::monotonicMs() of the channel's last accepted sentence; -1 if none, and always
    // for the output.
    qint64 lastSentenceMs(ConnectionStatus::Channel channel) const;

signals:
    void statusChanged(int channel);

private:
    void take(int fromGeneration, const ConnectionStatus& status);

    static constexpr int ChannelCount = ConnectionStatus::UdpOutput + 1;

    ConnectionStatus statuses[ChannelCount];
    std::shared_ptr<SentenceTimes> times;
    // Counts the receivers followed, so that a late report of an earlier one is known.
    int generation = 0;
};
