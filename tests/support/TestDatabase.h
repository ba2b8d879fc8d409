// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtSql/QSqlDatabase>

// A test's own connection to a log file, beside the application's, so that what the test
// reads or writes goes through SQLite as another process's access would.
class TestDatabase
{
public:
    // The connection under `name`, opened on `path`; reopened when the path has changed.
    static QSqlDatabase open(const QString& name, const QString& path);
    // Rows of one table, or -1 when the count fails.
    static int rowCount(const QSqlDatabase& db, const QString& table);
};
