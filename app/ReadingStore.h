// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSourceType.h"
#include "util/AgeTimer.h"
#include "util/Pressure.h"

#include <QtCore/QString>

#include <atomic>

// The latest pressure of each source and how old it is. Each source writes its own slot,
// from the receiver's thread or the main thread, and any thread reads; atomics and no lock,
// so that a sentence never waits for the tick nor the tick for a sentence.
class ReadingStore
{
public:
    // The reading the tick would take, with its NmeaSourceType (-1 for none) and age.
    struct Reading
    {
        double value = Pressure::None;
        int source = -1;
        qint64 ageMs = 0;
    };

    // Inline: it is on the way of every sentence. A type that is no source is ignored. A
    // negative value, the mark of a source that stopped, leaves the age invalid; zero
    // restarts it but never counts.
    void store(double value, int type)
    {
        if (type < Internal || type > Udp)
            return;
        pressure[type].store(value, std::memory_order_relaxed);
        if (value < 0.0)
            age[type].invalidate();
        else
            age[type].restart();
    }

    // The first reading in the order Internal, Serial, TCP, UDP that is above zero and
    // younger than Pressure::ReadingLifetimeMs; raw, with no offset and no reduction. Not
    // one atomic step: the value may be newer than the one tested.
    Reading current() const;
    // The source's value as it stands, however old.
    double latest(int type) const;

    // What the pages say of where a reading came from, in BackEnd's context.
    static QString sourceText(int source);

private:
    std::atomic<double> pressure[NmeaSourceCount] = {Pressure::None, Pressure::None, Pressure::None, Pressure::None};
    AgeTimer age[NmeaSourceCount];
};
