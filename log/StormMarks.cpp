// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/StormMarks.h"

#include <QtCore/QVariantMap>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {
using Row = StormMarks::Row;

// How far the pressure fell since the row nearest `age` seconds before row `i`, when that
// row lies within `tolerance` of it; a tie goes to the older row.
std::optional<double> fallSince(const QVector<Row>& rows, int i, qint64 age, double tolerance)
{
    const qint64 target = rows.at(i).time - age;
    auto after = std::lower_bound(rows.cbegin(), rows.cend(), target,
                                  [](const Row& row, qint64 time) { return row.time < time; });
    auto nearest = after;
    if (after == rows.cend() || (after != rows.cbegin() && target - std::prev(after)->time <= after->time - target))
        nearest = std::prev(after);
    if (std::fabs(double(nearest->time - target)) > tolerance)
        return std::nullopt;
    return nearest->pressure - rows.at(i).pressure;
}
}

StormMarks::StormMarks(QObject* parent)
    : QObject(parent)
{
}

double StormMarks::tolerance(int interval)
{
    return std::max(interval / 2.0, 30.0);
}

QVector<StormPeriod> StormMarks::find(const QVector<Row>& rows, int interval, double gapLimit,
                                      const PressureWarning::Thresholds& thresholds)
{
    QVector<StormPeriod> periods;
    const double within = tolerance(interval);
    PressureWarning::Level level = PressureWarning::None;
    for (int i = 0; i < rows.size(); ++i) {
        const qint64 time = rows.at(i).time;
        // A break in the log is a fresh start, as the warning's own after a restart: no
        // level is carried across it.
        if (i > 0 && time - rows.at(i - 1).time > gapLimit)
            level = PressureWarning::None;
        level = PressureWarning::judge(level, fallSince(rows, i, 10800, within), fallSince(rows, i, 3600, within),
                                       thresholds);
        // A level holds until the next row; the step into a break, and past the newest
        // row, is no time the log saw.
        if (level == PressureWarning::None || i + 1 == rows.size() || rows.at(i + 1).time - time > gapLimit)
            continue;
        const qint64 next = rows.at(i + 1).time;
        if (!periods.isEmpty() && periods.last().level == level && periods.last().end == time)
            periods.last().end = next;
        else
            periods.append(StormPeriod{time, next, level});
    }
    return periods;
}

void StormMarks::recompute(const QVector<Row>& rows, int interval, double gapLimit, qint64 now, double secondsPerUnit)
{
    found.clear();
    chartNow = now;
    xUnit = secondsPerUnit;
    if (PressureWarning::enabledInSettings())
        found = find(rows, interval, gapLimit, PressureWarning::thresholdsFromSettings());
}

QVariantList StormMarks::chartPeriods() const
{
    QVariantList list;
    for (const StormPeriod& period : found) {
        QVariantMap entry;
        entry.insert(QStringLiteral("start"), (period.start - chartNow) / xUnit);
        entry.insert(QStringLiteral("end"), (period.end - chartNow) / xUnit);
        entry.insert(QStringLiteral("level"), int(period.level));
        list.append(entry);
    }
    return list;
}
