// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "log/LogHost.h"
#include "log/PressureWarning.h"
#include "nmea/CalibrationLink.h"
#include "nmea/Nmea0183.h"
#include "nmea/ReadingSink.h"
#include "nmea/ReceiverHost.h"
#include "tests/support/Columns.h"
#include "tests/support/HostTheme.h"
#include "tests/support/LogFixture.h"
#include "tests/support/NmeaTestKit.h"
#include "util/Clock.h"
#include "util/Util.h"

#include <QtCore/QSettings>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

// The sampling tick and the readings store, driven tick by tick with the clocks held.
class TestBackEnd : public QObject
{
    Q_OBJECT

private:
    // All of a literal's bytes, NULs included.
    template <std::size_t N>
    static QByteArray bytes(const char (&text)[N])
    {
        return QByteArray(text, int(N - 1));
    }

    static constexpr qint64 Start = 1793000000; // a November 2026 second
    qint64 now = Start;

    // One tick, one second later than the last as far as the log can tell, so that the
    // primary key never collides unless a test wants it to.
    void tick(BackEnd& b)
    {
        now += 2;
        Clock::setFixedSecsSinceEpoch(now);
        b.slot_timerData();
    }

    // The application with `theme` stored, its host's window text `text`, and a spy on its
    // dark-or-light signal.
    struct ThemeWatch
    {
        ThemeWatch(int theme, const QColor& text)
        {
            host.setWindowText(text);
            b.setSetting("theme", theme);
        }
        HostTheme host;
        LogFixture f;
        BackEnd& b = f.backEnd();
        QSignalSpy changes{&b, &BackEnd::systemThemeChanged};
    };

    static QStringList tablesWithRows(LogFixture& f)
    {
        QStringList names;
        for (const QString& table : f.log().getTableNames()) {
            if (f.rowCount(table) > 0)
                names << table;
        }
        return names;
    }

private slots:
    void init()
    {
        now = Start;
        Clock::reset();
        Clock::setFixedMonotonicMs(1000000);
        Clock::setFixedSecsSinceEpoch(now);
    }

    void cleanup()
    {
        Clock::reset();
    }

    // ---- the tick counter and the log ----

    void firstValidTickWritesAllNineTablesAndTheSecondNothing()
    {
        LogFixture f;
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        f.backEnd().setCurrentPressure(1013.25, Serial);

        tick(f.backEnd());
        QCOMPARE(tablesWithRows(f), f.log().getTableNames());
        QCOMPARE(updates.count(), 1);

        tick(f.backEnd());
        QCOMPARE(updates.count(), 1);
        for (const QString& table : f.log().getTableNames())
            QCOMPARE(f.rowCount(table), 1);

        // The third tick runs with 2: only the 2-second table.
        tick(f.backEnd());
        QCOMPARE(updates.count(), 2);
        QCOMPARE(f.rowCount("BARO30M"), 2);
        QCOMPARE(f.rowCount("BARO3H"), 1);
    }

    void counterCycleHas385TicksAndWritesOnIntervals()
    {
        LogFixture f;
        f.backEnd().setCurrentPressure(1000.0, Udp);
        // A full cycle: 768, 0, 2, ..., 766. Table I gets a row at every value that is a
        // non-zero multiple of I.
        for (int i = 0; i < 385; ++i) {
            tick(f.backEnd());
            Clock::advanceMonotonicMs(2000);
            f.backEnd().setCurrentPressure(1000.0, Udp);
        }
        const QList<int> intervals = f.log().getTableIntervals();
        for (int t = 0; t < DataSource::TableCount; ++t) {
            const int expected = 1 + 766 / intervals[t]; // 768 itself, then 2..766
            QCOMPARE(f.rowCount(f.log().getTableNames()[t]), expected);
        }
        // The next tick is 768 again: every table.
        const int before = f.rowCount("BAR16D");
        tick(f.backEnd());
        QCOMPARE(f.rowCount("BAR16D"), before + 1);
    }

