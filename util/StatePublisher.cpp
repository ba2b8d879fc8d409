// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/StatePublisher.h"

#include <atomic>

namespace {
std::atomic<StatePublisher*> installedPublisher{nullptr};
}

StatePublisher::StatePublisher(QObject* parent)
    : QObject(parent)
    , state(std::make_shared<const ShownState>())
{
}

std::shared_ptr<const ShownState> StatePublisher::current() const
{
    return std::atomic_load(&state);
}

void StatePublisher::publish(ShownState next)
{
    next.sequence = ++sequence;
    std::atomic_store(&state, std::shared_ptr<const ShownState>(std::make_shared<const ShownState>(std::move(next))));
    emit published(sequence);
}

StatePublisher* StatePublisher::installed()
{
    return installedPublisher.load(std::memory_order_acquire);
}

void StatePublisher::install(StatePublisher* publisher)
{
    installedPublisher.store(publisher, std::memory_order_release);
}

void StatePublisher::withdraw(StatePublisher* publisher)
{
    StatePublisher* expected = publisher;
    installedPublisher.compare_exchange_strong(expected, nullptr, std::memory_order_acq_rel);
}
