// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/ChartFeed.h"

#include <QtCharts/QXYSeries>

ChartFeed::Frame ChartFeed::keep(const ChartSpan& span)
{
    seriesPoints = span.series;
    Frame frame;
    frame.now = span.now;
    frame.low = span.min;
    frame.high = span.max;
    frame.seriesCount = seriesPoints.size();
    return frame;
}

void ChartFeed::fill(QtCharts::QAbstractSeries* series, int n) const
{
    if (!series)
        return;
    // The page hands over line and spline series only.
    auto* xySeries = static_cast<QtCharts::QXYSeries*>(series);
    const QVector<QPointF> points = seriesPoints.at(n);
    xySeries->replace(points);
}
