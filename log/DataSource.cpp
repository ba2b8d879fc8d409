// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/DataSource.h"

#include "log/Barogram.h"
#include "log/CsvExport.h"
#include "log/GpxExport.h"
#include "log/LogHost.h"
#include "util/Clock.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"
#include "util/Util.h"

#include <QtCharts/QAbstractAxis>
#include <QtCharts/QXYSeries>
#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMutexLocker>
#include <QtCore/QSettings>
#include <QtCore/QUrl>
#include <QtCore/QtMath>
#include <QtGui/QDesktopServices>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <cmath>
#include <mutex>

namespace {
const QString ConnectionName = QStringLiteral("DB_BRINHOLT");
const QString ServiceConnectionName = QStringLiteral("DB_BRINHOLT_SERVICE");
const QString CreateTable = QStringLiteral(
        "CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, COG FLOAT, SOG FLOAT, "
        "PRE FLOAT, ELE FLOAT, OFS FLOAT)");
const QString DeleteOlder = QStringLiteral("DELETE FROM %1 WHERE TIME < %2;");
const QString InsertRow = QStringLiteral(
        "INSERT INTO %1 (TIME, LON, LAT, COG, SOG, PRE, ELE, OFS) "
        "VALUES (:TIME, :LON, :LAT, :COG, :SOG, :PRE, :ELE, :OFS);");
const QString NearestInBaro3h = QStringLiteral("SELECT * from BARO3H ORDER BY ABS(%1 - TIME) LIMIT 1");
const QString ChartRows = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC;");
const QString RowAt = QStringLiteral("SELECT * from %1 WHERE TIME = %2");
const QString RowAfter = QStringLiteral("SELECT * from %1 WHERE TIME > %2 ORDER BY TIME LIMIT 1");
const QString RowBefore = QStringLiteral("SELECT * from %1 WHERE TIME < %2 ORDER BY TIME DESC LIMIT 1");
const QString NewestTime = QStringLiteral("SELECT TIME FROM %1 ORDER BY TIME DESC LIMIT 1;");
const QString RowsNewestFirst = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC");
const QString DeleteRow = QStringLiteral("DELETE FROM %1 WHERE TIME = %2;");
const QString DeleteAll = QStringLiteral("DELETE FROM %1");
const QString LastFix = QStringLiteral("SELECT * FROM %1 WHERE LON <> 0 OR LAT <> 0 ORDER BY TIME DESC LIMIT 1");

// Pages of the log file in bytes. Each commit appends every page it changed to the
// write-ahead log, so small pages cut what a row costs the disk; rows are some 60 bytes.
constexpr int PageSize = 512;
// Seconds of the clock between two checkpoints, each of which syncs the write-ahead log
// and then the file: the most a power cut can take beyond what the kernel wrote back.
constexpr qint64 CheckpointInterval = 300;

// Columns of a row, in the order of the table's definition.
enum Column { Time = 0, Lon = 1, Lat = 2, Cog = 3, Sog = 4, Pre = 5, Ele = 6, Ofs = 7 };

// The mark for "no value here" at the chart cursor, in hPa before conversion.
constexpr double NoValue = -1000.0;

// The y-axis' bounds in the chosen unit around the values from `min` to `max`. An empty
// table leaves the start values crossed over, and the negative max tells the page to leave
// its axis alone.
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

// A hundredth of the chosen unit, which is what the chart and the cursor show.
double roundToHundredths(double value)
{
    return qRound(value * 100) / 100.0;
}
}

