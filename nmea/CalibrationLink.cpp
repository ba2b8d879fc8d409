// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/CalibrationLink.h"

// Installed on the main thread, read on the worker threads.
std::atomic<CalibrationLink*> CalibrationLink::current{nullptr};

void CalibrationLink::install(CalibrationLink* link)
{
    current.store(link, std::memory_order_release);
}

void CalibrationLink::withdraw(CalibrationLink* link)
{
    current.compare_exchange_strong(link, nullptr, std::memory_order_acq_rel);
}
