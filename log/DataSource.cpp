#include "log/DataSource.h"

#include "app/BackEnd.h"
#include "util/Clock.h"

#include <QtCharts/QAbstractAxis>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QMutexLocker>
#include <QtCore/QSettings>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

DataSource* dataSource = nullptr;

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

    if (QSqlDatabase::contains(ConnectionName)) {
        database = QSqlDatabase::database(ConnectionName);
    } else {
        database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), ConnectionName);
        database.setDatabaseName(path);
        database.open();
    }

    if (!existed) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        for (const QString& name : qAsConst(tableNames))
            query.exec(CreateTable.arg(name));
    }

    qWarning() << "dataSource created";
}

DataSource::~DataSource()
{
    closeDatabase();
    qWarning() << "datasource deleted";
}

QString DataSource::databasePath() const
{
    const QString base = backend ? backend->getAppPath() : QStringLiteral("./");
    return base + QStringLiteral("brinholt.db");
}

qint64 DataSource::retention(int interval)
{
    return interval == 2 ? 1800 : qint64(interval) * 1800;
}

bool DataSource::addData(const int& tick, const double& lon, const double& lat, const double& cog,
                         const double& sog, const double& pressure)
{
    QMutexLocker locker(&mutex);
    lastSampleTime = Clock::currentSecsSinceEpoch();

    QSettings* settings = backend->getSettings();
    const double offset = settings->value(QStringLiteral("offset"), 0.0).toDouble();
    const double elevation = settings->value(QStringLiteral("elevation"), 0.0).toDouble();

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
    // Every statement commits by itself; there is no transaction for this to end.
    database.commit();
    return true;
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
}

// ---- Tendency -------------------------------------------------------------------------

void DataSource::setTrend()
{
}

int DataSource::getTrend()
{
    return trend;
}

QString DataSource::getTrend3h()
{
    return QString();
}

// ---- Chart feed and cursor ------------------------------------------------------------

void DataSource::updateChart(const int& chartNb)
{
    Q_UNUSED(chartNb)
}

void DataSource::update(QtCharts::QAbstractSeries* series, int n)
{
    Q_UNUSED(series)
    Q_UNUSED(n)
}

QPointF DataSource::getValueAt(const double& timed, const int& chartNb, const QVariant& startDate)
{
    Q_UNUSED(timed)
    Q_UNUSED(chartNb)
    Q_UNUSED(startDate)
    return QPointF(0.0, -1000.0);
}

QString DataSource::calcInfo(const QPointF& pt, const int& chartNb)
{
    Q_UNUSED(pt)
    Q_UNUSED(chartNb)
    return QString();
}

// ---- Browsing and deletion ------------------------------------------------------------

QVariantList DataSource::getTableContent(int tableNb)
{
    Q_UNUSED(tableNb)
    return {};
}

void DataSource::removeKey(int tableNb, QString key)
{
    Q_UNUSED(tableNb)
    Q_UNUSED(key)
}

void DataSource::emptyAllTables()
{
}

void DataSource::emptyOneTable(int n)
{
    Q_UNUSED(n)
}

// ---- Export ---------------------------------------------------------------------------

void DataSource::exportFile(int tableNb, QString fileName)
{
    Q_UNUSED(tableNb)
    Q_UNUSED(fileName)
}

void DataSource::exportCsv(int tableNb, QString fileName)
{
    Q_UNUSED(tableNb)
    Q_UNUSED(fileName)
}

void DataSource::exportGpx(int tableNb, QString fileName)
{
    Q_UNUSED(tableNb)
    Q_UNUSED(fileName)
}
