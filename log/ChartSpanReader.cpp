// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/ChartSpanReader.h"

#include "log/DataSource.h"
#include "log/LogHost.h"
#include "util/Clock.h"
#include "util/SettingKeys.h"

#include <QtCore/QDebug>
#include <QtCore/QtMath>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <cmath>

namespace {
const QString ChartRows = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC;");
// Columns of a row, in the order of the table's definition.
enum Column { Time = 0, Pre = 5, Ele = 6, Ofs = 7 };
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

double ChartSpanReader::roundToHundredths(double value)
{
    return qRound(value * 100) / 100.0;
}

ChartSpan ChartSpanReader::read(DataSource& log, int chartNb)
{
    ChartSpan span;
    span.chartNb = chartNb;
    LogHost& host = DataSource::host();

    const double factor = DataSource::pressureUnitFactor();
    const int preDisplay = host.getSetting(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();

    QSqlQuery query(log.database);
    query.setForwardOnly(true);
    if (!query.exec(ChartRows.arg(log.tableNames.at(chartNb))))
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();

    const int interval = log.tableIntervals.at(chartNb);
    const double xUnit = DataSource::secondsPerUnit(chartNb);
    span.secondsPerUnit = xUnit;
    const double gapLimit = ChartSpanReader::gapLimit(interval);
    const qint64 clock = Clock::currentSecsSinceEpoch();

    double min = 10000000.0;
    double max = -10000000.0;
    qint64 previousTime = 0;
    bool first = true;
    while (query.next()) {
        const qint64 time = query.value(Time).toLongLong();
        if (first) {
            // While pressure arrives the newest row is x = 0; after it stops, the present is.
            span.now = host.getCurrentPressure() < 0.0 ? clock : time;
            first = false;
        }
        const double pressure = DataSource::displayedPressure(query.value(Pre).toDouble(), query.value(Ele).toDouble(),
                                                              query.value(Ofs).toDouble(), preDisplay);
        const double y = roundToHundredths(pressure * factor);

        if (previousTime != 0 && previousTime - time > gapLimit)
            span.series.append(QVector<QPointF>());
        span.series.last().append(QPointF((time - span.now) / xUnit, y));

        min = qMin(min, y);
        max = qMax(max, y);
        previousTime = time;
    }

    axisBounds(min, max, span.min, span.max);
    return span;
}
