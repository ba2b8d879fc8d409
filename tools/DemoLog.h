// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/DeviceSimulator.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

// Sixteen days of made-up weather in a fresh data folder, written as the sampling tick
// would have written it, so that every span of the chart shows something from the start.
class DemoLog
{
public:
    DemoLog() = delete;

    static constexpr qint64 SixteenDays = 1382400;

    // The TIME of every row each table holds after sixteen days of firings, oldest first:
    // the counter starts at 768, the firings are 2 s apart, the last is at `end`, and each
    // table's retention is applied at its last write. `intervals` in table order.
    static QVector<QVector<qint64>> replaySixteenDays(qint64 end, const QList<int>& intervals);

    // The weather at `time`: over the last hours the simulated device's own `scenario`, as
    // it would have measured it, so that a device started at `end` on `base` hPa carries
    // on from the last row without a step or a bend; further back a few passing systems.
    static double pressureAt(qint64 time, qint64 end, double base, DeviceSimulator::Scenario scenario);

    // Makes the log in `folder` with the application's own tables and fills it, and when
    // `serialPort` is given, settings that read the device there. Refuses a folder that
    // already holds a log. False, with `error` set, on any failure.
    static bool write(const QString& folder, qint64 end, double base, DeviceSimulator::Scenario scenario,
                      const QString& serialPort, QString* error);
};