    void tickWithoutPressureAt766StillStepsTo768()
    {
        LogFixture f;
        QSignalSpy missing(&f.backEnd(), &BackEnd::noPressureAvailable);
        // 768, 0, 2, ..., 764 with pressure: 384 ticks.
        for (int i = 0; i < 384; ++i) {
            f.backEnd().setCurrentPressure(1013.0, Serial);
            tick(f.backEnd());
        }
        QCOMPARE(missing.count(), 0);
        QMap<QString, int> before;
        for (const QString& table : f.log().getTableNames())
            before.insert(table, f.rowCount(table));

        f.backEnd().setCurrentPressure(-2000.0, Serial);
        tick(f.backEnd()); // the one at 766, without pressure
        QCOMPARE(missing.count(), 1);

        f.backEnd().setCurrentPressure(1013.0, Serial);
        tick(f.backEnd()); // 768: a row in each of the nine tables
        for (const QString& table : f.log().getTableNames())
            QCOMPARE(f.rowCount(table), before.value(table) + 1);
    }

    void longRunWithoutPressureKeepsTheCounterStepping()
    {
        LogFixture f;
        QSignalSpy missing(&f.backEnd(), &BackEnd::noPressureAvailable);
        // 768, 0, 2, ..., 764 without pressure: 384 ticks and no row.
        for (int i = 0; i < 384; ++i)
            tick(f.backEnd());
        QCOMPARE(missing.count(), 384);
        QVERIFY(tablesWithRows(f).isEmpty());

        // 766: only the 2-second table, as on a cycle that had pressure all along.
        f.backEnd().setCurrentPressure(1013.0, Serial);
        tick(f.backEnd());
        QCOMPARE(tablesWithRows(f), QStringList{QStringLiteral("BARO30M")});
    }

    void pressureOf600IsLoggedAndBelowIsNot_data()
    {
        Columns::add<double, bool>("reading", "logged");
        QTest::newRow("exactly 600 hPa is logged") << 600.0 << true;
        QTest::newRow("599.99 hPa is not logged") << 599.99 << false;
        QTest::newRow("a live 500 hPa from a broken sensor is not logged") << 500.0 << false;
    }

    void pressureOf600IsLoggedAndBelowIsNot()
    {
        QFETCH(double, reading);
        QFETCH(bool, logged);
        LogFixture f;
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        QSignalSpy missing(&f.backEnd(), &BackEnd::noPressureAvailable);
        f.backEnd().setCurrentPressure(reading, Internal);
        tick(f.backEnd());
        QCOMPARE(f.rowCount("BARO30M"), logged ? 1 : 0);
        QCOMPARE(missing.count(), logged ? 0 : 1);
        QCOMPARE(updates.count(), 1);
        QCOMPARE(updates.at(0).at(3).toString() == QLatin1String("NONE"), !logged);
        if (logged)
            QCOMPARE(f.column("BARO30M", 5).value(0).toDouble(), reading);
    }

    void logHoldsTheRawReadingWithOffsetAndElevationBeside()
    {
        LogFixture f;
        f.backEnd().setSetting("offset", 2.5);
        f.backEnd().setSetting("elevation", 30.0);
        f.backEnd().setSetting("preDisplay", 0);
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        f.backEnd().setCurrentPressure(1001.0, Serial);
        tick(f.backEnd());
        QCOMPARE(f.column("BARO30M", 5).value(0).toDouble(), 1001.0);
        QCOMPARE(f.column("BARO30M", 6).value(0).toDouble(), 30.0);
        QCOMPARE(f.column("BARO30M", 7).value(0).toDouble(), 2.5);
        // The display shows the corrected value at sea level.
        const double shown = (1001.0 + 2.5) / std::pow(1.0 + 30.0 * -22.55687745833333 / 1000000.0, 5.2561);
        QCOMPARE(updates.at(0).at(3).toString(), Util::formatPressure(shown, true));
    }

    void absentOffsetReadsAsZero()
    {
        LogFixture f;
        QVERIFY(!f.backEnd().getSettings()->contains("offset"));
        f.backEnd().setSetting("preDisplay", 1);
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        f.backEnd().setCurrentPressure(1013.25, Serial);
        tick(f.backEnd());
        QCOMPARE(updates.at(0).at(3).toString(), Util::formatPressure(1013.25, true));
        QCOMPARE(f.column("BARO30M", 7).value(0).toDouble(), 0.0);
    }

    void stationLevelNeverReduces()
    {
        LogFixture f;
        f.backEnd().setSetting("preDisplay", 1);
        f.backEnd().setSetting("elevation", 500.0);
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        f.backEnd().setCurrentPressure(950.0, Serial);
        tick(f.backEnd());
        QCOMPARE(updates.at(0).at(3).toString(), Util::formatPressure(950.0, true));
    }

