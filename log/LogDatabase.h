// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtSql/QSqlDatabase>

// The SQLite file of the log: its connections, its nine tables made on first start, the
// write-ahead journal and the checkpoints that bound what a power cut can take. It takes no
// lock of its own; the log holds its lock around every use.
class LogDatabase
{
public:
    // Opens the file at `path`, on the connection of the same name if one is left from an
    // earlier log, and makes the tables if the file is new.
    void open(const QString& path, const QStringList& tableNames);
    // The connection of the command line's service, used while the main one is closed.
    void openService(const QString& path);
    // Compacts the file and closes it.
    void close();
    bool isOpen() const { return database.isOpen(); }
    // Every statement commits by itself; there is no transaction for this to end.
    void commit() { database.commit(); }
    // A checkpoint every five minutes of the clock; `now` in seconds since the epoch.
    void checkpointIfDue(qint64 now);

    QSqlDatabase& connection() { return database; }
    // False when the data folder could not be written at the start.
    bool folderWritable() const { return writable; }

private:
    // Journal and sync settings of the open connection; converts a file of an earlier
    // version, which used a rollback journal.
    void prepareJournal();

    QSqlDatabase database;
    qint64 lastCheckpoint = 0;
    bool writable = true;
};
