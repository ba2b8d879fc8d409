// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/EchoGuard.h"

#include "util/Clock.h"
#include "util/Pressure.h"

#include <limits>

namespace {
constexpr qint64 Never = std::numeric_limits<qint64>::min() / 2;
}

std::atomic<qint64> EchoGuard::lastSentMs{Never};

void EchoGuard::noteSent()
{
    lastSentMs.store(Clock::monotonicMs(), std::memory_order_relaxed);
}

double EchoGuard::filter(double value, NmeaSourceType source)
{
    if (source != Tcp && source != Udp)
        return value;
    const qint64 sent = lastSentMs.load(std::memory_order_relaxed);
    return Clock::monotonicMs() - sent < HoldMs ? Pressure::None : value;
}

void EchoGuard::reset()
{
    lastSentMs.store(Never, std::memory_order_relaxed);
}
