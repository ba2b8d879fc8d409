// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/DemoLog.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "util/SettingKeys.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
const QString LogFile = QStringLiteral("brinholt.db");
const QString SettingsFile = QStringLiteral("brinholt.ini");
const QString Connection = QStringLiteral("DEMOLOG");

// Hours before the end in which the device's weather stands alone, and the hours over
// which the passing systems then come in.
constexpr double DeviceHours = 6.0;
constexpr double BlendHours = 6.0;

double systems(double hours)
{
    return 7.0 * std::sin(2.0 * Pi * hours / 97.0 + 0.8) + 4.0 * std::sin(2.0 * Pi * hours / 41.0 + 2.1)
            + 2.5 * std::sin(2.0 * Pi * hours / 17.0 + 0.3) + 0.6 * std::sin(2.0 * Pi * hours / 12.0)
            + 0.1 * std::sin(2.0 * Pi * hours / 0.7);
}

// The tables as the application makes them, through its own log: what the demo shows is
// then read from exactly the schema a first start creates.
bool createTables(const QString& folder, QStringList* names, QList<int>* intervals)
{
    const QString previous = QDir::currentPath();
    if (!QDir::setCurrent(folder))
        return false;
    {
        // Settings only: no receiver thread, sensor or tick is wanted for making tables.
        BackEnd back{BackEnd::SettingsOnly()};
        DataSource log(nullptr);
        dataSource = &log;
        *names = log.getTableNames();
        *intervals = log.getTableIntervals();
        dataSource = nullptr;
    }
    backend = nullptr;
    QDir::setCurrent(previous);
    return QFileInfo::exists(QDir(folder).filePath(LogFile));
}

// From 0 at DeviceHours before the end to 1 BlendHours further back, flat at both ends.
double systemsShare(double hours)
{
    const double into = (-hours - DeviceHours) / BlendHours;
    if (into <= 0.0)
        return 0.0;
    if (into >= 1.0)
        return 1.0;
    return (1.0 - std::cos(Pi * into)) / 2.0;
}

bool fill(const QString& path, const QStringList& names, const QList<int>& intervals, qint64 end, double base,
          DeviceSimulator::Scenario scenario, QString* error)
{
    const QVector<QVector<qint64>> times = DemoLog::replaySixteenDays(end, intervals);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), Connection);
    db.setDatabaseName(path);
    if (!db.open()) {
        *error = db.lastError().text();
        return false;
    }
    db.transaction();
    for (int table = 0; table < names.size(); ++table) {
        QSqlQuery query(db);
        query.prepare(QStringLiteral("INSERT INTO %1 (TIME, LON, LAT, COG, SOG, PRE, ELE, OFS) "
                                     "VALUES (?, 0, 0, 0, 0, ?, 0, 0)")
                              .arg(names.at(table)));
        for (const qint64 time : times.at(table)) {
            query.addBindValue(time);
            query.addBindValue(DemoLog::pressureAt(time, end, base, scenario));
            if (!query.exec()) {
                *error = query.lastError().text();
                db.rollback();
                return false;
            }
        }
    }
    return db.commit();
}

} // namespace

QVector<QVector<qint64>> DemoLog::replaySixteenDays(qint64 end, const QList<int>& intervals)
{
    const qint64 firings = SixteenDays / 2;
    const qint64 start = end - 2 * (firings - 1);
    QVector<QVector<qint64>> written(intervals.size());
    int tick = 768;
    for (qint64 k = 0; k < firings; ++k) {
        const qint64 time = start + 2 * k;
        for (int table = 0; table < intervals.size(); ++table) {
            const int interval = intervals.at(table);
            if (tick >= interval && tick % interval == 0)
                written[table].append(time);
        }
        tick = tick < 767 ? tick + 2 : 0;
    }
    for (int table = 0; table < intervals.size(); ++table) {
        QVector<qint64>& rows = written[table];
        // What the DELETE at the table's last write leaves.
        const qint64 oldest = rows.last() - DataSource::retention(intervals.at(table));
        int first = 0;
        while (first < rows.size() && rows.at(first) < oldest)
            ++first;
        rows.remove(0, first);
    }
    return written;
}

double DemoLog::pressureAt(qint64 time, qint64 end, double base, DeviceSimulator::Scenario scenario)
{
    const double hours = (time - end) / 3600.0;
    const double device = DeviceSimulator::weather(scenario, static_cast<double>(time - end));
    return base + device + systemsShare(hours) * (systems(hours) - systems(-DeviceHours));
}

bool DemoLog::write(const QString& folder, qint64 end, double base, DeviceSimulator::Scenario scenario,
                    const QString& serialPort, QString* error)
{
    const QDir dir(folder);
    if (!QDir().mkpath(folder)) {
        *error = QStringLiteral("cannot make %1").arg(folder);
        return false;
    }
    if (QFileInfo::exists(dir.filePath(LogFile))) {
        *error = QStringLiteral("%1 already holds a log; a demo log is only made in a fresh folder").arg(folder);
        return false;
    }
    QStringList names;
    QList<int> intervals;
    if (!createTables(dir.absolutePath(), &names, &intervals)) {
        *error = QStringLiteral("the log could not be made in %1").arg(folder);
        return false;
    }
    const bool filled = fill(dir.absoluteFilePath(LogFile), names, intervals, end, base, scenario, error);
    QSqlDatabase::removeDatabase(Connection);
    if (!filled)
        return false;
    if (!serialPort.isEmpty()) {
        QSettings settings(dir.absoluteFilePath(SettingsFile), QSettings::IniFormat);
        settings.setValue(SettingKey::UseSerial, 1);
        settings.setValue(SettingKey::SerialPort, serialPort);
        settings.sync();
    }
    return true;
}
