// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/ConnectionStatusBoard.h"

#include <QtCore/QString>

class NmeaReceiver;
class SettingsAccess;

// The NMEA receiver now running, on a thread of its own, and the board of what its
// connections do. Each start ends the old receiver without waiting for it: receiver and
// thread delete themselves once the thread has quit.
class ReceiverControl
{
public:
    explicit ReceiverControl(const SettingsAccess& settings);

    // Ends the running receiver and makes a new one if any input or the output is on.
    void start();
    // Ends the running receiver and waits for its thread: its worker reads what the
    // application is about to free.
    void stop();
    NmeaReceiver* receiver() const { return running; }
    const ConnectionStatusBoard& board() const { return statusBoard; }
    // One line on a connection: `which` is a ConnectionStatus::Channel; empty for another.
    QString status(int which) const;

private:
    const SettingsAccess& settings;
    NmeaReceiver* running = nullptr;
    ConnectionStatusBoard statusBoard;
};
