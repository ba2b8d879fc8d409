// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

class NmeaSourceSerial;

// Joins each serial source to the device dialogue of the application: commands in, status
// and reports out. A new receiver makes new sources every time the connections change, so
// the application installs this once and every serial source asks it from its constructor,
// on the worker thread; the connections it makes must therefore be queued. With none
// installed a source is linked to nothing, and a command reaches it from nowhere.
class CalibrationLink
{
public:
    virtual ~CalibrationLink() = default;

    virtual void connectCalibration(NmeaSourceSerial& source) = 0;

    static void install(CalibrationLink* link);
    // Puts none in place of `link`, if it is still the one installed.
    static void withdraw(CalibrationLink* link);
    static CalibrationLink* installed() { return current.load(std::memory_order_acquire); }

private:
    static std::atomic<CalibrationLink*> current;
};
