// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/ChartSpanReader.h"

#include "log/LogHost.h"
#include "log/LogRow.h"
#include "util/Clock.h"

#include <QtCore/QDebug>
#include <QtCore/QtMath>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <algorithm>
#include <cmath>

namespace {
const QString ChartRows = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC;");
}

void ChartSpanReader::axisBounds(double min, double max, double& low, double& high)
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

ChartSpan ChartSpanReader::read(QSqlDatabase& database, const QString& table, int chartNb, int interval,
                                QVector<StormMarks::Row>& rows)
{
    ChartSpan span;
    span.chartNb = chartNb;
    const double factor = LogRow::unitFactor();
    const int preDisplay = LogRow::preDisplay();

    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(ChartRows.arg(table)))
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();

    const double xUnit = LogRow::secondsPerUnit(chartNb);
    span.secondsPerUnit = xUnit;
    const double gapLimit = ChartSpanReader::gapLimit(interval);
    const qint64 clock = Clock::currentSecsSinceEpoch();

    double min = 10000000.0;
    double max = -10000000.0;
    qint64 previousTime = 0;
    bool first = true;
    while (query.next()) {
        const qint64 time = query.value(LogRow::Time).toLongLong();
        if (first) {
            // While pressure arrives the newest row is x = 0; after it stops, the present is.
            LogHost* host = LogHost::installed();
            span.now = host && host->getCurrentPressure() < 0.0 ? clock : time;
            first = false;
        }
        const double y = LogRow::roundToHundredths(LogRow::displayedPressure(query, preDisplay) * factor);

        if (previousTime != 0 && previousTime - time > gapLimit)
            span.series.append(QVector<QPointF>());
        span.series.last().append(QPointF((time - span.now) / xUnit, y));

        min = qMin(min, y);
        max = qMax(max, y);
        previousTime = time;
        rows.append(StormMarks::Row{time, query.value(LogRow::Pre).toDouble()});
    }
    std::reverse(rows.begin(), rows.end());

    axisBounds(min, max, span.min, span.max);
    return span;
}