DataSource::DataSource(QQuickView* view, QObject* parent)
    : QObject(parent)
    , view(view)
{
    trend = -10;
    tableNames = QStringList{QStringLiteral("BARO30M"), QStringLiteral("BARO3H"), QStringLiteral("BARO6H"),
                  QStringLiteral("BAR12H"), QStringLiteral("BARO1D"), QStringLiteral("BARO2D"),
                  QStringLiteral("BARO4D"), QStringLiteral("BARO8D"), QStringLiteral("BAR16D")};
    tableIntervals = QList<int>{2, 6, 12, 24, 48, 96, 192, 384, 768};

    qRegisterMetaType<QtCharts::QAbstractSeries*>("QAbstractSeries *");
    qRegisterMetaType<QtCharts::QAbstractAxis*>("QAbstractAxis *");

    const QString path = databasePath();
    const bool existed = QFileInfo::exists(path);
    // The log needs the folder itself, for the file and for the write-ahead log beside it.
    const QString folder = QFileInfo(path).absolutePath();
    folderWritable = QFileInfo(folder).isWritable();
    if (!folderWritable)
        qWarning().noquote() << "data folder not writable, no pressure log is kept:" << folder;

    if (QSqlDatabase::contains(ConnectionName)) {
        database = QSqlDatabase::database(ConnectionName);
    } else {
        database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), ConnectionName);
        database.setDatabaseName(path);
        database.open();
    }
    prepareJournal();

    if (!existed) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        for (const QString& name : qAsConst(tableNames))
            query.exec(CreateTable.arg(name));
    }

    qWarning().noquote() << "dataSource created";
}

DataSource::~DataSource()
{
    closeDatabase();
    qWarning().noquote() << "datasource deleted";
}

LogHost& DataSource::host()
{
    return *LogHost::installed();
}

QString DataSource::databasePath() const
{
    const LogHost* host = LogHost::installed();
    const QString base = host ? host->getAppPath() : QStringLiteral("./");
    return base + QStringLiteral("brinholt.db");
}

qint64 DataSource::retention(int interval)
{
    return interval == 2 ? 1800 : qint64(interval) * 1800;
}

double DataSource::seaLevelPressure(double stationPressure, double elevation)
{
    if (std::fabs(elevation) <= 1e-12)
        return stationPressure;
    return stationPressure / Pressure::seaLevelFactor(elevation);
}

double DataSource::displayedPressure(double pressure, double elevation, double offset, int preDisplay)
{
    const double station = pressure + offset;
    return preDisplay == 0 ? seaLevelPressure(station, elevation) : station;
}

double DataSource::pressureUnitFactor()
{
    switch (host().getSetting(SettingKey::UnitPre, SettingDefault::UnitPre).toInt()) {
    case Pressure::Kpa:
        return Pressure::KpaPerHpa;
    case Pressure::InHg:
        return Pressure::InHgPerHpa;
    case Pressure::MmHg:
        return Pressure::MmHgPerHpa;
    default:
        return 1.0;
    }
}

double DataSource::secondsPerUnit(int chartNb)
{
    if (chartNb == 0)
        return 60.0;
    if (chartNb <= 5)
        return 3600.0;
    return 86400.0;
}

bool DataSource::addData(const int& tick, const double& lon, const double& lat, const double& cog,
                         const double& sog, const double& pressure)
{
    QMutexLocker locker(&mutex);
    lastSampleTime = Clock::currentSecsSinceEpoch();

    QSettings* settings = host().getSettings();
    const double offset = settings->value(SettingKey::Offset, SettingDefault::Offset).toDouble();
    const double elevation = settings->value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();

    bool inserted = false;
    for (int i = 0; i < tableNames.size(); ++i) {
        const int interval = tableIntervals.at(i);
        if (tick < interval || tick % interval != 0)
            continue;

        QSqlQuery query(database);
        query.setForwardOnly(true);
        query.exec(DeleteOlder.arg(tableNames.at(i)).arg(lastSampleTime - retention(interval)));

        query.prepare(InsertRow.arg(tableNames.at(i)));
        query.bindValue(QStringLiteral(":TIME"), lastSampleTime);
        query.bindValue(QStringLiteral(":LON"), lon);
        query.bindValue(QStringLiteral(":LAT"), lat);
        query.bindValue(QStringLiteral(":COG"), cog);
        query.bindValue(QStringLiteral(":SOG"), sog);
        query.bindValue(QStringLiteral(":PRE"), pressure);
        query.bindValue(QStringLiteral(":ELE"), elevation);
        query.bindValue(QStringLiteral(":OFS"), offset);
        if (query.exec()) {
            inserted = true;
            query.finish();
        } else {
            qWarning().noquote() << "db update error" << tableNames.at(i) << query.lastError() << lastSampleTime;
        }
    }

    if (!inserted)
        return false;
    setTrend();
    const std::optional<double> fall3h = rawFallSince(10800, pressure);
    const std::optional<double> fall1h = rawFallSince(3600, pressure);
    // Negation is exact: the same bits as the reading minus the row.
    change3h = fall3h ? std::optional<double>(-*fall3h) : std::nullopt;
    change1h = fall1h ? std::optional<double>(-*fall1h) : std::nullopt;
    // Every statement commits by itself; there is no transaction for this to end.
    database.commit();
    checkpointIfDue();
    // Outside the lock: the warning's handlers on the pages may read the log.
    locker.unlock();
    warning.evaluate(fall3h, fall1h, lastSampleTime);
    return true;
}

