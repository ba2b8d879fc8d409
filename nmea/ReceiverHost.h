// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/WarningState.h"

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <atomic>
#include <utility>

// What the receiver asks of the application from its worker thread: the connection
// settings when it starts, and what its UDP output tells each second. The application
// installs one; every call comes from the worker thread, with no lock of the caller's, so
// an implementation answers from values made to be read there. With none installed the
// receiver makes no source and sends nothing.
class ReceiverHost
{
public:
    virtual ~ReceiverHost() = default;

    // The setting as the worker thread may read it, narrowed to its type.
    virtual QVariant getSetting(QString key, QVariant def) = 0;
    // The best reading younger than a minute, raw; Pressure::None without one.
    virtual double getCurrentPressure() = 0;
    // Position, then course and speed, of the source that has the fix; zeros without one.
    virtual QPointF getPosition() const = 0;
    virtual std::pair<double, double> getCogSog() const = 0;
    // The pressure-fall warning as it was last published.
    virtual WarningState getWarningState() const = 0;

    static void install(ReceiverHost* host);
    // Puts none in place of `host`, if it is still the one installed.
    static void withdraw(ReceiverHost* host);
    static ReceiverHost* installed() { return current.load(std::memory_order_acquire); }

private:
    static std::atomic<ReceiverHost*> current;
};
