// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/DataSource.h"
#include "tools/DemoLog.h"

#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <cmath>

// The demo's sixteen days of history: the counter replayed, the weather, and the tool.
class TestDemoLog : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 End = 1793887402;
    const QList<int> intervals = {2, 6, 12, 24, 48, 96, 192, 384, 768};
    const QStringList names = {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D",
                               "BARO2D",  "BARO4D", "BARO8D", "BAR16D"};

    static QString tool() { return QStringLiteral(BRINHOLT_BINARY_DIR "/brinholt-demolog"); }

    // Runs `statement` on the file and returns the first column of every row.
    static QVariantList query(const QString& path, const QString& statement)
    {
        QVariantList values;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "DEMOLOG_TEST");
            db.setDatabaseName(path);
            if (db.open()) {
                QSqlQuery q(db);
                q.exec(statement);
                while (q.next())
                    values << q.value(0);
            }
        }
        QSqlDatabase::removeDatabase("DEMOLOG_TEST");
        return values;
    }

private slots:
    void everyTableHoldsItsSpanAtItsSpacing_data()
    {
        QTest::addColumn<int>("table");
        for (int table = 0; table < 9; ++table)
            QTest::newRow(qPrintable(names.at(table))) << table;
    }

    void everyTableHoldsItsSpanAtItsSpacing()
    {
        QFETCH(int, table);
        const QVector<QVector<qint64>> written = DemoLog::replaySixteenDays(End, intervals);
        QCOMPARE(written.size(), 9);
        const QVector<qint64>& rows = written.at(table);
        const int interval = intervals.at(table);
        QVERIFY(rows.size() > 800);
        // Only the last table can have missed the very last firing; every table was
        // written within one of its own steps of the end.
        QVERIFY(rows.last() <= End);
        QVERIFY(End - rows.last() <= interval + 2);
        // Retention as the DELETE leaves it.
        QVERIFY(rows.first() >= rows.last() - DataSource::retention(interval));
        QVERIFY(rows.first() - interval - 2 < rows.last() - DataSource::retention(interval));
        int lateSteps = 0;
        for (int i = 1; i < rows.size(); ++i) {
            const qint64 step = rows.at(i) - rows.at(i - 1);
            QVERIFY2(step == interval || step == interval + 2, qPrintable(QString::number(step)));
            lateSteps += step == interval + 2;
        }
        // One late step after each wrap of the counter, every 770 seconds.
        QVERIFY(lateSteps >= (rows.last() - rows.first()) / 770 - 1);
        QVERIFY(lateSteps <= (rows.last() - rows.first()) / 770 + 1);
    }

    void theFirstFiringWritesEveryTableAndTheLastWritesTheShortest()
    {
        const QVector<QVector<qint64>> written = DemoLog::replaySixteenDays(End, intervals);
        QCOMPARE(written.at(0).last(), End);
        // The first firing (counter 768) is sixteen days back and survives in the longest table only.
        QCOMPARE(written.at(8).first(), End - 2 * (DemoLog::SixteenDays / 2 - 1));
    }

    void theWeatherArrivesAtTheDevicesPressure()
    {
        QCOMPARE(DemoLog::pressureAt(End, End, 1013.25), 1013.25);
        QCOMPARE(DemoLog::pressureAt(End, End, 1020.0), 1020.0);
        double low = 2000.0;
        double high = 0.0;
        for (qint64 t = End - DemoLog::SixteenDays; t <= End; t += 600) {
            const double p = DemoLog::pressureAt(t, End, 1013.25);
            low = std::min(low, p);
            high = std::max(high, p);
        }
        // Real weather: systems that move the pressure by many hPa, never beyond what a
        // barometer shows at sea.
        QVERIFY2(high - low > 10.0, qPrintable(QString("%1 %2").arg(low).arg(high)));
        QVERIFY(low > 970.0 && high < 1050.0);
    }

    void theToolFillsAFreshFolder()
    {
        QTemporaryDir folder;
        QProcess proc;
        proc.start(tool(), {folder.path(), "--end", QString::number(End), "--pressure", "1008.5", "--serial-port",
                            folder.filePath("skerry")});
        QVERIFY(proc.waitForFinished(60000));
        QCOMPARE(proc.exitCode(), 0);

        const QString db = folder.filePath("brinholt.db");
        QStringList expected;
        for (const QString& name : names)
            expected << QString("CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, COG FLOAT, "
                                "SOG FLOAT, PRE FLOAT, ELE FLOAT, OFS FLOAT)")
                                .arg(name);
        QStringList statements;
        for (const QVariant& v : query(db, "SELECT sql FROM sqlite_master WHERE type='table' ORDER BY rowid"))
            statements << v.toString();
        QCOMPARE(statements, expected);

        const QVector<QVector<qint64>> written = DemoLog::replaySixteenDays(End, intervals);
        for (int table = 0; table < 9; ++table) {
            QCOMPARE(query(db, "SELECT COUNT(*) FROM " + names.at(table)).value(0).toInt(), written.at(table).size());
            QCOMPARE(query(db, "SELECT MAX(TIME) FROM " + names.at(table)).value(0).toLongLong(), written.at(table).last());
        }
        QCOMPARE(query(db, QString("SELECT PRE FROM BARO30M WHERE TIME = %1").arg(End)).value(0).toDouble(), 1008.5);

        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("SettingUseSerial").toInt(), 1);
        QCOMPARE(ini.value("SettingSerialPort").toString(), folder.filePath("skerry"));
        // The first start still decides the language.
        QVERIFY(!ini.contains("language"));
    }

    void theToolLeavesAnExistingLogAlone()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath("brinholt.db"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("someone's log");
        file.close();
        QProcess proc;
        proc.start(tool(), {folder.path()});
        QVERIFY(proc.waitForFinished(60000));
        QCOMPARE(proc.exitCode(), 1);
        QVERIFY(proc.readAllStandardError().contains("already holds a log"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("someone's log"));
    }
};

QTEST_MAIN(TestDemoLog)
#include "tst_demolog.moc"
