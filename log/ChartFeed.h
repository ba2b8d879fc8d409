// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCharts/QAbstractSeries>
#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QVector>

class QSqlDatabase;

// The chart's curve of one table: the rows in the chosen unit and level, newest first, cut
// into series where the log has a gap, and the y-axis' bounds around them. Built under the
// log's lock, then handed out series by series without it.
class ChartFeed
{
public:
    // What chartUpdated tells the page. An empty table leaves the bounds crossed over, and
    // the negative high tells the page to leave its axis alone.
    struct Frame
    {
        qint64 now = 0;
        double low = 0.0;
        double high = 0.0;
        int seriesCount = 0;
    };

    Frame build(QSqlDatabase& database, const QString& table, int chartNb, int interval);
    // Puts series `n` into a line or spline series.
    void fill(QtCharts::QAbstractSeries* series, int n) const;

private:
    QList<QVector<QPointF>> seriesPoints;
};