// Write-ahead logging with normal synchronisation. A commit appends the pages it changed
// to brinholt.db-wal and returns without waiting for the disk: the row is then in the
// kernel's hands and survives the process being killed, and a reader or the next start
// finds it there. Only a checkpoint syncs, the log first and the file after it, so the
// disk sees a few syncs a minute instead of several per statement. A power cut can lose
// the commits since the latest sync: at most the interval between checkpoints, and in
// practice less, since the kernel writes dirty pages back after about half a minute by
// itself. It never damages the file: every frame of the log carries a checksum chained to
// the ones before it, recovery stops at the first that does not follow, and the file
// itself is written only from frames already synced.
void DataSource::prepareJournal()
{
    if (!database.isOpen())
        return;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (query.exec(QStringLiteral("PRAGMA journal_mode")) && query.next()
        && query.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) != 0) {
        query.finish();
        // A file of an earlier version, or a new one. The page size changes only when the
        // file is rewritten, and only outside write-ahead logging; on an empty file the
        // rewrite costs nothing.
        query.exec(QStringLiteral("PRAGMA page_size=%1").arg(PageSize));
        query.exec(QStringLiteral("VACUUM"));
        query.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    }
    query.finish();
    query.exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    lastCheckpoint = Clock::currentSecsSinceEpoch();
}

void DataSource::checkpointIfDue()
{
    // Either way: a clock stepped back must not put the next checkpoint off for hours.
    if (qAbs(lastSampleTime - lastCheckpoint) < CheckpointInterval)
        return;
    lastCheckpoint = lastSampleTime;
    QSqlQuery query(database);
    query.exec(QStringLiteral("PRAGMA wal_checkpoint(PASSIVE)"));
}

void DataSource::closeDatabase()
{
    if (!database.isOpen())
        return;
    QMutexLocker locker(&mutex);
    database.commit();
    {
        QSqlQuery query(database);
        query.exec(QStringLiteral("VACUUM"));
        // The compacted pages are still in the write-ahead log; fold them into the file,
        // which shrinks it, also while another connection keeps the file open.
        query.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    }
    database.close();
}

void DataSource::openDatabase()
{
    if (database.isOpen())
        return;
    const QString path = databasePath();
    if (QSqlDatabase::contains(ServiceConnectionName))
        database = QSqlDatabase::database(ServiceConnectionName);
    else
        database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), ServiceConnectionName);
    database.setDatabaseName(path);
    database.open();
    prepareJournal();
}

// ---- Tendency -------------------------------------------------------------------------

// Runs under addData's lock. Raw readings on both sides, so that a change of offset or
// elevation can't pass for weather.
void DataSource::setTrend()
{
    trend = -10;

    QSqlQuery query(database);
    query.exec(NearestInBaro3h.arg(lastSampleTime - 3600));
    if (!query.next())
        return;
    if (qAbs(lastSampleTime - query.value(Time).toLongLong() - 3600) > 30)
        return;

    // hPa per three hours
    const double change = (host().getCurrentPressure() - query.value(Pre).toDouble()) * 3.0;
    const double size = std::fabs(change);
    int level = 4;
    if (size < 1.0)
        level = 1;
    else if (size < 2.0)
        level = 2;
    else if (size < 3.0)
        level = 3;
    trend = change >= 0.0 ? level : -level;
}

