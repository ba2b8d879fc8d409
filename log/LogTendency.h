// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <optional>

class QSqlDatabase;

// What the log says of the pressure's change: the trend class of the last hour, the official
// three-hour tendency and the falls the warning judges. Each compares a reading with the
// BARO3H row within 30 s of the wanted age before the latest sample, raw on both sides, so
// that a change of offset or elevation can't pass for weather. It takes no lock: the log
// calls it under its own lock or, for the chart page, inside updateChart's.
class LogTendency
{
public:
    // `lastSampleTime` is the log's, in seconds since the epoch, read at each call.
    LogTendency(QSqlDatabase& database, const qint64& lastSampleTime);

    // The present reading against the row an hour back: -10 without it; else 1 to 4 by the
    // size of the change over three hours, negative for a fall.
    int trendClass() const;
    // How far `pressure` fell since the row `age` seconds back; nothing without the row.
    std::optional<double> fallSince(qint64 age, double pressure) const;
    // The change over three hours in millibars, as the chart page shows it, or "notOK".
    QString threeHourText() const;

private:
    // The PRE column of the row `age` seconds before the latest sample.
    std::optional<double> pressureBefore(qint64 age) const;

    QSqlDatabase& database;
    const qint64& lastSampleTime;
};
