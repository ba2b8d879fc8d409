// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QVariant>

class QSqlDatabase;

// What the chart shows under the pointer: the value of a table at a point of the x-axis,
// and the text of the pressure and time there. It takes no lock; the log does.
class ChartCursor
{
public:
    // The curve's value at `timed` units after `startDate`, in the chosen unit: a row's
    // exactly there, else the newer neighbour's when the two are close enough, else -1000.
    static QPointF valueAt(QSqlDatabase& database, const QString& table, int interval, double timed, int chartNb,
                           const QVariant& startDate);
    // The pressure and time at a point of the chart, counted from the newest row; empty for
    // an empty table.
    static QString info(QSqlDatabase& database, const QString& table, const QPointF& pt, int chartNb);
};