QPointF DataSource::lastFix(int tableNb)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.exec(LastFix.arg(tableNames.value(tableNb)));
    if (!query.next())
        return QPointF();
    return QPointF(query.value(Lon).toDouble(), query.value(Lat).toDouble());
}

// Raw on both sides, as the tendency is: the reading this firing logged against the row.
std::optional<double> DataSource::rawFallSince(qint64 age, double pressure)
{
    QSqlQuery query(database);
    query.exec(NearestInBaro3h.arg(lastSampleTime - age));
    if (!query.next())
        return std::nullopt;
    if (qAbs(lastSampleTime - query.value(Time).toLongLong() - age) > 30)
        return std::nullopt;
    return query.value(Pre).toDouble() - pressure;
}

int DataSource::getTrend()
{
    return trend;
}

// Takes no lock: the chart page calls it while updateChart holds the mutex.
QString DataSource::getTrend3h()
{
    const QString result = QStringLiteral("notOK");

    QSqlQuery query(database);
    query.exec(NearestInBaro3h.arg(lastSampleTime - 10800));
    if (!query.next())
        return result;
    if (qAbs(lastSampleTime - query.value(Time).toLongLong() - 10800) > 30)
        return result;

    // The official tendency is in millibars over three hours, whatever unit is shown.
    const double difference = host().getCurrentPressure() - query.value(Pre).toDouble();
    return QStringLiteral("<div align='left'>%1 mb / 3h</div>").arg(difference, 0, 'f', 1);
}

// ---- Chart feed and cursor ------------------------------------------------------------

void DataSource::updateChart(const int& chartNb)
{
    QMutexLocker locker(&mutex);

    seriesPoints.clear();
    seriesPoints.append(QVector<QPointF>());

    const double factor = pressureUnitFactor();
    const int preDisplay = host().getSetting(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();

    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(ChartRows.arg(tableNames.at(chartNb))))
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();

    const int interval = tableIntervals.at(chartNb);
    const double xUnit = secondsPerUnit(chartNb);
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
        const qint64 time = query.value(Time).toLongLong();
        if (first) {
            // While pressure arrives the newest row is x = 0; after it stops, the present is.
            now = host().getCurrentPressure() < 0.0 ? clock : time;
            first = false;
        }
        const double pressure = displayedPressure(query.value(Pre).toDouble(), query.value(Ele).toDouble(),
                                                  query.value(Ofs).toDouble(), preDisplay);
        const double y = roundToHundredths(pressure * factor);

        if (previousTime != 0 && previousTime - time > gapLimit)
            seriesPoints.append(QVector<QPointF>());
        seriesPoints.last().append(QPointF((time - now) / xUnit, y));

        if (y < min)
            min = y;
        if (y > max)
            max = y;
        previousTime = time;
    }

    double low;
    double high;
    axisBounds(min, max, low, high);
    storms.recompute(database, tableNames.at(chartNb), interval, gapLimit, now, xUnit);

    // Still under the lock: the page's handler runs inside this emission and may only call
    // what takes no lock.
    emit chartUpdated(QVariant(now), low, high, seriesPoints.size());
}

// Takes no lock: it is called from the handler of chartUpdated.
void DataSource::update(QtCharts::QAbstractSeries* series, int n)
{
    if (!series)
        return;
    // The page hands over line and spline series only.
    auto* xySeries = static_cast<QtCharts::QXYSeries*>(series);
    const QVector<QPointF> points = seriesPoints.at(n);
    xySeries->replace(points);
}

