// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/ChartFeed.h"

#include "log/LogHost.h"
#include "log/LogRow.h"
#include "util/Clock.h"

#include <QtCharts/QXYSeries>
#include <QtCore/QDebug>
#include <QtCore/QtMath>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <cmath>

namespace {
const QString ChartRows = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC;");

// The y-axis' bounds in the chosen unit around the values from `min` to `max`.
void axisBounds(double min, double max, double& low, double& high)
{
    const double range = max - min;
    if (range >= 1.0) {
        low = std::floor(min);
        high = std::ceil(max);
    } else if (range >= 0.5) {
        low = min - 0.1;
        high = qMax(max, min + 0.5);
    } else if (range >= 0.2) {
        low = min - 0.1;
        high = qMax(max, min + 0.2);
    } else {
        low = qFloor(min * 100 - 1) / 100.0;
        high = qCeil(max * 100 + 1) / 100.0;
    }
    if (qFuzzyCompare(low, high))
        high += 1.0;
}
}

ChartFeed::Frame ChartFeed::build(QSqlDatabase& database, const QString& table, int chartNb, int interval)
{
    seriesPoints.clear();
    seriesPoints.append(QVector<QPointF>());

    const double factor = LogRow::unitFactor();
    const int preDisplay = LogRow::preDisplay();

    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(ChartRows.arg(table)))
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();

    const double xUnit = LogRow::secondsPerUnit(chartNb);
    // Wide enough for the one long step at each wrap of the tick counter, the interval plus
    // 2 seconds, so that only a real pause breaks the curve.
    const double gapLimit = interval == 2 ? interval * 2.0 : interval * 1.5;
    const qint64 clock = Clock::currentSecsSinceEpoch();

    double min = 10000000.0;
    double max = -10000000.0;
    qint64 now = 0;
    qint64 previousTime = 0;
    bool first = true;
    while (query.next()) {
        const qint64 time = query.value(LogRow::Time).toLongLong();
        if (first) {
            // While pressure arrives the newest row is x = 0; after it stops, the present is.
            now = LogHost::installed()->getCurrentPressure() < 0.0 ? clock : time;
            first = false;
        }
        const double y = LogRow::roundToHundredths(LogRow::displayedPressure(query, preDisplay) * factor);

        if (previousTime != 0 && previousTime - time > gapLimit)
            seriesPoints.append(QVector<QPointF>());
        seriesPoints.last().append(QPointF((time - now) / xUnit, y));

        if (y < min)
            min = y;
        if (y > max)
            max = y;
        previousTime = time;
    }

    Frame frame;
    frame.now = now;
    axisBounds(min, max, frame.low, frame.high);
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