    void pauseServiceLeavesLoggingRunning()
    {
        LogFixture f;
        f.backEnd().pauseService(false);
        f.backEnd().setCurrentPressure(1010.0, Tcp);
        tick(f.backEnd());
        tick(f.backEnd());
        tick(f.backEnd());
        QCOMPARE(f.rowCount("BARO30M"), 2);
        f.backEnd().pauseService(true);
        tick(f.backEnd());
        QCOMPARE(f.rowCount("BARO30M"), 3);
    }

    void noneKeepsTheOtherStrings()
    {
        LogFixture f;
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        QSignalSpy missing(&f.backEnd(), &BackEnd::noPressureAvailable);
        f.backEnd().setPositionData(QPointF(-4.5, 48.25), 6.0, 90.0, Serial);
        tick(f.backEnd());
        QCOMPARE(missing.count(), 1);
        QCOMPARE(updates.count(), 1);
        const QVariantList args = updates.takeFirst();
        QCOMPARE(args.at(3).toString(), QStringLiteral("NONE"));
        QCOMPARE(args.at(1).toString(), Util::formatPosition(-4.5, 48.25));
        QVERIFY(args.at(1).toString() != QLatin1String("No Position"));
        QVERIFY(args.at(2).toString().startsWith("COG "));
        QVERIFY(!args.at(0).toString().isEmpty());
    }

    void noPressureSignalComesBeforeDataUpdated()
    {
        LogFixture f;
        QStringList order;
        connect(&f.backEnd(), &BackEnd::noPressureAvailable, this, [&] { order << "noPressure"; });
        connect(&f.backEnd(), &BackEnd::dataUpdated, this, [&] { order << "dataUpdated"; });
        tick(f.backEnd());
        QCOMPARE(order, QStringList({"noPressure", "dataUpdated"}));
    }

    void tickWithoutFixLogsZeroPosition()
    {
        LogFixture f;
        f.backEnd().setCurrentPressure(1012.0, Serial);
        tick(f.backEnd());
        QCOMPARE(f.column("BARO30M", 1).value(0).toDouble(), 0.0);
        QCOMPARE(f.column("BARO30M", 2).value(0).toDouble(), 0.0);
        QCOMPARE(f.column("BARO30M", 3).value(0).toDouble(), 0.0);
        QCOMPARE(f.column("BARO30M", 4).value(0).toDouble(), 0.0);
    }

    void tickLogsTheChosenPosition()
    {
        LogFixture f;
        f.backEnd().setCurrentPressure(1012.0, Serial);
        f.backEnd().setPositionData(QPointF(-4.5, 48.25), 6.5, 271.0, Tcp);
        f.backEnd().setPositionData(QPointF(2.0, 40.0), 1.0, 10.0, Udp);
        tick(f.backEnd());
        QCOMPARE(f.column("BARO30M", 1).value(0).toDouble(), -4.5);
        QCOMPARE(f.column("BARO30M", 2).value(0).toDouble(), 48.25);
        QCOMPARE(f.column("BARO30M", 3).value(0).toDouble(), 271.0);
        QCOMPARE(f.column("BARO30M", 4).value(0).toDouble(), 6.5);
    }

    void failedWriteEmitsNothing()
    {
        LogFixture f;
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        f.backEnd().setCurrentPressure(1012.0, Serial);
        f.exec("DROP TABLE BARO30M");
        f.exec("DROP TABLE BARO3H");
        f.exec("DROP TABLE BARO6H");
        f.exec("DROP TABLE BAR12H");
        f.exec("DROP TABLE BARO1D");
        f.exec("DROP TABLE BARO2D");
        f.exec("DROP TABLE BARO4D");
        f.exec("DROP TABLE BARO8D");
        f.exec("DROP TABLE BAR16D");
        for (int i = 0; i < DataSource::TableCount; ++i)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^db update error"));
        tick(f.backEnd());
        QCOMPARE(updates.count(), 0);
    }

    // ---- readings ----

    void lowerSourceWinsUntilItsReadingAgesOut()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        b.setCurrentPressure(1020.0, Tcp);
        Clock::advanceMonotonicMs(10000);
        b.setCurrentPressure(1010.0, Serial);
        QCOMPARE(b.getCurrentPressure(), 1010.0);
        QCOMPARE(b.getPressureSource(), QStringLiteral("From serial connection"));

