// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ThreeHourPoints.h"

#include <QtCore/QtGlobal>
#include <QtSql/QSqlDatabase>

#include <optional>

// Reads from the log what the tendency's words, the characteristic and the forecast are
// judged on. Raw readings throughout, as the three-hour tendency takes them, so that a
// changed offset or elevation can't pass for weather.
class TendencyReader
{
public:
    explicit TendencyReader(const QSqlDatabase& database);

    // The points ending with `current` at `now`: the rows of BARO3H nearest three hours and
    // an hour and a half before `now`, each taken only within 30 s of that age, as the
    // three-hour tendency takes its row. Nothing without the three-hour row; no middle
    // point without its own.
    std::optional<ThreeHourPoints> read(qint64 now, double current) const;
    // The latitude of the newest position in the log: the thirty-minute table, which the
    // last tick wrote, then the sixteen-day one. Nothing when neither has a position.
    std::optional<double> latestLatitude() const;

    // How far a row's age may be from the one looked for, in seconds.
    static constexpr qint64 AgeTolerance = 30;

private:
    std::optional<double> pressureAged(qint64 now, qint64 age) const;

    QSqlDatabase database;
};
