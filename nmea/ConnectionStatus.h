// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtNetwork/QAbstractSocket>
#include <QtSerialPort/QSerialPort>

// What one connection of the running receiver is doing, as a plain value. It changes only
// at rare events (a port opens, a connection fails) and crosses from the worker thread by a
// queued signal; the time of the last sentence, which changes all the time, travels apart
// in SentenceTimes.
struct ConnectionStatus
{
    // The three inputs by their NmeaSourceType, and the UDP output.
    enum Channel : int {
        SerialInput = 1,
        TcpInput = 2,
        UdpInput = 3,
        UdpOutput = 4,
    };

    enum Phase : int {
        Off,      // not part of the running receiver
        NoPort,   // serial input switched on with no port chosen
        Delayed,  // the start waits `milliseconds` behind the serial source
        Opening,  // opening the port or connecting; for the output, before its first tick
        Open,     // reading, connected, listening, or sending
        Retrying, // failed or lost; a new attempt comes every `milliseconds`
        GivenUp,  // the first attempt failed, and none follows until the next start
    };

    enum Reason : int {
        NoReason,
        PermissionDenied,
        NoSuchDevice,
        Refused,
        HostNotFound,
        TimedOut,
        AddressInUse,
        Lost,  // a link that was up went down
        Other, // see errorText
    };

    Channel channel = SerialInput;
    Phase phase = Off;
    Reason reason = NoReason;
    // The port name, or the host as the user typed it.
    QString where;
    // The baud rate, the TCP or UDP port, or the number of broadcast addresses.
    int number = 0;
    // The delay of a start behind the serial source, or the interval between retries.
    int milliseconds = 0;
    // The system's own words for the failure.
    QString errorText;
    // Clock::monotonicMs() when the phase began.
    qint64 sinceMs = 0;

    static Reason reasonFor(QSerialPort::SerialPortError error);
    static Reason reasonFor(QAbstractSocket::SocketError error);
};

Q_DECLARE_METATYPE(ConnectionStatus)
