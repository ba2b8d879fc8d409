// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "log/ChartSpan.h"

class QSqlDatabase;
class QString;

// The chart feed's rules in one place: all rows of a table, newest first, each row's
// displayed pressure in the chosen level and unit rounded to hundredths, a new stretch at
// each pause longer than the table's gap limit, and the y-axis bounds. Both the graph
// page's updateChart and the read-only DataSource::readChart go through it.
class ChartSpanReader
{
public:
    ChartSpanReader() = delete;

    // The caller holds the log's lock. Reads the settings and the present pressure now.
    // Into `rows` go the raw readings of the same scan, oldest first, for the storm marks:
    // the table is read once for both.
    static ChartSpan read(QSqlDatabase& database, const QString& table, int chartNb, int interval,
                          QVector<StormMarks::Row>& rows);

    // The y-axis bounds around the values from `min` to `max`, in the chosen unit. The start
    // values of an empty table stay crossed over: the negative max tells the page.
    static void axisBounds(double min, double max, double& low, double& high);
    // Seconds between two rows beyond which the curve breaks: wide enough for the one long
    // step at each wrap of the tick counter, the interval plus 2 seconds, so that only a
    // real pause breaks it.
    static double gapLimit(int interval) { return interval == 2 ? interval * 2.0 : interval * 1.5; }
};
