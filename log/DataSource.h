// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCharts/QAbstractSeries>
#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include "log/ChartFeed.h"
#include "log/ChartSpan.h"
#include "log/LogDatabase.h"
#include "log/LogTendency.h"
#include "log/PressureWarning.h"
#include "log/StormMarks.h"
#include "log/TendencyReport.h"

#include <optional>

class LogHost;
class QQuickView;
class QSqlQuery;

// The pressure log: nine SQLite tables of growing span, decimated at write time.
//
// The lock: `mutex` is the only lock of the system and is not recursive. Every operation
// runs on the main thread, but pages call in at any time.
// - Blocking: addData, updateChart, getValueAt, getTableContent, removeKey, emptyOneTable,
//   emptyAllTables (table by table), closeDatabase and the exports.
// - tryLock(0): calcInfo, which gives up with "unable to lock mutex" rather than wait.
// - No lock: update, getTrend, getTrend3h, storms' chartPeriods, and setTrend (it runs
//   under addData's lock).
// updateChart emits chartUpdated while it holds the lock, and the page's handler runs
// inside that emission: from that handler only update, getTrend3h and storms'
// chartPeriods may be called.
class DataSource : public QObject
{
    Q_OBJECT
    // The pressure-fall warning, judged after each firing that writes a row.
    Q_PROPERTY(PressureWarning* warning READ getWarning CONSTANT)
    // Where the warning held over the table of the latest updateChart.
    Q_PROPERTY(StormMarks* storms READ getStorms CONSTANT)
    // The tendency in words, its characteristic and the forecast, judged at the same moments.
    Q_PROPERTY(TendencyReport* tendency READ getTendency CONSTANT)

public:
    explicit DataSource(QQuickView* view, QObject* parent = nullptr);
    ~DataSource() override;

    // Stores one sample in every table whose interval the tick counter has reached.
    bool addData(const int& tick, const double& lon, const double& lat, const double& cog,
                 const double& sog, const double& pressure);
    void openDatabase();
    void closeDatabase();
    // False when the data folder could not be written at start: no row can be kept, and
    // the tick shows its readings without waiting for one.
    bool canKeepRows() const { return store.folderWritable(); }

    static constexpr int TableCount = 9;
    const QStringList& getTableNames() const { return tableNames; }
    const QList<int>& getTableIntervals() const { return tableIntervals; }
    // Seconds a table keeps: its interval times 1800, except the 30-minute table.
    static qint64 retention(int interval);
    // Station pressure reduced to sea level; elevation in metres. A zero elevation leaves
    // the pressure as it is.
    static double seaLevelPressure(double stationPressure, double elevation);
    PressureWarning* getWarning() { return &warning; }
    StormMarks* getStorms() { return &storms; }
    TendencyReport* getTendency() { return &tendencyReport; }
    // The logged reading minus the BARO3H row within 30 s of three hours (one hour) before
    // it, raw, in hPa, as the last row-writing firing found them; nothing without such a row.
    std::optional<double> lastChange3h() const { return change3h; }
    std::optional<double> lastChange1h() const { return change1h; }
    // The newest position of a table that is not (0, 0); (0, 0) when it has none.
    QPointF lastFix(int tableNb);
    // The curve updateChart would give, for views other than the graph page: blocking, but
    // it neither touches the series the page fetches nor emits chartUpdated.
    ChartSpan readChart(int chartNb);

signals:
    void chartUpdated(QVariant now, double min, double max, int seriesCount);

public slots:
    void update(QtCharts::QAbstractSeries* series, int n);
    QString calcInfo(const QPointF& pt, const int& chartNb);
    void updateChart(const int& chartNb);

public:
    Q_INVOKABLE int getTrend();
    Q_INVOKABLE QVariantList getTableContent(int tableNb);
    Q_INVOKABLE void removeKey(int tableNb, QString key);
    Q_INVOKABLE void emptyAllTables();
    Q_INVOKABLE void emptyOneTable(int n);
    Q_INVOKABLE QString getTrend3h();
    Q_INVOKABLE void exportCsv(int tableNb, QString fileName = QString());
    Q_INVOKABLE void exportGpx(int tableNb, QString fileName = QString());
    Q_INVOKABLE QPointF getValueAt(const double& timed, const int& chartNb, const QVariant& startDate);
    Q_INVOKABLE void exportFile(int tableNb, QString fileName);
    // The table as a barogram, PNG or PDF by the file's extension; with no name, a PDF in
    // the data folder. The file is shown as the exports are. False if it was not written.
    Q_INVOKABLE bool exportBarogram(int tableNb, QString fileName = QString());

private:
    // The trend class of the row just written; runs under addData's lock.
    void setTrend();
    // The chart's span, and into `marks` the storms found in the same scan of the table.
    ChartSpan readSpan(int chartNb, StormMarks& marks);
    bool rowsForExport(QSqlQuery& query, int tableNb);
    // What the application installed. The log is made after it, and every reader but the
    // database path leans on it being there.
    static LogHost& host();
    QString databasePath() const;
    QString defaultExportName(int tableNb, const QString& extension) const;
    // Hands the written file to the system's default application.
    static void showFile(const QString& fileName, const QString& writtenName);

    LogDatabase store;
    QMutex mutex;
    QQuickView* view = nullptr;
    QStringList tableNames;
    QList<int> tableIntervals;
    int trend = -10;
    qint64 lastSampleTime = 0;
    LogTendency tendency{store.connection(), lastSampleTime};
    ChartFeed chart;
    PressureWarning warning;
    StormMarks storms;
    TendencyReport tendencyReport;
    std::optional<double> change3h;
    std::optional<double> change1h;
};
