// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "log/PressureWarning.h"
#include "tests/support/TestDataFolder.h"
#include "tools/DemoLog.h"
#include "tools/DeviceSimulator.h"
#include "util/Clock.h"

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <cmath>

#include <fcntl.h>
#include <unistd.h>

using Scenario = DeviceSimulator::Scenario;
Q_DECLARE_METATYPE(DeviceSimulator::Scenario)

// The demo's sixteen days of history: the counter replayed, the weather, the tool, and how
// the history meets the simulated device.
class TestDemoLog : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 End = 1793887402;
    static constexpr double Base = 1009.0;
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

    // The tool run on `folder` for the demo's weather, its last row at `end`.
    static bool makeDemoLog(const QString& folder, qint64 end)
    {
        QProcess proc;
        proc.start(tool(), {folder, "--end", QString::number(end), "--pressure", QString::number(Base), "--scenario",
                            "depression"});
        return proc.waitForFinished(60000) && proc.exitStatus() == QProcess::NormalExit && proc.exitCode() == 0;
    }

    // The first pressure the simulated device sends, read off its terminal as the
    // application reads it: the XDR sentence, in bars.
    static double firstReading(DeviceSimulator& device)
    {
        const int fd = ::open(QFile::encodeName(device.terminalPath()).constData(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
        if (fd < 0)
            return 0.0;
        QByteArray received;
        QElapsedTimer timer;
        timer.start();
        while (!received.contains("\r\n") && timer.elapsed() < 10000) {
            QTest::qWait(10);
            char chunk[256];
            const ssize_t n = ::read(fd, chunk, sizeof chunk);
            if (n > 0)
                received.append(chunk, static_cast<int>(n));
        }
        ::close(fd);
        const QList<QByteArray> fields = received.left(received.indexOf("\r\n")).split(',');
        if (fields.size() < 3 || fields.at(0) != "$WIXDR")
            return 0.0;
        return fields.at(2).toDouble() * 1000.0;
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

    void theWeatherArrivesAtTheDevicesPressure_data()
    {
        QTest::addColumn<Scenario>("scenario");
        QTest::newRow("steady") << Scenario::Steady;
        QTest::newRow("depression") << Scenario::Depression;
    }

    void theWeatherArrivesAtTheDevicesPressure()
    {
        QFETCH(Scenario, scenario);
        QCOMPARE(DemoLog::pressureAt(End, End, 1013.25, scenario), 1013.25);
        QCOMPARE(DemoLog::pressureAt(End, End, 1020.0, scenario), 1020.0);
        double low = 2000.0;
        double high = 0.0;
        for (qint64 t = End - DemoLog::SixteenDays; t <= End; t += 600) {
            const double p = DemoLog::pressureAt(t, End, 1013.25, scenario);
            low = std::min(low, p);
            high = std::max(high, p);
        }
        // Real weather: systems that move the pressure by many hPa, never beyond what a
        // barometer shows at sea.
        QVERIFY2(high - low > 10.0, qPrintable(QString("%1 %2").arg(low).arg(high)));
        QVERIFY(low > 970.0 && high < 1050.0);
    }

    // The last hours are what the device would have measured: the curve runs on into its
    // readings with neither a step nor a bend, and nowhere jumps further back.
    void theLastHoursAreTheDevicesOwnWeather_data() { theWeatherArrivesAtTheDevicesPressure_data(); }

    void theLastHoursAreTheDevicesOwnWeather()
    {
        QFETCH(Scenario, scenario);
        for (qint64 age = 0; age <= 6 * 3600; age += 60)
            QCOMPARE(DemoLog::pressureAt(End - age, End, Base, scenario),
                     Base + DeviceSimulator::weather(scenario, -double(age)));
        double previous = DemoLog::pressureAt(End - DemoLog::SixteenDays, End, Base, scenario);
        for (qint64 t = End - DemoLog::SixteenDays + 60; t <= End; t += 60) {
            const double p = DemoLog::pressureAt(t, End, Base, scenario);
            QVERIFY2(std::abs(p - previous) < 0.1, qPrintable(QString("%1 at %2").arg(p - previous).arg(End - t)));
            previous = p;
        }
    }

    // The demo's log, made by the tool, ends on the simulated device's first reading.
    void theDemoLogJoinsTheSimulatedDevice()
    {
        QTemporaryDir folder;
        const qint64 end = QDateTime::currentSecsSinceEpoch();
        QVERIFY(makeDemoLog(folder.path(), end));
        const double last = query(folder.filePath("brinholt.db"), QString("SELECT PRE FROM BARO30M WHERE TIME = %1 "
                                                                          "AND TIME = (SELECT MAX(TIME) FROM BARO30M)")
                                                                          .arg(end))
                                    .value(0)
                                    .toDouble();
        QCOMPARE(last, Base);

        DeviceSimulator::Options options;
        options.scenario = Scenario::Depression;
        options.basePressure = Base;
        options.intervalMs = 50;
        DeviceSimulator device(options);
        QVERIFY(device.open());
        const double first = firstReading(device);
        // Within what the sentence carries (hundredths of a hPa) and the device's drift.
        QVERIFY2(std::abs(first - last) < 0.02, qPrintable(QString("%1 after %2").arg(first).arg(last)));
    }

    // The demo's point: the log and the device's first minute fall quickly enough for the
    // pressure-fall warning, and never fast enough for the alarm. The real log over the
    // tool's file, fed the device's weather at each tick of its first minute.
    void theDemoWarnsWithinItsFirstMinuteWithoutTheAlarm()
    {
        TestDataFolder folder;
        QVERIFY(makeDemoLog(folder.path(), End));
        {
            BackEnd back{BackEnd::SettingsOnly()};
            DataSource log(nullptr);
            dataSource = &log;
            PressureWarning* warning = log.getWarning();
            QCOMPARE(warning->getLevel(), int(PressureWarning::None));
            qint64 warnedAt = 0;
            for (qint64 after = 2; after <= 60; after += 2) {
                Clock::setFixedSecsSinceEpoch(End + after);
                QVERIFY(log.addData(int(after), 0.0, 0.0, 0.0, 0.0,
                                    Base + DeviceSimulator::weather(Scenario::Depression, double(after))));
                QVERIFY2(warning->getLevel() != PressureWarning::Alarm, qPrintable(QString::number(after)));
                if (!warnedAt && warning->getLevel() == PressureWarning::Warning)
                    warnedAt = after;
            }
            QVERIFY2(warnedAt > 0, qPrintable(QString("3h %1 1h %2").arg(warning->getFall3h()).arg(warning->getFall1h())));
            QCOMPARE(warning->getLevel(), int(PressureWarning::Warning));
            QVERIFY(warning->getFall3h() >= 3.6 && warning->getFall3h() <= 6.0);
            QVERIFY(warning->getFall1h() < 2.0);
            dataSource = nullptr;
        }
        backend = nullptr;
        Clock::reset();
        QSqlDatabase::removeDatabase(QStringLiteral("DB_BRINHOLT"));
        QSqlDatabase::removeDatabase(QStringLiteral("DB_BRINHOLT_SERVICE"));
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