QPointF DataSource::getValueAt(const double& timed, const int& chartNb, const QVariant& startDate)
{
    QMutexLocker locker(&mutex);
    QSqlQuery query(database);

    const int preDisplay = host().getSetting(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();
    const double factor = pressureUnitFactor();

    const QString& table = tableNames.at(chartNb);
    const qint64 t = qRound64(timed * secondsPerUnit(chartNb) + startDate.toLongLong());
    const auto rowPressure = [&query, preDisplay]() {
        return displayedPressure(query.value(Pre).toDouble(), query.value(Ele).toDouble(),
                                 query.value(Ofs).toDouble(), preDisplay);
    };

    double value = NoValue;
    query.exec(RowAt.arg(table).arg(t));
    if (query.next()) {
        value = rowPressure();
    } else {
        query.exec(RowAfter.arg(table).arg(t));
        if (query.next()) {
            const double next = rowPressure();
            const qint64 nextTime = query.value(Time).toLongLong();
            query.exec(RowBefore.arg(table).arg(t));
            if (query.next()) {
                const double previous = rowPressure();
                const qint64 previousTime = query.value(Time).toLongLong();
                const qint64 gap = nextTime - previousTime;
                // The cap of 240 puts the limit below the spacing of the two longest tables:
                // there the cursor has a value only exactly on a row.
                const qint64 limit = qMin(tableIntervals.at(chartNb), 240) + 60;
                if (gap < limit) {
                    // An integer quotient on purpose: it is always 0 here, so the curve reads
                    // in steps, at the newer row's value.
                    const qint64 q = (nextTime - t) / gap;
                    value = next + (previous - next) * q;
                }
            }
        }
    }

    return QPointF(timed, roundToHundredths(value * factor));
}

// Called at every mouse move; rather no text than a wait for the lock.
QString DataSource::calcInfo(const QPointF& pt, const int& chartNb)
{
    if (!mutex.tryLock(0)) {
        qWarning().noquote() << "unable to lock mutex";
        return QString();
    }
    std::unique_lock<QMutex> locker(mutex, std::adopt_lock);

    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(NewestTime.arg(tableNames.at(chartNb))))
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();

    const double xUnit = secondsPerUnit(chartNb);
    const double factor = pressureUnitFactor();

    if (!query.next())
        return QString();

    // Counted from the newest row, not from the chart's x = 0: during an outage the two differ.
    const qint64 newest = query.value(0).toLongLong();
    const double pressure = pt.y() / factor;
    const qint64 seconds = static_cast<qint64>(pt.x() * xUnit + newest);
    const QDateTime date = QDateTime::fromSecsSinceEpoch(seconds).toTimeSpec(Qt::UTC);

    return Util::formatPressure(pressure, true)
            + QStringLiteral("&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;")
            + Util::formatDateTimeSecs(date);
}

// ---- Browsing and deletion ------------------------------------------------------------

