// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/LogFixture.h"

#include "tests/support/TestDatabase.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"

#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

namespace {
const QString TestConnection = QStringLiteral("LOG_FIXTURE");
}

LogFixture::LogFixture()
{
    start();
}

LogFixture::~LogFixture()
{
    shutdown();
}

void LogFixture::start()
{
    back.reset(new BackEnd);
    source.reset(new DataSource(nullptr));
    dataSource = source.get();
}

void LogFixture::shutdown()
{
    source.reset();
    dataSource = nullptr;
    back.reset();
    backend = nullptr;
    QSqlDatabase::removeDatabase(QStringLiteral("DB_BRINHOLT"));
    QSqlDatabase::removeDatabase(QStringLiteral("DB_BRINHOLT_SERVICE"));
}

void LogFixture::restart()
{
    shutdown();
    start();
}

static QSqlDatabase testDatabase(const QString& path)
{
    return TestDatabase::open(TestConnection, path);
}

int LogFixture::rowCount(const QString& table) const
{
    return TestDatabase::rowCount(testDatabase(dataFolder.filePath(QStringLiteral("brinholt.db"))), table);
}

QVariantList LogFixture::column(const QString& table, int column) const
{
    QVariantList values;
    QSqlQuery query(testDatabase(dataFolder.filePath(QStringLiteral("brinholt.db"))));
    query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY TIME").arg(table));
    while (query.next())
        values.append(query.value(column));
    return values;
}

bool LogFixture::exec(const QString& statement) const
{
    QSqlQuery query(testDatabase(dataFolder.filePath(QStringLiteral("brinholt.db"))));
    return query.exec(statement);
}
