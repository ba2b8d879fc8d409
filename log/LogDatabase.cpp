// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogDatabase.h"

#include "util/Clock.h"

#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QtGlobal>
#include <QtSql/QSqlQuery>

namespace {
const QString ConnectionName = QStringLiteral("DB_BRINHOLT");
const QString ServiceConnectionName = QStringLiteral("DB_BRINHOLT_SERVICE");
const QString CreateTable = QStringLiteral(
        "CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, COG FLOAT, SOG FLOAT, "
        "PRE FLOAT, ELE FLOAT, OFS FLOAT)");

// Pages of the log file in bytes. Each commit appends every page it changed to the
// write-ahead log, so small pages cut what a row costs the disk; rows are some 60 bytes.
constexpr int PageSize = 512;
// Seconds of the clock between two checkpoints, each of which syncs the write-ahead log
// and then the file: the most a power cut can take beyond what the kernel wrote back.
constexpr qint64 CheckpointInterval = 300;
}

void LogDatabase::open(const QString& path, const QStringList& tableNames)
{
    const bool existed = QFileInfo::exists(path);
    // The log needs the folder itself, for the file and for the write-ahead log beside it.
    const QString folder = QFileInfo(path).absolutePath();
    writable = QFileInfo(folder).isWritable();
    if (!writable)
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
        for (const QString& name : tableNames)
            query.exec(CreateTable.arg(name));
    }
}

void LogDatabase::openService(const QString& path)
{
    if (QSqlDatabase::contains(ServiceConnectionName))
        database = QSqlDatabase::database(ServiceConnectionName);
    else
        database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), ServiceConnectionName);
    database.setDatabaseName(path);
    database.open();
    prepareJournal();
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
void LogDatabase::prepareJournal()
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

void LogDatabase::checkpointIfDue(qint64 now)
{
    // Either way: a clock stepped back must not put the next checkpoint off for hours.
    if (qAbs(now - lastCheckpoint) < CheckpointInterval)
        return;
    lastCheckpoint = now;
    QSqlQuery query(database);
    query.exec(QStringLiteral("PRAGMA wal_checkpoint(PASSIVE)"));
}

void LogDatabase::close()
{
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