        // Serial is now 50000 ms old and Tcp 60000 ms: Tcp no longer counts either.
        Clock::advanceMonotonicMs(50000);
        QCOMPARE(b.getCurrentPressure(), 1010.0);
        b.setCurrentPressure(1020.0, Tcp);
        Clock::advanceMonotonicMs(10000); // Serial 60000 ms old, Tcp 10000 ms
        QCOMPARE(b.getCurrentPressure(), 1020.0);
        QCOMPARE(b.getPressureSource(), QStringLiteral("From TCP connection"));
        // The stale value is still what the serial reading says.
        QCOMPARE(b.getSerialPressure(), 1010.0);
    }

    void readingAgeLimit_data()
    {
        Columns::add<qint64, double>("age", "expected");
        QTest::newRow("59999 ms old still counts") << qint64(59999) << 1005.0;
        QTest::newRow("exactly 60000 ms old no longer counts") << qint64(60000) << -2000.0;
    }

    void readingAgeLimit()
    {
        QFETCH(qint64, age);
        QFETCH(double, expected);
        LogFixture f;
        f.backEnd().setCurrentPressure(1005.0, Udp);
        Clock::advanceMonotonicMs(age);
        QCOMPARE(f.backEnd().getCurrentPressure(), expected);
    }

    void negativeReadingInvalidatesItsSource()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        b.setCurrentPressure(1015.0, Serial);
        b.setCurrentPressure(1025.0, Udp);
        QCOMPARE(b.getCurrentPressure(), 1015.0);
        b.setCurrentPressure(-12.0, Serial);
        QCOMPARE(b.getCurrentPressure(), 1025.0);
        QCOMPARE(b.getSerialPressure(), -12.0);
        b.setCurrentPressure(-2000.0, Udp);
        QCOMPARE(b.getCurrentPressure(), -2000.0);
        QCOMPARE(b.getPressureSource(), QStringLiteral("No pressure available"));
    }

    void zeroReadingNeverCounts()
    {
        // Fresh, from the source that ranks first, and still no reading: the next source wins.
        LogFixture f;
        f.backEnd().setCurrentPressure(0.0, Internal);
        f.backEnd().setCurrentPressure(1001.0, Serial);
        QCOMPARE(f.backEnd().getCurrentPressure(), 1001.0);
        QCOMPARE(f.backEnd().getPressureSource(), QStringLiteral("From serial connection"));
    }

    void readingsOutsideTheFourSourcesAreIgnored()
    {
        LogFixture f;
        f.backEnd().setCurrentPressure(1001.0, static_cast<NmeaSourceType>(4));
        f.backEnd().setCurrentPressure(1001.0, static_cast<NmeaSourceType>(-1));
        QCOMPARE(f.backEnd().getCurrentPressure(), -2000.0);
        f.backEnd().setPositionData(QPointF(1, 2), 3, 4, static_cast<NmeaSourceType>(7));
        QCOMPARE(f.backEnd().getPosition(), QPointF(0, 0));
    }

    void positionPriorityAndClearing()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        b.setPositionData(QPointF(10.0, 20.0), 5.0, 180.0, Udp);
        b.setPositionData(QPointF(-3.0, 47.0), 7.0, 45.0, Serial);
        QCOMPARE(b.getPosition(), QPointF(-3.0, 47.0));
        // Course first, then speed.
        QCOMPARE(b.getCogSog(), std::make_pair(45.0, 7.0));
        b.clearHasFix(Serial);
        QCOMPARE(b.getPosition(), QPointF(10.0, 20.0));
        QCOMPARE(b.getCogSog(), std::make_pair(180.0, 5.0));
    }

    void clearAllFixKeepsCourseAndSpeedButNoneIsChosen()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        b.setPositionData(QPointF(10.0, 20.0), 5.0, 180.0, Udp);
        b.clearAllFix();
        QCOMPARE(b.getPosition(), QPointF(0, 0));
        QCOMPARE(b.getCogSog(), std::make_pair(0.0, 0.0));
        // With no fix anywhere the display has neither position nor course.
        QSignalSpy updates(&b, &BackEnd::dataUpdated);
        tick(b);
        QCOMPARE(updates.at(0).at(1).toString(), QStringLiteral("No Position"));
        QCOMPARE(updates.at(0).at(2).toString(), QStringLiteral("no"));
    }

    void positionReadsAreConsistentWhileAnotherThreadWrites()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        std::atomic<bool> stop{false};
        // Every fix written has latitude = 2 x longitude and course = 3 x longitude.
        QThread* writer = QThread::create([&] {
            double v = 1.0;
            while (!stop.load()) {
                b.setPositionData(QPointF(v, 2 * v), v, 3 * v, Serial);
                v = v >= 80.0 ? 1.0 : v + 1.0;
            }
        });
        writer->start();
        for (int i = 0; i < 20000; ++i) {
            const QPointF p = b.getPosition();
            if (p.isNull())
                continue;
            QCOMPARE(p.y(), 2 * p.x());
        }
        stop.store(true);
        writer->wait();
        delete writer;
    }

    // ---- settings ----

    void getSettingNarrowsByKey_data()
    {
        Columns::add<QString, QVariant, int, QVariant>("key", "def", "type", "expected");
        QTest::newRow("a string key with a number default gives the string")
                << "SettingSerialSpeed" << QVariant(9600) << int(QMetaType::QString) << QVariant("9600");
        QTest::newRow("a fractional default outside the double keys gives an integer")
                << "windowX" << QVariant(10.7) << int(QMetaType::Int) << QVariant(QVariant(10.7).toInt());
        QTest::newRow("a default with no integer value gives 0")
                << "language" << QVariant("x") << int(QMetaType::Int) << QVariant(0);
        QTest::newRow("elevation is a double")
                << "elevation" << QVariant(0) << int(QMetaType::Double) << QVariant(0.0);
        QTest::newRow("offset is a double")
                << "offset" << QVariant(1.25) << int(QMetaType::Double) << QVariant(1.25);
        QTest::newRow("the TCP address is a string")
                << "SettingTcpIpAddress" << QVariant("127.000.000.001") << int(QMetaType::QString)
                << QVariant("127.000.000.001");
        QTest::newRow("the serial port default None is a string")
                << "SettingSerialPort" << QVariant("None") << int(QMetaType::QString) << QVariant("None");
    }

    void getSettingNarrowsByKey()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, def);
        QFETCH(int, type);
        QFETCH(QVariant, expected);
        LogFixture f;
        const QVariant value = f.backEnd().getSetting(key, def);
        QCOMPARE(int(value.userType()), type);
        QCOMPARE(value, expected);
    }

    void storedValuesAreNarrowedToo()
    {
        LogFixture f;
        f.backEnd().setSetting("theme", "2");
        f.backEnd().setSetting("elevation", "12.5");
        QCOMPARE(f.backEnd().getSetting("theme", 0), QVariant(2));
        QCOMPARE(f.backEnd().getSetting("elevation", 0.0), QVariant(12.5));
    }

    void languageSevenIsNotZeroToEveryReader()
    {
        LogFixture f;
        f.backEnd().setSetting("language", 7);
        QVERIFY(f.backEnd().getSetting("language", 0).toInt() != 0);
    }

    void versionIsWrittenOnEveryStart()
    {
        TestDataFolder folder;
        {
            QSettings ini("./brinholt.ini", QSettings::IniFormat);
            ini.setValue("version", "2.9.1");
        }
        {
            BackEnd b;
            QCOMPARE(b.getVersion(), QStringLiteral("3.0.0"));
        }
        backend = nullptr;
        QSettings ini("./brinholt.ini", QSettings::IniFormat);
        QCOMPARE(ini.value("version").toString(), QStringLiteral("3.0.0"));
    }

    void garbageIniFallsBackOnDefaults_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("missing file") << QByteArray();
        QTest::newRow("empty file") << QByteArray("");
        QTest::newRow("binary garbage") << bytes("\x00\xff\xfe[[[=\n\x01\x02garbage=\x80\x81\n");
        QTest::newRow("text garbage") << QByteArray("theme=dark\nelevation=high\n[[broken\nunitPre\n");
    }

    void garbageIniFallsBackOnDefaults()
    {
        QFETCH(QByteArray, content);
        TestDataFolder folder;
        if (!content.isNull()) {
            QFile file("brinholt.ini");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        {
            BackEnd b;
            QCOMPARE(b.getSetting("unitPre", 0), QVariant(0));
            QCOMPARE(b.getSetting("precision", 1), QVariant(1));
            QCOMPARE(b.getSetting("SettingSerialPort", "None"), QVariant("None"));
            b.slot_timerData();
            b.syncSettings();
        }
        backend = nullptr;
        QSettings ini("./brinholt.ini", QSettings::IniFormat);
        QCOMPARE(ini.value("version").toString(), QStringLiteral("3.0.0"));
    }

    // ---- theme ----

    void fixedThemesNeverSignal_data()
    {
        Columns::ints("theme", {{"light", 0}, {"dark", 1}});
    }

    void fixedThemesNeverSignal()
    {
        QFETCH(int, theme);
        ThemeWatch w(theme, Qt::white);
        tick(w.b);
        w.host.setWindowText(Qt::black);
        tick(w.b);
        w.host.setWindowText(Qt::white);
        tick(w.b);
        QCOMPARE(w.changes.count(), 0);
    }

    void deviceThemeSignalsFirstTickThenOnlyChanges()
    {
        ThemeWatch w(2, Qt::black);
        tick(w.b);
        QCOMPARE(w.changes.count(), 1);
        QCOMPARE(w.changes.at(0).at(0).toInt(), 0);
        tick(w.b);
        tick(w.b);
        QCOMPARE(w.changes.count(), 1);
        w.host.setWindowText(QColor(200, 200, 200));
        tick(w.b);
        QCOMPARE(w.changes.count(), 2);
        QCOMPARE(w.changes.at(1).at(0).toInt(), 1);
    }

    void switchingToDeviceWhileHostIsDarkSignalsDark()
    {
        ThemeWatch w(0, Qt::white);
        tick(w.b);
        QCOMPARE(w.changes.count(), 0);
        w.b.setSetting("theme", 2);
        tick(w.b);
        QCOMPARE(w.changes.count(), 1);
        QCOMPARE(w.changes.at(0).at(0).toInt(), 1);
    }

    void previousThemeSetByThePageIsComparedAgainst()
    {
        ThemeWatch w(2, Qt::white);
        w.b.setPreviousTheme(1);
        tick(w.b);
        QCOMPARE(w.changes.count(), 0);
    }

    void theRealTickTimerFires()
    {
        LogFixture f;
        Clock::reset();
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        QVERIFY(updates.wait(3000));
        QCOMPARE(updates.at(0).at(3).toString(), QStringLiteral("NONE"));
    }

    // ---- what NMEA input and the log reach of the application ----

    void theBackEndMadeLastIsTheHostUntilItGoes()
    {
        TestDataFolder folder;
        NmeaTestKit::writeIni(NmeaTestKit::quietSettings());
        const QByteArray sentence("$WIXDR,P,1.0132,B,Barometer*08");
        Nmea0183 codec(nullptr);

        auto first = std::make_unique<BackEnd>();
        QVERIFY(isHostOfAll(first.get()));
        // The one the command line makes, with settings only, as well.
        auto second = std::make_unique<BackEnd>(BackEnd::SettingsOnly());
        QVERIFY(isHostOfAll(second.get()));
        // The earlier one going takes nothing of the later one's.
        first.reset();
        QVERIFY(isHostOfAll(second.get()));
        codec.decode(sentence, Xdr, Serial);
        QCOMPARE(second->getSerialPressure(), 1013.2);

        second.reset();
        backend = nullptr;
        QVERIFY(isHostOfAll(nullptr));
        // With none a reading goes nowhere, and the log falls back on its own defaults.
        codec.decode(sentence, Xdr, Serial);
        QVERIFY(PressureWarning::enabledInSettings());
        QCOMPARE(PressureWarning::thresholdsFromSettings().alarm1h, PressureWarning::Thresholds().alarm1h);

        {
            BackEnd third;
            QVERIFY(isHostOfAll(&third));
            QCOMPARE(third.getSerialPressure(), Pressure::None);
            codec.decode(sentence, Xdr, Serial);
            QCOMPARE(third.getSerialPressure(), 1013.2);
        }
        backend = nullptr;
    }

private:
    static bool isHostOfAll(BackEnd* b)
    {
        return ReadingSink::installed() == static_cast<ReadingSink*>(b)
                && ReceiverHost::installed() == static_cast<ReceiverHost*>(b)
                && CalibrationLink::installed() == static_cast<CalibrationLink*>(b)
                && LogHost::installed() == static_cast<LogHost*>(b);
    }
};

QTEST_MAIN(TestBackEnd)
#include "tst_backend.moc"