QVariantList DataSource::getTableContent(int tableNb)
{
    QMutexLocker locker(&mutex);

    const int preDisplay = host().getSetting(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();

    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.exec(RowsNewestFirst.arg(tableNames.at(tableNb)));

    QVariantList list;
    while (query.next()) {
        const qint64 time = query.value(Time).toLongLong();
        const double pressure = displayedPressure(query.value(Pre).toDouble(), query.value(Ele).toDouble(),
                                                  query.value(Ofs).toDouble(), preDisplay);
        // The stored speed is in knots and goes to formatSpeed unconverted, as the list has
        // always shown it.
        const QString desc = QStringLiteral("<Qt>")
                + Util::formatDateTimeSecs(QDateTime::fromSecsSinceEpoch(time)) + QStringLiteral("\n")
                + QStringLiteral("<br><b>") + Util::formatPressure(pressure, true) + QStringLiteral("</b> ")
                + Util::formatPosition(query.value(Lon).toDouble(), query.value(Lat).toDouble())
                + QStringLiteral("<br>")
                + QStringLiteral("COG ") + Util::formatDir3(static_cast<int>(query.value(Cog).toDouble()))
                + tr("deg") + QStringLiteral(" T - SOG ") + Util::formatSpeed(query.value(Sog).toDouble());

        QVariantMap entry;
        entry.insert(QStringLiteral("key"), QString::number(time));
        entry.insert(QStringLiteral("desc"), desc);
        list.append(entry);
    }
    return list;
}

void DataSource::removeKey(int tableNb, QString key)
{
    QMutexLocker locker(&mutex);
    QSqlQuery query(database);
    if (query.exec(DeleteRow.arg(tableNames.at(tableNb), key)))
        qWarning().noquote() << "delete one record OK";
    else
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();
}

// Table by table, each under its own lock, so a sample may land in between.
void DataSource::emptyAllTables()
{
    for (int i = 0; i < tableNames.size(); ++i)
        emptyOneTable(i);
}

void DataSource::emptyOneTable(int n)
{
    QMutexLocker locker(&mutex);
    QSqlQuery query(database);
    if (query.exec(DeleteAll.arg(tableNames.at(n))))
        qWarning().noquote() << "empty one table OK" << tableNames.at(n);
    else
        qWarning().noquote() << "db query error" << query.lastError() << query.lastQuery();
}

// ---- Export ---------------------------------------------------------------------------

// The format follows the name the user typed, not the button that opened the dialog.
void DataSource::exportFile(int tableNb, QString fileName)
{
    qWarning().noquote() << "exporting to" << tableNb << fileName;
    fileName.remove(QStringLiteral("file://"), Qt::CaseSensitive);
    if (fileName.isEmpty())
        return;
    if (fileName.endsWith(QStringLiteral(".gpx"), Qt::CaseSensitive))
        exportGpx(tableNb, fileName);
    else
        exportCsv(tableNb, fileName);
}

bool DataSource::exportBarogram(int tableNb, QString fileName)
{
    if (tableNb < 0 || tableNb >= TableCount)
        return false;
    fileName.remove(QStringLiteral("file://"), Qt::CaseSensitive);
    const QString written = fileName.isEmpty() ? QStringLiteral("barogram_%1.pdf").arg(tableNames.at(tableNb)) : fileName;
    // Takes no lock itself: the barogram reads the curve through updateChart.
    if (!Barogram(*this, tableNb).save(fileName.isEmpty() ? host().getAppPath() + written : fileName))
        return false;
    showFile(fileName, written);
    return true;
}

QString DataSource::defaultExportName(int tableNb, const QString& extension) const
{
    return host().getAppPath() + QStringLiteral("export_") + tableNames.at(tableNb) + extension;
}

void DataSource::showFile(const QString& fileName, const QString& writtenName)
{
    // An absolute path gives four slashes after the scheme; that is left as it is.
    const QString target = fileName.isEmpty()
            ? QDir::currentPath() + QStringLiteral("/") + writtenName
            : fileName;
    QDesktopServices::openUrl(QUrl(QStringLiteral("file:///") + target, QUrl::TolerantMode));
}

// The lock is held to the end, the viewer's start included.
void DataSource::exportCsv(int tableNb, QString fileName)
{
    QMutexLocker locker(&mutex);

    // Forward-only, so that rows stream from the query to the file.
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(RowsNewestFirst.arg(tableNames.at(tableNb)))) {
        qWarning().noquote() << "db query error in Csv" << query.lastError() << query.lastQuery();
        return;
    }

    QFile file(fileName.isEmpty() ? defaultExportName(tableNb, QStringLiteral(".csv")) : fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qWarning().noquote() << "unable to open" << file.fileName() << file.errorString();
        return;
    }
    {
        CsvExport csv(&file);
        csv.writeHeader();
        while (query.next())
            csv.writeRow(query);
    }
    file.close();

    showFile(fileName, file.fileName());
}

// The lock is held to the end, the viewer's start included.
void DataSource::exportGpx(int tableNb, QString fileName)
{
    QMutexLocker locker(&mutex);

    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(RowsNewestFirst.arg(tableNames.at(tableNb)))) {
        // The CSV writer's wording, shared on purpose.
        qWarning().noquote() << "db query error in Csv" << query.lastError() << query.lastQuery();
        return;
    }

    QFile file(fileName.isEmpty() ? defaultExportName(tableNb, QStringLiteral(".gpx")) : fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    {
        GpxExport gpx(&file);
        gpx.writeHead(tableNames.at(tableNb));
        while (query.next())
            gpx.writeRow(query);
        gpx.writeTail();
    }
    file.close();

    showFile(fileName, file.fileName());
}
