// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSourceType.h"

#include <QtCore/QPointF>

#include <atomic>

// Where NMEA input hands its readings: pressure from the items and the no-reading mark from
// the sources as they stop, position from RMC. The application installs one; the worker
// thread calls it directly, so an implementation takes no lock and keeps each source's
// values where that source alone writes them. With none installed a reading goes nowhere.
class ReadingSink
{
public:
    virtual ~ReadingSink() = default;

    virtual void setCurrentPressure(const double& value, const NmeaSourceType& type) = 0;
    // Speed before course, the reverse of the sentence's order.
    virtual void setPositionData(const QPointF& position, const double& sog, const double& cog,
                                 const NmeaSourceType& type) = 0;
    virtual void clearHasFix(const NmeaSourceType& type) = 0;

    static void install(ReadingSink* sink);
    // Puts none in place of `sink`, if it is still the one installed.
    static void withdraw(ReadingSink* sink);
    // Inline, as it is on the way of every sentence: one load, no call.
    static ReadingSink* installed() { return current.load(std::memory_order_acquire); }

private:
    static std::atomic<ReadingSink*> current;
};
