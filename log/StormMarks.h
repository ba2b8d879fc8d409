// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "log/PressureWarning.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>


// A stretch of a log table in which the warning or the alarm held: from the row that
// raised the level to the row that ended it or the table's newest, in seconds since the
// epoch, the end excluded.
struct StormPeriod
{
    qint64 start = 0;
    qint64 end = 0;
    PressureWarning::Level level = PressureWarning::None;
};

// Where the storms were: the pressure-fall warning's rule run again over one table's own
// rows, so that a span's chart and its barogram show them, also over history logged before
// the warning existed or while Brinholt was stopped.
class StormMarks : public QObject
{
    Q_OBJECT

public:
    // One row of a table: its time and the raw reading, with no offset and no reduction,
    // as the warning compares them.
    struct Row
    {
        qint64 time = 0;
        double pressure = 0.0;
    };

    explicit StormMarks(QObject* parent = nullptr);

    // The periods of `rows`, oldest first, of a table written every `interval` seconds. A
    // step longer than `gapLimit` is a break of the chart's curve: never marked.
    static QVector<StormPeriod> find(const QVector<Row>& rows, int interval, double gapLimit,
                                     const PressureWarning::Thresholds& thresholds);
    // How far from three hours (or one) before a row the row it is compared with may lie:
    // half the table's spacing, and never less than the warning's own 30 s.
    static double tolerance(int interval);

    // Run by updateChart under the log's lock: the periods of a table's `rows`, oldest first,
    // as the warning's switch and thresholds in the settings now make them, for a chart
    // whose x = 0 stands for `now` and whose x unit is `secondsPerUnit`.
    void recompute(const QVector<Row>& rows, int interval, double gapLimit, qint64 now, double secondsPerUnit);

    const QVector<StormPeriod>& periods() const { return found; }
    // The periods of the latest chart as the page shades them: maps of "start" and "end" in
    // the chart's x units and "level". Takes no lock: the page calls it from the handler of
    // chartUpdated.
    Q_INVOKABLE QVariantList chartPeriods() const;

private:
    QVector<StormPeriod> found;
    qint64 chartNow = 0;
    double xUnit = 1.0;
};
