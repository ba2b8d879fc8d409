// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/ChartCursor.h"

#include "log/LogRow.h"
#include "util/Util.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace {
const QString RowAt = QStringLiteral("SELECT * from %1 WHERE TIME = %2");
const QString RowAfter = QStringLiteral("SELECT * from %1 WHERE TIME > %2 ORDER BY TIME LIMIT 1");
const QString RowBefore = QStringLiteral("SELECT * from %1 WHERE TIME < %2 ORDER BY TIME DESC LIMIT 1");
const QString NewestTime = QStringLiteral("SELECT TIME FROM %1 ORDER BY TIME DESC LIMIT 1;");

// The mark for "no value here" at the chart cursor, in hPa before conversion.
constexpr double NoValue = -1000.0;
}

QPointF ChartCursor::valueAt(QSqlDatabase& database, const QString& table, int interval, double timed,
                             int chartNb, const QVariant& startDate)
{
    QSqlQuery query(database);

    const int preDisplay = LogRow::preDisplay();
    const double factor = LogRow::unitFactor();

    const qint64 t = qRound64(timed * LogRow::secondsPerUnit(chartNb) + startDate.toLongLong());

    double value = NoValue;
    query.exec(RowAt.arg(table).arg(t));
    if (query.next()) {
        value = LogRow::displayedPressure(query, preDisplay);
    } else {
        query.exec(RowAfter.arg(table).arg(t));
        if (query.next()) {
            const double next = LogRow::displayedPressure(query, preDisplay);
            const qint64 nextTime = query.value(LogRow::Time).toLongLong();
            query.exec(RowBefore.arg(table).arg(t));
            if (query.next()) {
                const double previous = LogRow::displayedPressure(query, preDisplay);
                const qint64 previousTime = query.value(LogRow::Time).toLongLong();
                const qint64 gap = nextTime - previousTime;
                // The cap of 240 puts the limit below the spacing of the two longest tables:
                // there the cursor has a value only exactly on a row.
                const qint64 limit = qMin(interval, 240) + 60;
                if (gap < limit) {
                    // An integer quotient on purpose: it is always 0 here, so the curve reads
                    // in steps, at the newer row's value.
                    const qint64 q = (nextTime - t) / gap;
                    value = next + (previous - next) * q;
                }
            }
        }
    }

    return QPointF(timed, LogRow::roundToHundredths(value * factor));
}

QString ChartCursor::info(QSqlDatabase& database, const QString& table, const QPointF& pt, int chartNb)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(NewestTime.arg(table)))
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();

    const double xUnit = LogRow::secondsPerUnit(chartNb);
    const double factor = LogRow::unitFactor();

    if (!query.next())
        return QString();

    // Counted from the newest row, not from the chart's x = 0: during an outage the two differ.
    const qint64 newest = query.value(0).toLongLong();
    const double pressure = pt.y() / factor;
    const qint64 seconds = static_cast<qint64>(pt.x() * xUnit + newest);
    const QDateTime date = QDateTime::fromSecsSinceEpoch(seconds).toTimeSpec(Qt::UTC);

    return Util::formatPressure(pressure, true) + QStringLiteral("&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;")
            + Util::formatDateTimeSecs(date);
}
