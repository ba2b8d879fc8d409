// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "log/StormMarks.h"

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QVector>
#include <QtCore/QtGlobal>

// One table as the graph page's chart shows it: the stretches of the curve, newest point
// first, x in the table's axis units before `now` and y in the chosen unit, with the
// y-axis bounds the chart takes. A plain value, safe to copy to another thread.
struct ChartSpan
{
    int chartNb = 0;
    // Seconds since the epoch that x = 0 stands for; 0 for an empty table.
    qint64 now = 0;
    // Seconds per unit of x: minutes, hours or days by table.
    double secondsPerUnit = 60.0;
    // The y-axis bounds; a negative max marks an empty table.
    double min = 0.0;
    double max = -1.0;
    // Never empty: at least one stretch, which an empty table leaves empty.
    QList<QVector<QPointF>> series{QVector<QPointF>()};
    // Where the warning's rule finds storms in the table, oldest first.
    QVector<StormPeriod> storms;
};
