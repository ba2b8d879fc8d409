// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogHost.h"

std::atomic<LogHost*> LogHost::current{nullptr};

void LogHost::install(LogHost* host)
{
    current.store(host, std::memory_order_release);
}

void LogHost::withdraw(LogHost* host)
{
    current.compare_exchange_strong(host, nullptr, std::memory_order_acq_rel);
}
