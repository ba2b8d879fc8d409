// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QMutex>

#include <atomic>

// Readers never block: they copy the guarded values and try again if a write overlapped.
// Writers exclude each other with a mutex. The guarded values must themselves be atomics
// (relaxed is enough), so that a torn copy is only ever thrown away, never a data race.
class SeqLock
{
public:
    class WriteGuard
    {
    public:
        explicit WriteGuard(SeqLock& lock);
        ~WriteGuard();
        WriteGuard(const WriteGuard&) = delete;
        WriteGuard& operator=(const WriteGuard&) = delete;

    private:
        SeqLock& lock;
    };

    // Runs read() until it saw one consistent state of the guarded values.
    template <typename Read>
    void read(Read&& readValues) const
    {
        for (;;) {
            const unsigned before = beginRead();
            readValues();
            if (endRead(before))
                return;
        }
    }

private:
    unsigned beginRead() const;
    bool endRead(unsigned before) const;

    QMutex writers;
    std::atomic<unsigned> sequence{0};
};
