// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

    // The weather: a few passing systems and the twice-daily tide, arriving at exactly
    // `base` hPa at `end`, so that a device starting at `base` carries on from it.
    static double pressureAt(qint64 time, qint64 end, double base);

    // Makes the log in `folder` with the application's own tables and fills it, and when
    // `serialPort` is given, settings that read the device there. Refuses a folder that
    // already holds a log. False, with `error` set, on any failure.
    static bool write(const QString& folder, qint64 end, double base, const QString& serialPort, QString* error);
};
