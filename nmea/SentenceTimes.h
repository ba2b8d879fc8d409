// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSourceType.h"

#include <QtCore/QtGlobal>

#include <atomic>

// When each input of one receiver last handed an accepted sentence to the codec, in
// Clock::monotonicMs(). The worker thread writes at every sentence and the page reads once
// a second: relaxed atomics, no lock on the reading path. Each receiver has its own, so
// that an old receiver still ending cannot make its successor look alive.
class SentenceTimes
{
public:
    void stamp(NmeaSourceType source, qint64 ms);
    // -1 before the first sentence, and for a type outside the inputs.
    qint64 last(NmeaSourceType source) const;

private:
    std::atomic<qint64> lastMs[NmeaSourceCount] = {{-1}, {-1}, {-1}, {-1}};
};
