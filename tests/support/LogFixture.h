// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TestDataFolder.h"

#include <QtCore/QString>
#include <QtCore/QVariantList>

#include <memory>

class BackEnd;
class DataSource;

// A BackEnd and a DataSource over a fresh data folder, with the globals set as start-up
// sets them. The log's connection is dropped afterwards, so the next fixture opens its
// own file.
class LogFixture
{
public:
    LogFixture();
    ~LogFixture();
    Q_DISABLE_COPY(LogFixture)

    BackEnd& backEnd() { return *back; }
    DataSource& log() { return *source; }
    TestDataFolder& folder() { return dataFolder; }

    // Ends the DataSource and the BackEnd as shutdown does, then starts new ones on the
    // same folder, as a restart of the application would.
    void restart();
    void shutdown();

    // Rows of one table, read through a connection of the test's own.
    int rowCount(const QString& table) const;
    QVariantList column(const QString& table, int column) const;
    // Runs one statement on the log file through the test's own connection.
    bool exec(const QString& statement) const;

private:
    void start();

    TestDataFolder dataFolder;
    std::unique_ptr<BackEnd> back;
    std::unique_ptr<DataSource> source;
};
