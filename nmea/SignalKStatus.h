// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>

// What one way of the Signal K output is doing, as a plain value that crosses from its
// thread by a queued signal.
struct SignalKStatus
{
    // As the Connections page numbers its status lines, after the four of the receiver.
    enum Channel : int {
        TcpServer = 5,
        UdpDatagrams = 6,
    };

    enum Phase : int {
        Off,
        Listening,   // the TCP server, with `clients` connected
        Retrying,    // the TCP port could not be taken; another try every `retryMs`
        Sending,     // datagrams go to `host`:`port`
        BadAddress,  // `host` is no address a datagram can go to
        SendFailed,  // the last datagram did not go; `errorText` says why
    };

    Channel channel = TcpServer;
    Phase phase = Off;
    // Where the datagrams go, as typed; the system's words for a failure.
    QString host;
    QString errorText;
    // The server's port, or the datagrams'; the TCP clients now served.
    int port = 0;
    int clients = 0;
    int retryMs = 0;
    // The port could not be taken because another program holds it.
    bool addressInUse = false;
};

Q_DECLARE_METATYPE(SignalKStatus)
