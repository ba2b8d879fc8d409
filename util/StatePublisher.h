// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ShownState.h"

#include <QtCore/QObject>

#include <memory>

// Hands the tick's ShownState to readers on any thread. The main thread stores a new value
// after each tick; a reader takes the pointer and keeps that value alive for as long as it
// holds it. The exchange is the pointer's own atomic load and store, so a slow reader never
// makes the tick wait and never sees half of a state.
class StatePublisher : public QObject
{
    Q_OBJECT

public:
    explicit StatePublisher(QObject* parent = nullptr);

    // The latest state; never null (a state of sequence 0 before the first tick).
    std::shared_ptr<const ShownState> current() const;
    // Main thread only: numbers the state and makes it the current one.
    void publish(ShownState state);

    // The publisher of the running application, for readers below it; null without one.
    static StatePublisher* installed();
    static void install(StatePublisher* publisher);
    // Withdraws `publisher` if it is the one installed.
    static void withdraw(StatePublisher* publisher);

signals:
    // After each publish, on the main thread; connect queued from another thread.
    void published(quint64 sequence);

private:
    std::shared_ptr<const ShownState> state;
    quint64 sequence = 0;
};
