// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/SentenceTimes.h"

void SentenceTimes::stamp(NmeaSourceType source, qint64 ms)
{
    if (source >= 0 && source < NmeaSourceCount)
        lastMs[source].store(ms, std::memory_order_relaxed);
}

qint64 SentenceTimes::last(NmeaSourceType source) const
{
    if (source < 0 || source >= NmeaSourceCount)
        return -1;
    return lastMs[source].load(std::memory_order_relaxed);
}
