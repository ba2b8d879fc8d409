// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "nmea/NmeaSourceType.h"
#include "tools/DemoLog.h"
#include "util/Clock.h"

#include <QtCore/QLocale>
#include <QtGui/QDesktopServices>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <cmath>

void UrlRecorder::openUrl(const QUrl& url)
{
    urls.append(url);
    if (onOpen)
        onOpen(url);
}

ReaderFixture::ReaderFixture()
{
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    Clock::setFixedSecsSinceEpoch(ExampleTime);
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &viewer, "openUrl");
}

ReaderFixture::~ReaderFixture()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    Clock::reset();
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
}

LogRow ReaderFixture::exampleRow()
{
    LogRow row;
    row.time = ExampleTime;
    row.lon = -122.3321;
    row.lat = 47.6062;
    row.cog = 245.4;
    row.sog = 6.38;
    row.pre = 1012.31;
    row.ele = 10.0;
    row.ofs = 0.5;
    return row;
}

QString ReaderFixture::tableName(int table)
{
    static const QStringList names = {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D",
                                      "BARO2D",  "BARO4D", "BARO8D", "BAR16D"};
    return names.at(table);
}

int ReaderFixture::tableInterval(int table)
{
    static const int intervals[] = {2, 6, 12, 24, 48, 96, 192, 384, 768};
    return intervals[table];
}

QSqlDatabase ReaderFixture::connection()
{
    return QSqlDatabase::database(QStringLiteral("DB_BRINHOLT"), false);
}

void ReaderFixture::setSetting(const QString& key, const QVariant& value)
{
    backend().setSetting(key, value);
}

void ReaderFixture::setPressure(double hPa)
{
    backend().setCurrentPressure(hPa, Serial);
}

void ReaderFixture::setClock(qint64 secs)
{
    Clock::setFixedSecsSinceEpoch(secs);
}

bool ReaderFixture::fire(qint64 time, double hPa, int counter)
{
    setClock(time);
    setPressure(hPa);
    return log().addData(counter, 0.0, 0.0, 0.0, 0.0, hPa);
}

void ReaderFixture::insert(int table, const LogRow& row)
{
    insert(table, QVector<LogRow>{row});
}

void ReaderFixture::insert(int table, const QVector<LogRow>& rows)
{
    QSqlDatabase db = connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(QStringLiteral("INSERT INTO %1 (TIME, LON, LAT, COG, SOG, PRE, ELE, OFS) "
                                 "VALUES (?, ?, ?, ?, ?, ?, ?, ?)")
                          .arg(tableName(table)));
    for (const LogRow& row : rows) {
        query.addBindValue(row.time);
        query.addBindValue(row.lon);
        query.addBindValue(row.lat);
        query.addBindValue(row.cog);
        query.addBindValue(row.sog);
        query.addBindValue(row.pre);
        query.addBindValue(row.ele);
        query.addBindValue(row.ofs);
        if (!query.exec())
            qFatal("test insert failed: %s", qPrintable(query.lastError().text()));
    }
    db.commit();
}

int ReaderFixture::rowCount(int table) const
{
    QSqlQuery query(connection());
    query.exec(QStringLiteral("SELECT COUNT(*) FROM %1").arg(tableName(table)));
    return query.next() ? query.value(0).toInt() : -1;
}

QVector<qint64> ReaderFixture::times(int table) const
{
    QVector<qint64> result;
    QSqlQuery query(connection());
    query.exec(QStringLiteral("SELECT TIME FROM %1 ORDER BY TIME DESC").arg(tableName(table)));
    while (query.next())
        result.append(query.value(0).toLongLong());
    return result;
}

void ReaderFixture::execute(const QString& statement)
{
    QSqlQuery query(connection());
    if (!query.exec(statement))
        qFatal("test statement failed: %s", qPrintable(query.lastError().text()));
}

LogRow ReaderFixture::sampleRow(qint64 time)
{
    LogRow row;
    row.time = time;
    const double hours = (time % 1382400) / 3600.0;
    row.lon = -122.3321 + hours * 0.01;
    row.lat = 47.6062 - hours * 0.005;
    row.cog = std::fmod(200.0 + hours * 3.7, 360.0);
    row.sog = 5.0 + std::sin(hours) * 1.5;
    row.pre = 1013.0 + 6.0 * std::sin(hours / 9.0) + 0.3 * std::sin(hours * 7.0);
    row.ele = 10.0;
    row.ofs = 0.5;
    return row;
}

void ReaderFixture::fillTable(int table, int count, qint64 newest)
{
    QVector<LogRow> rows;
    rows.reserve(count);
    for (int i = 0; i < count; ++i)
        rows.append(sampleRow(newest - qint64(i) * tableInterval(table)));
    insert(table, rows);
}

void ReaderFixture::fillSixteenDays(qint64 end)
{
    QList<int> intervals;
    for (int table = 0; table < 9; ++table)
        intervals.append(tableInterval(table));
    const QVector<QVector<qint64>> written = DemoLog::replaySixteenDays(end, intervals);
    for (int table = 0; table < 9; ++table) {
        QVector<LogRow> rows;
        for (qint64 time : written.at(table))
            rows.append(sampleRow(time));
        insert(table, rows);
    }
}

void ReaderFixture::replay(int table, qint64 end, const std::function<std::optional<double>(qint64)>& weather)
{
    const QVector<QVector<qint64>> written = DemoLog::replaySixteenDays(end, {tableInterval(table)});
    QVector<LogRow> rows;
    for (qint64 time : written.at(0)) {
        if (const std::optional<double> pressure = weather(time)) {
            LogRow row;
            row.time = time;
            row.pre = *pressure;
            rows.append(row);
        }
    }
    execute(QStringLiteral("DELETE FROM %1").arg(tableName(table)));
    insert(table, rows);
    setClock(end);
    setPressure(rows.isEmpty() ? -2000.0 : rows.last().pre);
}

Watchdog::Watchdog(int milliseconds, const char* what)
{
    thread = std::thread([this, milliseconds, what] {
        std::unique_lock<std::mutex> lock(mutex);
        if (!done.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return disarmed; }))
            qFatal("%s did not return: the log's lock was waited for on its own thread", what);
    });
}

Watchdog::~Watchdog()
{
    {
        std::lock_guard<std::mutex> lock(mutex);
        disarmed = true;
    }
    done.notify_all();
    thread.join();
}
