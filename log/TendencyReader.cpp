// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/TendencyReader.h"

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtSql/QSqlQuery>

namespace {
// Only rows within the tolerance can answer, so the key's range is all that is read: a
// scan of the whole table at each logged row would cost more than the rest of the tick.
const QString NearestRow = QStringLiteral(
        "SELECT TIME, PRE FROM BARO3H WHERE TIME BETWEEN %1 - %2 AND %1 + %2 ORDER BY ABS(%1 - TIME) LIMIT 1");
const QString NewestPosition =
        QStringLiteral("SELECT LAT FROM %1 WHERE LON <> 0 OR LAT <> 0 ORDER BY TIME DESC LIMIT 1");
}

TendencyReader::TendencyReader(const QSqlDatabase& database)
    : database(database)
{
}

std::optional<ThreeHourPoints> TendencyReader::read(qint64 now, double current) const
{
    const std::optional<double> start = pressureAged(now, 10800);
    if (!start)
        return std::nullopt;
    ThreeHourPoints points;
    points.start = *start;
    points.middle = pressureAged(now, 5400);
    points.end = current;
    return points;
}

std::optional<double> TendencyReader::pressureAged(qint64 now, qint64 age) const
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.exec(NearestRow.arg(now - age).arg(AgeTolerance));
    if (!query.next())
        return std::nullopt;
    if (qAbs(now - query.value(0).toLongLong() - age) > AgeTolerance)
        return std::nullopt;
    return query.value(1).toDouble();
}

std::optional<double> TendencyReader::latestLatitude() const
{
    for (const char* table : {"BARO30M", "BAR16D"}) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        query.exec(NewestPosition.arg(QLatin1String(table)));
        if (query.next())
            return query.value(0).toDouble();
    }
    return std::nullopt;
}
