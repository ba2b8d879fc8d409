// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/AgeTimer.h"

#include "util/Clock.h"

void AgeTimer::invalidate()
{
    startMs.store(Invalid, std::memory_order_release);
}

void AgeTimer::restart()
{
    startMs.store(Clock::monotonicMs(), std::memory_order_release);
}

bool AgeTimer::isValid() const
{
    return startMs.load(std::memory_order_acquire) != Invalid;
}

qint64 AgeTimer::elapsed() const
{
    return Clock::monotonicMs() - startMs.load(std::memory_order_acquire);
}
