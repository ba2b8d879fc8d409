// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/ReadingSink.h"

// Installed on the main thread, read on the worker threads.
std::atomic<ReadingSink*> ReadingSink::current{nullptr};

void ReadingSink::install(ReadingSink* sink)
{
    current.store(sink, std::memory_order_release);
}

void ReadingSink::withdraw(ReadingSink* sink)
{
    current.compare_exchange_strong(sink, nullptr, std::memory_order_acq_rel);
}
