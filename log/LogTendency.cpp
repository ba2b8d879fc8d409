// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogTendency.h"

#include "log/LogHost.h"
#include "log/LogRow.h"

#include <QtCore/QVariant>
#include <QtSql/QSqlQuery>

#include <cmath>

namespace {
const QString NearestInBaro3h = QStringLiteral("SELECT * from BARO3H ORDER BY ABS(%1 - TIME) LIMIT 1");
}

LogTendency::LogTendency(QSqlDatabase& database, const qint64& lastSampleTime)
    : database(database)
    , lastSampleTime(lastSampleTime)
{
}

std::optional<double> LogTendency::pressureBefore(qint64 age) const
{
    QSqlQuery query(database);
    query.exec(NearestInBaro3h.arg(lastSampleTime - age));
    if (!query.next())
        return std::nullopt;
    if (qAbs(lastSampleTime - query.value(LogRow::Time).toLongLong() - age) > 30)
        return std::nullopt;
    return query.value(LogRow::Pre).toDouble();
}

int LogTendency::trendClass() const
{
    const std::optional<double> before = pressureBefore(3600);
    if (!before)
        return -10;
    // hPa per three hours
    const double change = (LogHost::installed()->getCurrentPressure() - *before) * 3.0;
    const double size = std::fabs(change);
    int level = 4;
    if (size < 1.0)
        level = 1;
    else if (size < 2.0)
        level = 2;
    else if (size < 3.0)
        level = 3;
    return change >= 0.0 ? level : -level;
}

std::optional<double> LogTendency::fallSince(qint64 age, double pressure) const
{
    const std::optional<double> before = pressureBefore(age);
    return before ? std::optional<double>(*before - pressure) : std::nullopt;
}

QString LogTendency::threeHourText() const
{
    const std::optional<double> before = pressureBefore(10800);
    if (!before)
        return QStringLiteral("notOK");
    // The official tendency is in millibars over three hours, whatever unit is shown.
    const double difference = LogHost::installed()->getCurrentPressure() - *before;
    return QStringLiteral("<div align='left'>%1 mb / 3h</div>").arg(difference, 0, 'f', 1);
}
