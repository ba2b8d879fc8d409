// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/Clock.h"

#include <QtCore/QDateTime>

#include <atomic>
#include <chrono>

namespace {
std::atomic<qint64> fixedSecs{-1};
std::atomic<qint64> fixedMonotonic{-1};
std::atomic<qint64> monotonicShift{0};
}

qint64 Clock::currentSecsSinceEpoch()
{
    const qint64 fixed = fixedSecs.load(std::memory_order_relaxed);
    return fixed >= 0 ? fixed : QDateTime::currentSecsSinceEpoch();
}

qint64 Clock::monotonicMs()
{
    qint64 base = fixedMonotonic.load(std::memory_order_relaxed);
    if (base < 0) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        base = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    }
    return base + monotonicShift.load(std::memory_order_relaxed);
}

void Clock::setFixedSecsSinceEpoch(qint64 secs)
{
    fixedSecs.store(secs, std::memory_order_relaxed);
}

void Clock::setFixedMonotonicMs(qint64 ms)
{
    fixedMonotonic.store(ms, std::memory_order_relaxed);
}

void Clock::advanceMonotonicMs(qint64 ms)
{
    monotonicShift.fetch_add(ms, std::memory_order_relaxed);
}

void Clock::reset()
{
    fixedSecs.store(-1, std::memory_order_relaxed);
    fixedMonotonic.store(-1, std::memory_order_relaxed);
    monotonicShift.store(0, std::memory_order_relaxed);
}
