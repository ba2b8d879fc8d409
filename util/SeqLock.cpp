// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/SeqLock.h"

#include <QtCore/QThread>

SeqLock::WriteGuard::WriteGuard(SeqLock& lock)
    : lock(lock)
{
    lock.writers.lock();
    lock.sequence.fetch_add(1, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
}

SeqLock::WriteGuard::~WriteGuard()
{
    lock.sequence.fetch_add(1, std::memory_order_release);
    lock.writers.unlock();
}

unsigned SeqLock::beginRead() const
{
    unsigned value = sequence.load(std::memory_order_acquire);
    while (value & 1u) {
        // A writer holds it for a handful of stores; let it finish.
        QThread::yieldCurrentThread();
        value = sequence.load(std::memory_order_acquire);
    }
    return value;
}

bool SeqLock::endRead(unsigned before) const
{
    std::atomic_thread_fence(std::memory_order_acquire);
    return sequence.load(std::memory_order_relaxed) == before;
}
