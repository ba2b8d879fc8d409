// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/DataSource.h"

#include "log/Barogram.h"
#include "log/ChartCursor.h"
#include "log/ChartSpanReader.h"
#include "log/CsvExport.h"
#include "log/GpxExport.h"
#include "log/LogBrowser.h"
#include "log/LogHost.h"
#include "log/LogRow.h"
#include "log/TendencyReader.h"
#include "util/Clock.h"
#include "util/SettingKeys.h"

#include <QtCharts/QAbstractAxis>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMutexLocker>
#include <QtCore/QSettings>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <mutex>

namespace {
const QString DeleteOlder = QStringLiteral("DELETE FROM %1 WHERE TIME < %2;");
const QString InsertRow = QStringLiteral(
        "INSERT INTO %1 (TIME, LON, LAT, COG, SOG, PRE, ELE, OFS) "
        "VALUES (:TIME, :LON, :LAT, :COG, :SOG, :PRE, :ELE, :OFS);");
const QString RowsNewestFirst = QStringLiteral("SELECT * FROM %1 ORDER BY TIME DESC");
const QString LastFix = QStringLiteral("SELECT * FROM %1 WHERE LON <> 0 OR LAT <> 0 ORDER BY TIME DESC LIMIT 1");
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

    store.open(databasePath(), tableNames);

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
    return LogRow::seaLevelPressure(stationPressure, elevation);
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

        QSqlQuery query(store.connection());
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
    const std::optional<double> fall3h = tendency.fallSince(10800, pressure);
    const std::optional<double> fall1h = tendency.fallSince(3600, pressure);
    const TendencyReader reader(store.connection());
    const std::optional<ThreeHourPoints> points = reader.read(lastSampleTime, pressure);
    const std::optional<double> latitude = reader.latestLatitude();
    // Negation is exact: the same bits as the reading minus the row.
    change3h = fall3h ? std::optional<double>(-*fall3h) : std::nullopt;
    change1h = fall1h ? std::optional<double>(-*fall1h) : std::nullopt;
    store.commit();
    store.checkpointIfDue(lastSampleTime);
    // Outside the lock: the warning's handlers on the pages may read the log.
    locker.unlock();
    warning.evaluate(fall3h, fall1h, lastSampleTime);
    tendencyReport.evaluate(points, latitude, lastSampleTime);
    return true;
}

void DataSource::closeDatabase()
{
    if (!store.isOpen())
        return;
    QMutexLocker locker(&mutex);
    store.close();
}

void DataSource::openDatabase()
{
    if (store.isOpen())
        return;
    store.openService(databasePath());
}

// ---- Tendency -------------------------------------------------------------------------

// Runs under addData's lock.
void DataSource::setTrend()
{
    trend = tendency.trendClass();
}

int DataSource::getTrend()
{
    return trend;
}

// Takes no lock: the chart page calls it while updateChart holds the mutex.
QString DataSource::getTrend3h()
{
    return tendency.threeHourText();
}

QPointF DataSource::lastFix(int tableNb)
{
    QSqlQuery query(store.connection());
    query.setForwardOnly(true);
    query.exec(LastFix.arg(tableNames.value(tableNb)));
    if (!query.next())
        return QPointF();
    return QPointF(query.value(LogRow::Lon).toDouble(), query.value(LogRow::Lat).toDouble());
}

// ---- Chart feed and cursor ------------------------------------------------------------

void DataSource::updateChart(const int& chartNb)
{
    QMutexLocker locker(&mutex);
    const ChartSpan span = readSpan(chartNb, storms);
    const ChartFeed::Frame frame = chart.keep(span);
    // Still under the lock: the page's handler runs inside this emission and may only call
    // what takes no lock.
    emit chartUpdated(QVariant(frame.now), frame.low, frame.high, frame.seriesCount);
}

ChartSpan DataSource::readChart(int chartNb)
{
    QMutexLocker locker(&mutex);
    // Marks of its own: the page's stay those of the page's chart.
    StormMarks marks;
    ChartSpan span = readSpan(chartNb, marks);
    span.storms = marks.periods();
    return span;
}

ChartSpan DataSource::readSpan(int chartNb, StormMarks& marks)
{
    const int interval = tableIntervals.at(chartNb);
    QVector<StormMarks::Row> rows;
    const ChartSpan span = ChartSpanReader::read(store.connection(), tableNames.at(chartNb), chartNb, interval, rows);
    marks.recompute(rows, interval, ChartSpanReader::gapLimit(interval), span.now, span.secondsPerUnit);
    return span;
}

// Takes no lock: it is called from the handler of chartUpdated.
void DataSource::update(QtCharts::QAbstractSeries* series, int n)
{
    chart.fill(series, n);
}

QPointF DataSource::getValueAt(const double& timed, const int& chartNb, const QVariant& startDate)
{
    QMutexLocker locker(&mutex);
    return ChartCursor::valueAt(store.connection(), tableNames.at(chartNb), tableIntervals.at(chartNb), timed,
                                chartNb, startDate);
}

// Called at every mouse move; rather no text than a wait for the lock.
QString DataSource::calcInfo(const QPointF& pt, const int& chartNb)
{
    if (!mutex.tryLock(0)) {
        qWarning().noquote() << "unable to lock mutex";
        return QString();
    }
    std::unique_lock<QMutex> locker(mutex, std::adopt_lock);
    return ChartCursor::info(store.connection(), tableNames.at(chartNb), pt, chartNb);
}

// ---- Browsing and deletion ------------------------------------------------------------

QVariantList DataSource::getTableContent(int tableNb)
{
    QMutexLocker locker(&mutex);
    return LogBrowser::content(store.connection(), tableNames.at(tableNb));
}

void DataSource::removeKey(int tableNb, QString key)
{
    QMutexLocker locker(&mutex);
    LogBrowser::removeRow(store.connection(), tableNames.at(tableNb), key);
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
    LogBrowser::empty(store.connection(), tableNames.at(n));
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

// Forward-only, so that rows stream from the query to the file. A failed query has the
// CSV export's wording in both exports, on purpose.
bool DataSource::rowsForExport(QSqlQuery& query, int tableNb)
{
    query.setForwardOnly(true);
    if (query.exec(RowsNewestFirst.arg(tableNames.at(tableNb))))
        return true;
    qWarning().noquote() << "db query error in Csv" << query.lastError() << query.lastQuery();
    return false;
}

// The lock is held to the end, the viewer's start included.
void DataSource::exportCsv(int tableNb, QString fileName)
{
    QMutexLocker locker(&mutex);
    QSqlQuery query(store.connection());
    if (!rowsForExport(query, tableNb))
        return;

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
    QSqlQuery query(store.connection());
    if (!rowsForExport(query, tableNb))
        return;

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
