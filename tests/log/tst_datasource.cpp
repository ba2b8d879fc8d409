// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tests/support/Columns.h"
#include "tests/support/LogFixture.h"
#include "tests/support/MessageLog.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <algorithm>

// The log store: its tables, the write decision, retention and the failure paths.
class TestDataSource : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = 1793000000;

    static bool add(DataSource& log, int tick, double pressure = 1013.0)
    {
        return log.addData(tick, -4.5, 48.25, 271.0, 6.5, pressure);
    }

    static QString createStatement(const QString& path, const QString& table)
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "SCHEMA_READER");
        QString sql;
        {
            db.setDatabaseName(path);
            db.open();
            QSqlQuery query(db);
            query.exec(QString("SELECT sql FROM sqlite_master WHERE type='table' AND name='%1'").arg(table));
            if (query.next())
                sql = query.value(0).toString();
        }
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase("SCHEMA_READER");
        return sql;
    }

    // One pragma's value, read through a connection of its own.
    static QString pragma(const QString& path, const QString& name)
    {
        QString value;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "PRAGMA_READER");
            db.setDatabaseName(path);
            db.open();
            QSqlQuery query(db);
            if (query.exec("PRAGMA " + name) && query.next())
                value = query.value(0).toString();
        }
        QSqlDatabase::removeDatabase("PRAGMA_READER");
        return value;
    }

    // Firings two seconds apart with the tick's counter, as BackEnd makes them; returns how
    // many wrote a row.
    static int runFirings(DataSource& log, qint64& second, int& tick, int count)
    {
        int written = 0;
        for (int i = 0; i < count; ++i) {
            Clock::setFixedSecsSinceEpoch(second);
            if (log.addData(tick, -4.5, 48.25, 271.0, 6.5, 1000.0 + (i % 40) / 4.0))
                ++written;
            tick = tick < 767 ? tick + 2 : 0;
            second += 2;
        }
        return written;
    }

    static QList<QSet<qint64>> allTimes(LogFixture& f)
    {
        QList<QSet<qint64>> times;
        for (const QString& table : f.log().getTableNames()) {
            QSet<qint64> set;
            for (const QVariant& time : f.column(table, 0))
                set.insert(time.toLongLong());
            times.append(set);
        }
        return times;
    }

