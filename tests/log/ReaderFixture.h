// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/LogFixture.h"
#include "tests/support/MessageLog.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtSql/QSqlDatabase>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

class BackEnd;
class DataSource;

// Stands in for the system's default application: records each URL it is asked to open.
class UrlRecorder : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;
    // Runs inside the call to open, while the caller still does whatever it does around it.
    std::function<void(const QUrl&)> onOpen;

public slots:
    void openUrl(const QUrl& url);
};

// One row of a log table, column by column.
struct LogRow
{
    qint64 time = 0;
    double lon = 0.0;
    double lat = 0.0;
    double cog = 0.0;
    double sog = 0.0;
    double pre = 1013.25;
    double ele = 0.0;
    double ofs = 0.0;
};

// A row at `time` with its pressure, elevation and offset; the position columns stay zero.
inline LogRow rowAt(qint64 time, double pre, double ele = 0.0, double ofs = 0.0)
{
    LogRow row;
    row.time = time;
    row.pre = pre;
    row.ele = ele;
    row.ofs = ofs;
    return row;
}

// The log fixture with what the readers' tests need beside it: the clock fixed, rows put
// straight into the tables, and the "file" scheme caught so that no viewer starts.
class ReaderFixture
{
public:
    ReaderFixture();
    ~ReaderFixture();
    Q_DISABLE_COPY(ReaderFixture)

    // 14:03:22 UTC on 5 November 2026.
    static constexpr qint64 ExampleTime = 1793887402;
    // The table the trend and the warning are read against.
    static constexpr int Baro3h = 1;
    // The row used throughout the CSV and GPX examples.
    static LogRow exampleRow();

    static QString tableName(int table);
    static int tableInterval(int table);
    static QSqlDatabase connection();

    BackEnd& backend() { return base.backEnd(); }
    DataSource& log() { return base.log(); }
    QString path(const QString& name) { return base.folder().filePath(name); }

    void setSetting(const QString& key, const QVariant& value);
    // The current reading, as the serial source delivers it; -2000.0 makes it go away.
    void setPressure(double hPa);
    void setClock(qint64 secs);
    // One firing of the sampling tick at `time` with `hPa` current, its counter at `counter`
    // (which decides the tables written); whether the log took it.
    bool fire(qint64 time, double hPa, int counter);

    void insert(int table, const LogRow& row);
    void insert(int table, const QVector<LogRow>& rows);
    int rowCount(int table) const;
    // TIME of every row, newest first.
    QVector<qint64> times(int table) const;
    void execute(const QString& statement);

    // A plausible row at `time`: a slow pressure wave and a ship under way.
    static LogRow sampleRow(qint64 time);
    // `count` rows at the table's own spacing, the newest at `newest`.
    void fillTable(int table, int count, qint64 newest);
    // Every table as the sampling tick leaves it after 16 days of pressure, the counter
    // starting at 768 and the last firing at `end`.
    void fillSixteenDays(qint64 end);
    // In place of what `table` holds, the rows the tick would have left in it at `end`
    // over sixteen days of `weather`, raw; a time without a pressure is a pause in the log.
    // The clock and the current reading are those of the last row.
    void replay(int table, qint64 end, const std::function<std::optional<double>(qint64)>& weather);

    MessageLog messages;
    UrlRecorder viewer;

private:
    LogFixture base;
};

// Fails the whole test run if the scope isn't left in time: a lock taken twice on one
// thread hangs instead of failing.
class Watchdog
{
public:
    Watchdog(int milliseconds, const char* what);
    ~Watchdog();

private:
    std::mutex mutex;
    std::condition_variable done;
    bool disarmed = false;
    std::thread thread;
};
