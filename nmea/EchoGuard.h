// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSourceType.h"

#include <QtCore/QtGlobal>

#include <atomic>

// Keeps the pressure sent to a Signal K server from coming back as a reading. A server
// that also feeds NMEA 0183 to the TCP or UDP input sends the value it got from us straight
// back; at the moment the device stops, that echo would be the freshest reading left and
// keep a dead device looking alive. So while our own pressure goes out, and for a while
// after the last one, what the network inputs give counts as no reading. They rank below
// the device and the sensor, the only sources whose pressure goes out, so nothing they
// give is lost while it lasts.
class EchoGuard
{
public:
    EchoGuard() = delete;

    // Long enough for the server's round trip, short enough that another barometer on the
    // network takes over soon after the device stops.
    static constexpr qint64 HoldMs = 5000;

    // A pressure of our own has just gone out.
    static void noteSent();
    // The reading a network source may hand on: `value` itself, or none while an echo of
    // ours may still be on its way.
    static double filter(double value, NmeaSourceType source);
    // Forgets what went out, as at start.
    static void reset();

private:
    static std::atomic<qint64> lastSentMs;
};
