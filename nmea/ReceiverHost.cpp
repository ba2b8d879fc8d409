// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/ReceiverHost.h"

// Installed on the main thread, read on the worker threads.
std::atomic<ReceiverHost*> ReceiverHost::current{nullptr};

void ReceiverHost::install(ReceiverHost* host)
{
    current.store(host, std::memory_order_release);
}

void ReceiverHost::withdraw(ReceiverHost* host)
{
    current.compare_exchange_strong(host, nullptr, std::memory_order_acq_rel);
}
