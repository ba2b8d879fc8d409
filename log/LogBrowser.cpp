// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogBrowser.h"

#include "log/LogRow.h"
#include "util/Util.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace {
const QString RowsNewestFirst = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC");
const QString DeleteRow = QStringLiteral("DELETE FROM %1 WHERE TIME = %2;");
const QString DeleteAll = QStringLiteral("DELETE FROM %1");
}

QVariantList LogBrowser::content(QSqlDatabase& database, const QString& table)
{
    const int preDisplay = LogRow::preDisplay();

    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.exec(RowsNewestFirst.arg(table));

    QVariantList list;
    while (query.next()) {
        const qint64 time = query.value(LogRow::Time).toLongLong();
        const double pressure = LogRow::displayedPressure(query, preDisplay);
        // The stored speed is in knots and goes to formatSpeed unconverted, as the list has
        // always shown it.
        const QString desc = QStringLiteral("<Qt>")
                + Util::formatDateTimeSecs(QDateTime::fromSecsSinceEpoch(time)) + QStringLiteral("\n")
                + QStringLiteral("<br><b>") + Util::formatPressure(pressure, true) + QStringLiteral("</b> ")
                + Util::formatPosition(query.value(LogRow::Lon).toDouble(), query.value(LogRow::Lat).toDouble())
                + QStringLiteral("<br>") + QStringLiteral("COG ")
                + Util::formatDir3(static_cast<int>(query.value(LogRow::Cog).toDouble()))
                + QCoreApplication::translate("DataSource", "deg") + QStringLiteral(" T - SOG ")
                + Util::formatSpeed(query.value(LogRow::Sog).toDouble());

        QVariantMap entry;
        entry.insert(QStringLiteral("key"), QString::number(time));
        entry.insert(QStringLiteral("desc"), desc);
        list.append(entry);
    }
    return list;
}

void LogBrowser::removeRow(QSqlDatabase& database, const QString& table, const QString& key)
{
    QSqlQuery query(database);
    if (query.exec(DeleteRow.arg(table, key)))
        qWarning().noquote() << "delete one record OK";
    else
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();
}

void LogBrowser::empty(QSqlDatabase& database, const QString& table)
{
    QSqlQuery query(database);
    if (query.exec(DeleteAll.arg(table)))
        qWarning().noquote() << "empty one table OK" << table;
    else
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();
}
