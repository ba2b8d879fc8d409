#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tests/support/LogFixture.h"
#include "tests/support/MessageLog.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

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
        QTest::addColumn<int>("tick");
        QTest::addColumn<QList<int>>("tables");
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