private slots:
    void init()
    {
        Clock::reset();
        Clock::setFixedSecsSinceEpoch(Now);
    }

    void cleanup()
    {
        Clock::reset();
    }

    void tablesHaveTheirNamesIntervalsAndRetention()
    {
        LogFixture f;
        QCOMPARE(f.log().getTableNames(),
                 QStringList({"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D", "BARO2D", "BARO4D",
                              "BARO8D", "BAR16D"}));
        QCOMPARE(f.log().getTableIntervals(), QList<int>({2, 6, 12, 24, 48, 96, 192, 384, 768}));
        const QList<qint64> retention = {1800, 10800, 21600, 43200, 86400, 172800, 345600, 691200, 1382400};
        for (int i = 0; i < DataSource::TableCount; ++i)
            QCOMPARE(DataSource::retention(f.log().getTableIntervals()[i]), retention[i]);
    }

    void freshFileHasTheNineTablesWithTheExactStatement()
    {
        LogFixture f;
        for (const QString& table : f.log().getTableNames()) {
            QCOMPARE(createStatement(f.folder().filePath("brinholt.db"), table),
                     QString("CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, COG FLOAT, "
                             "SOG FLOAT, PRE FLOAT, ELE FLOAT, OFS FLOAT)")
                             .arg(table));
        }
    }

    void firstFiringOnAFreshFileWritesNineRowsWithOneTime()
    {
        LogFixture f;
        QVERIFY(add(f.log(), 768));
        for (const QString& table : f.log().getTableNames()) {
            QCOMPARE(f.rowCount(table), 1);
            QCOMPARE(f.column(table, 0).value(0).toLongLong(), Now);
            QCOMPARE(f.column(table, 1).value(0).toDouble(), -4.5);
            QCOMPARE(f.column(table, 2).value(0).toDouble(), 48.25);
            QCOMPARE(f.column(table, 3).value(0).toDouble(), 271.0);
            QCOMPARE(f.column(table, 4).value(0).toDouble(), 6.5);
            QCOMPARE(f.column(table, 5).value(0).toDouble(), 1013.0);
        }
    }

    void writeDecisionByTick_data()
    {
        Columns::add<int, QList<int>>("tick", "tables");
        QTest::newRow("tick 0 writes nothing") << 0 << QList<int>();
        QTest::newRow("tick 2 writes the 2-second table") << 2 << QList<int>({0});
        QTest::newRow("tick 6 writes tables 0 and 1") << 6 << QList<int>({0, 1});
        QTest::newRow("tick 8 writes table 0 alone") << 8 << QList<int>({0});
        QTest::newRow("tick 12 writes tables 0 to 2") << 12 << QList<int>({0, 1, 2});
        QTest::newRow("tick 96 writes tables 0 to 5") << 96 << QList<int>({0, 1, 2, 3, 4, 5});
        QTest::newRow("tick 384 writes all but the 16-day table") << 384 << QList<int>({0, 1, 2, 3, 4, 5, 6, 7});
        QTest::newRow("tick 766 writes table 0 alone") << 766 << QList<int>({0});
        QTest::newRow("tick 768 writes all nine") << 768 << QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8});
        QTest::newRow("an odd tick writes nothing") << 7 << QList<int>();
    }

    void writeDecisionByTick()
    {
        QFETCH(int, tick);
        QFETCH(QList<int>, tables);
        LogFixture f;
        QCOMPARE(add(f.log(), tick), !tables.isEmpty());
        for (int i = 0; i < DataSource::TableCount; ++i)
            QCOMPARE(f.rowCount(f.log().getTableNames()[i]), tables.contains(i) ? 1 : 0);
    }

    void rowAtTheRetentionLimitStays_data()
    {
        QTest::addColumn<int>("table");
        for (int i = 0; i < DataSource::TableCount; ++i)
            QTest::addRow("table %d", i) << i;
    }

    void rowAtTheRetentionLimitStays()
    {
        QFETCH(int, table);
        LogFixture f;
        const QString name = f.log().getTableNames()[table];
        const qint64 keep = DataSource::retention(f.log().getTableIntervals()[table]);
        QVERIFY(f.exec(QString("INSERT INTO %1 VALUES (%2, 0, 0, 0, 0, 1000, 0, 0)").arg(name).arg(Now - keep)));
        QVERIFY(f.exec(QString("INSERT INTO %1 VALUES (%2, 0, 0, 0, 0, 1000, 0, 0)").arg(name).arg(Now - keep - 1)));
        QVERIFY(add(f.log(), f.log().getTableIntervals()[table]));
        const QVariantList times = f.column(name, 0);
        QCOMPARE(times, QVariantList({Now - keep, Now}));
    }

    void tablesNotWrittenKeepTheirOldRows()
    {
        LogFixture f;
        QVERIFY(f.exec(QString("INSERT INTO BAR16D VALUES (%1, 0, 0, 0, 0, 1000, 0, 0)").arg(Now - 10000000)));
        QVERIFY(add(f.log(), 2));
        QCOMPARE(f.rowCount("BAR16D"), 1);
    }

    void offsetAndElevationTravelWithNewRowsOnly()
    {
        LogFixture f;
        f.backEnd().setSetting("offset", 1.5);
        f.backEnd().setSetting("elevation", 12.0);
        QVERIFY(add(f.log(), 2));
        f.backEnd().setSetting("offset", -3.0);
        f.backEnd().setSetting("elevation", 40.0);
        Clock::setFixedSecsSinceEpoch(Now + 2);
        QVERIFY(add(f.log(), 4));
        QCOMPARE(f.column("BARO30M", 6), QVariantList({12.0, 40.0}));
        QCOMPARE(f.column("BARO30M", 7), QVariantList({1.5, -3.0}));
    }

    void restartKeepsRowsAndCreatesNothing()
    {
        LogFixture f;
        QVERIFY(add(f.log(), 768));
        // An extra table of our own proves the file is taken as it is: had CREATE TABLE
        // run again it would fail quietly, so drop one table and see it stay dropped.
        f.shutdown();
        QVERIFY(f.exec("DROP TABLE BARO6H"));
        f.restart();
        QCOMPARE(f.rowCount("BARO30M"), 1);
        QCOMPARE(f.rowCount("BARO6H"), -1);

        Clock::setFixedSecsSinceEpoch(Now + 30);
        MessageLog messages;
        QVERIFY(add(f.log(), 768));
        // All tables but the dropped one took the first firing after the restart.
        for (const QString& table : f.log().getTableNames()) {
            if (table != QLatin1String("BARO6H"))
                QCOMPARE(f.rowCount(table), 2);
        }
        QCOMPARE(messages.count("db update error BARO6H"), 1);
    }

    void restartInTheSameSecondFailsOnTheKey()
    {
        LogFixture f;
        QVERIFY(add(f.log(), 768));
        f.restart();
        MessageLog messages;
        QVERIFY(!add(f.log(), 768));
        QCOMPARE(messages.count("db update error"), DataSource::TableCount);
        QVERIFY(messages.messages().first().contains(QString::number(Now)));
        for (const QString& table : f.log().getTableNames())
            QCOMPARE(f.rowCount(table), 1);
    }

    void secondRowInOneSecondIsRejectedWhileOtherTablesAreWritten()
    {
        LogFixture f;
        QVERIFY(add(f.log(), 2)); // table 0 at Now
        MessageLog messages;
        // Same second again with tick 6: table 0 collides, table 1 is new.
        QVERIFY(add(f.log(), 6));
        QCOMPARE(messages.count("db update error BARO30M"), 1);
        QCOMPARE(messages.count("db update error"), 1);
        QCOMPARE(f.rowCount("BARO30M"), 1);
        QCOMPARE(f.rowCount("BARO3H"), 1);
    }

    void fileThatIsNotADatabase()
    {
        TestDataFolder folder;
        {
            QFile file("brinholt.db");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(4096, 'x'));
        }
        {
            BackEnd b;
            DataSource log(nullptr);
            dataSource = &log;
            MessageLog messages;
            QVERIFY(!add(log, 768));
            QCOMPARE(messages.count("db update error"), DataSource::TableCount);
            b.setCurrentPressure(1000.0, Serial);
            QSignalSpy updates(&b, &BackEnd::dataUpdated);
            b.slot_timerData();
            QCOMPARE(updates.count(), 0);
            dataSource = nullptr;
        }
        backend = nullptr;
        QSqlDatabase::removeDatabase("DB_BRINHOLT");
        // Untouched: nothing repairs or replaces a file that is not ours.
        QFile file(folder.filePath("brinholt.db"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray(4096, 'x'));
    }

    void databaseWithoutTheTables()
    {
        TestDataFolder folder;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "OTHER");
            db.setDatabaseName(folder.filePath("brinholt.db"));
            QVERIFY(db.open());
            QSqlQuery(db).exec("CREATE TABLE notes (x TEXT)");
            db.close();
        }
        QSqlDatabase::removeDatabase("OTHER");
        {
            BackEnd b;
            DataSource log(nullptr);
            MessageLog messages;
            QVERIFY(!add(log, 768));
            QCOMPARE(messages.count("db update error"), DataSource::TableCount);
        }
        backend = nullptr;
        QSqlDatabase::removeDatabase("DB_BRINHOLT");
    }

    void closeCompactsTheFile()
    {
        LogFixture f;
        for (int i = 0; i < 3000; ++i) {
            Clock::setFixedSecsSinceEpoch(Now + i);
            add(f.log(), 2);
        }
        QVERIFY(f.exec("DELETE FROM BARO30M"));
        const qint64 before = QFileInfo(f.folder().filePath("brinholt.db")).size();
        f.shutdown();
        const qint64 after = QFileInfo(f.folder().filePath("brinholt.db")).size();
        QVERIFY2(after < before, qPrintable(QString("%1 -> %2").arg(before).arg(after)));
    }

    void freshFileRunsAWriteAheadLogWithSmallPages()
    {
        LogFixture f;
        QVERIFY(add(f.log(), 768));
        const QString path = f.folder().filePath("brinholt.db");
        QCOMPARE(pragma(path, "journal_mode"), QStringLiteral("wal"));
        QCOMPARE(pragma(path, "page_size"), QStringLiteral("512"));
        // The row is in the log beside the file until a checkpoint moves it.
        QVERIFY(QFileInfo(path + "-wal").size() > 0);
        QSqlQuery query(QSqlDatabase::database("DB_BRINHOLT", false));
        QVERIFY(query.exec("PRAGMA synchronous") && query.next());
        QCOMPARE(query.value(0).toInt(), 1); // NORMAL
    }

    void fileWithARollbackJournalIsConvertedAndKeepsItsRows()
    {
        LogFixture f;
        for (int i = 0; i < 40; ++i) {
            Clock::setFixedSecsSinceEpoch(Now + 2 * i);
            QVERIFY(add(f.log(), i == 0 ? 768 : 2, 1000.0 + i));
        }
        f.shutdown();
        // As an earlier version left it: rollback journal, 4 KB pages.
        QVERIFY(f.exec("PRAGMA journal_mode=DELETE"));
        QVERIFY(f.exec("PRAGMA page_size=4096"));
        QVERIFY(f.exec("VACUUM"));
        const QString path = f.folder().filePath("brinholt.db");
        QCOMPARE(pragma(path, "journal_mode"), QStringLiteral("delete"));
        QCOMPARE(pragma(path, "page_size"), QStringLiteral("4096"));
        const QVariantList pressures = f.column("BARO30M", 5);
        QCOMPARE(pressures.size(), 40);

        f.restart();
        QCOMPARE(pragma(path, "journal_mode"), QStringLiteral("wal"));
        QCOMPARE(pragma(path, "page_size"), QStringLiteral("512"));
        QCOMPARE(f.column("BARO30M", 5), pressures);
        QCOMPARE(f.rowCount("BAR16D"), 1);
        Clock::setFixedSecsSinceEpoch(Now + 100);
        QVERIFY(add(f.log(), 2));
        QCOMPARE(f.rowCount("BARO30M"), 41);
    }

    void checkpointsFollowTheClock()
    {
        LogFixture f;
        const QString path = f.folder().filePath("brinholt.db");
        QVERIFY(add(f.log(), 768));
        for (int i = 1; i < 150; ++i) {
            Clock::setFixedSecsSinceEpoch(Now + 2 * i);
            QVERIFY(add(f.log(), 2));
        }
        // Under five minutes: the nine tables and their rows are still only in the log.
        const qint64 before = QFileInfo(path).size();
        QVERIFY2(before < 10 * 512, qPrintable(QString::number(before)));

        // The first write five minutes on moves them into the file itself.
        Clock::setFixedSecsSinceEpoch(Now + 300);
        QVERIFY(add(f.log(), 2));
        const qint64 after = QFileInfo(path).size();
        QVERIFY2(after >= 10 * 512, qPrintable(QString::number(after)));
        QCOMPARE(f.rowCount("BARO30M"), 151);
    }

    void closeFoldsTheLogIntoTheFile()
    {
        LogFixture f;
        QVERIFY(add(f.log(), 768));
        const QString path = f.folder().filePath("brinholt.db");
        QVERIFY(QFileInfo::exists(path + "-wal"));
        f.shutdown();
        QVERIFY(!QFileInfo::exists(path + "-wal"));
        QCOMPARE(f.rowCount("BAR16D"), 1);
    }

    // ---- the clock stepped by GPS or NTP ----

    void clockSteppedBackAnHourLosesNoRow()
    {
        LogFixture f;
        qint64 second = Now;
        int tick = 768;
        // Seventy-five minutes of firings, as the tick makes them.
        runFirings(f.log(), second, tick, 2250);
        const QList<QSet<qint64>> before = allTimes(f);

        MessageLog messages;
        second -= 3600;
        const int written = runFirings(f.log(), second, tick, 300);
        QVERIFY(written > 0);
        const QList<QSet<qint64>> after = allTimes(f);
        for (int t = 0; t < DataSource::TableCount; ++t) {
            const QString name = f.log().getTableNames().at(t);
            QVERIFY2(after.at(t).contains(before.at(t)), qPrintable(name));
        }
        // A table may meet one of its own rows at a time it already holds; the old row is
        // kept and the write is told, nothing else goes wrong.
        for (const QString& line : messages.messages()) {
            if (line.startsWith("db update error"))
                QVERIFY2(line.contains("UNIQUE"), qPrintable(line));
        }
        // The 30-minute table holds the rows before the step, which are newer than the
        // clock now, and the new ones, an hour older: two stretches of curve.
        QSignalSpy chart(&f.log(), &DataSource::chartUpdated);
        f.backEnd().setCurrentPressure(1013.0, Serial);
        f.log().updateChart(0);
        QCOMPARE(chart.count(), 1);
        QCOMPARE(chart.first().at(0).toLongLong(), *std::max_element(after.at(0).cbegin(), after.at(0).cend()));
        QCOMPARE(chart.first().at(3).toInt(), 2);
        QVERIFY(chart.first().at(1).toDouble() <= chart.first().at(2).toDouble());
        QVERIFY(f.log().getTrend() >= -10);
        QVERIFY(!f.log().getTrend3h().isEmpty());
    }

    void clockSteppedForwardADayKeepsWhatRetentionKeeps()
    {
        LogFixture f;
        qint64 second = Now;
        int tick = 768;
        runFirings(f.log(), second, tick, 1800);
        const QList<QSet<qint64>> before = allTimes(f);

        MessageLog messages;
        second += 86400;
        const qint64 stepped = second;
        runFirings(f.log(), second, tick, 400);
        QCOMPARE(messages.count("db update error"), 0);
        const QList<QSet<qint64>> after = allTimes(f);
        for (int t = 0; t < DataSource::TableCount; ++t) {
            const QString name = f.log().getTableNames().at(t);
            const qint64 keep = stepped - DataSource::retention(f.log().getTableIntervals().at(t));
            for (qint64 time : before.at(t)) {
                // Only rows that retention removes at the new time may go, and only from
                // a table written since.
                if (time >= keep)
                    QVERIFY2(after.at(t).contains(time), qPrintable(QString("%1 lost %2").arg(name).arg(time)));
            }
        }
        // A day's step removes the whole hour of the short tables, and nothing of the long.
        QVERIFY(after.at(0).intersects(before.at(0)) == false);
        QVERIFY(after.at(8).contains(before.at(8)));
        QVERIFY(after.at(6).contains(before.at(6)));

        QSignalSpy chart(&f.log(), &DataSource::chartUpdated);
        f.backEnd().setCurrentPressure(1013.0, Serial);
        f.log().updateChart(8);
        QCOMPARE(chart.count(), 1);
        // The day without rows is a break in the 16-day curve.
        QVERIFY(chart.first().at(3).toInt() >= 2);
        f.log().updateChart(0);
        QCOMPARE(chart.last().at(3).toInt(), 1);
    }

    void reopenAfterCloseUsesTheServiceConnection()
    {
        LogFixture f;
        f.log().closeDatabase();
        QVERIFY(!QSqlDatabase::database("DB_BRINHOLT", false).isOpen());
        f.log().openDatabase();
        QVERIFY(QSqlDatabase::contains("DB_BRINHOLT_SERVICE"));
        QVERIFY(QSqlDatabase::database("DB_BRINHOLT_SERVICE", false).isOpen());
        QVERIFY(add(f.log(), 768));
        QCOMPARE(f.rowCount("BAR16D"), 1);
    }

    void sameConnectionIsTakenWhenItExists()
    {
        TestDataFolder first;
        QSqlDatabase::addDatabase("QSQLITE", "DB_BRINHOLT").setDatabaseName(first.filePath("kept.db"));
        {
            BackEnd b;
            DataSource log(nullptr);
            // The known connection wins over the path the log would have built.
            QCOMPARE(QSqlDatabase::database("DB_BRINHOLT", false).databaseName(), first.filePath("kept.db"));
            QVERIFY(QSqlDatabase::database("DB_BRINHOLT", false).isOpen());
        }
        backend = nullptr;
        QSqlDatabase::removeDatabase("DB_BRINHOLT");
    }

    void constructionAndDestructionAreLogged()
    {
        TestDataFolder folder;
        MessageLog messages;
        {
            BackEnd b;
            DataSource log(nullptr);
        }
        backend = nullptr;
        QSqlDatabase::removeDatabase("DB_BRINHOLT");
        QCOMPARE(messages.count("dataSource created"), 1);
        QCOMPARE(messages.count("datasource deleted"), 1);
        QVERIFY(messages.messages().indexOf("datasource deleted") < messages.messages().indexOf("backend deleted"));
    }
};

QTEST_MAIN(TestDataSource)
#include "tst_datasource.moc"
