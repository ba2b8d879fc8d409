// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QtGlobal>

// Every reading of the clock that the tick and the log depend on goes through here, so
// that tests can drive time instead of waiting for it.
class Clock
{
public:
    Clock() = delete;

    // Seconds since the epoch, UTC.
    static qint64 currentSecsSinceEpoch();
    // A monotonic reading in milliseconds; only differences mean anything.
    static qint64 monotonicMs();

    // Test hooks. A negative value returns to the real clock.
    static void setFixedSecsSinceEpoch(qint64 secs);
    static void setFixedMonotonicMs(qint64 ms);
    static void advanceMonotonicMs(qint64 ms);
    static void reset();
};
