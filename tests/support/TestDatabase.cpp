// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TestDatabase.h"

#include <QtCore/QVariant>
#include <QtSql/QSqlQuery>

QSqlDatabase TestDatabase::open(const QString& name, const QString& path)
{
    QSqlDatabase db = QSqlDatabase::contains(name) ? QSqlDatabase::database(name, false)
                                                   : QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    if (db.databaseName() != path) {
        db.close();
        db.setDatabaseName(path);
    }
    if (!db.isOpen())
        db.open();
    return db;
}

int TestDatabase::rowCount(const QSqlDatabase& db, const QString& table)
{
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)) || !query.next())
        return -1;
    return query.value(0).toInt();
}
