// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "log/ChartSpan.h"

#include <QtCharts/QAbstractSeries>
#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QVector>

// The graph page's curve: the series of the latest span, kept under the log's lock, then
// handed out series by series without it.
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

    // Keeps the span's series and tells what chartUpdated says of them.
    Frame keep(const ChartSpan& span);
    // Puts series `n` into a line or spline series.
    void fill(QtCharts::QAbstractSeries* series, int n) const;

private:
    QList<QVector<QPointF>> seriesPoints;
};
