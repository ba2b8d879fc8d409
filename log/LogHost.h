// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <atomic>

class QSettings;

// What the log asks of the application: its settings, the present reading, the pressure
// unit and the data folder. The application installs one; the log calls it on the main
// thread only, at each use, so that a change of a setting shows at the next call. Where a
// reader has a fall-back of its own for none installed, it says so.
class LogHost
{
public:
    virtual ~LogHost() = default;

    // The setting narrowed to its type, as the pages read it.
    virtual QVariant getSetting(QString key, QVariant def) = 0;
    // The long-lived settings object, for the readers that go to it directly.
    virtual QSettings* getSettings() const = 0;
    // The best reading younger than a minute, raw; Pressure::None without one.
    virtual double getCurrentPressure() = 0;
    // The name of the chosen pressure unit, and a value in hPa converted to it.
    virtual QString getPressureUnit() = 0;
    virtual double convertToOther(double value) = 0;
    // The data folder, with its closing separator.
    virtual QString getAppPath() const = 0;

    static void install(LogHost* host);
    // Puts none in place of `host`, if it is still the one installed.
    static void withdraw(LogHost* host);
    static LogHost* installed() { return current.load(std::memory_order_acquire); }

private:
    static std::atomic<LogHost*> current;
};
