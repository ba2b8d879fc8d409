// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "nmea/NmeaSenderUdp.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/DatagramListener.h"
#include "tests/support/FakePressureSensor.h"
#include "tests/support/LogFixture.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NetworkNamespace.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QSettings>
#include <QtSensors/QSensorManager>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

#include <cmath>
#include <memory>

// Units, offset and reduction to sea level, the source of a reading, and the host's own
// pressure sensor with its broadcast.
class TestPressureModel : public QObject
{
    Q_OBJECT

private:
    // A BackEnd with no NMEA input in a fresh data folder.
    using Fixture = BackEndFixture;

    static constexpr double InHgPerHpa = 0.029529983071445;
    static constexpr double MmHgPerHpa = 0.75006157584566;

    static double factor(double h) { return std::pow(1.0 + h * -22.55687745833333 / 1000000.0, 5.2561); }

    // The expected broadcast of a pressure in hPa.
    static QByteArray xdr(double hpa)
    {
        const QString text = QStringLiteral("$GPXDR,P,%1,B,Barometer").arg(hpa / 1000.0, 0, 'f', 5);
        return (text + QLatin1Char('*') + NmeaSenderUdp::computeChecksum(text.toUtf8()) + QStringLiteral("\r\n"))
                .toUtf8();
    }

private slots:
    void init()
    {
        Clock::reset();
        Clock::setFixedMonotonicMs(5000000);
        FakePressureSensor::uninstall();
        FakePressureSensor::pascals = 101325.0;
    }

    void cleanup()
    {
        FakePressureSensor::uninstall();
        Clock::reset();
    }

    // ---- the source of a reading ----

    void sourceNamesTheReadingThatWins_data()
    {
        Columns::add<QList<int>, QString, double>("live", "text", "current");
        QTest::newRow("internal beats serial") << QList<int>{Internal, Serial} << "From internal pressure sensor" << 1000.0;
        QTest::newRow("serial beats udp") << QList<int>{Serial, Udp} << "From serial connection" << 1001.0;
        QTest::newRow("tcp beats udp") << QList<int>{Tcp, Udp} << "From TCP connection" << 1002.0;
        QTest::newRow("udp alone") << QList<int>{Udp} << "From UDP connection" << 1003.0;
        QTest::newRow("none") << QList<int>{} << "No pressure available" << -2000.0;
    }

    void sourceNamesTheReadingThatWins()
    {
        QFETCH(QList<int>, live);
        QFETCH(QString, text);
        QFETCH(double, current);
        Fixture f;
        for (int type : live)
            f.b->setCurrentPressure(1000.0 + type, static_cast<NmeaSourceType>(type));
        QCOMPARE(f.b->getPressureSource(), text);
        QCOMPARE(f.b->getCurrentPressure(), current);
    }

    void staleWinnerHandsOverToTheNextSource()
    {
        Fixture f;
        f.b->setCurrentPressure(1000.0, Internal);
        Clock::advanceMonotonicMs(30000);
        f.b->setCurrentPressure(1001.0, Serial);
        QCOMPARE(f.b->getPressureSource(), QStringLiteral("From internal pressure sensor"));
        Clock::advanceMonotonicMs(30000);
        QCOMPARE(f.b->getPressureSource(), QStringLiteral("From serial connection"));
        QCOMPARE(f.b->getCurrentPressure(), 1001.0);
        // A stale serial reading is still what getSerialPressure gives.
        Clock::advanceMonotonicMs(60000);
        QCOMPARE(f.b->getPressureSource(), QStringLiteral("No pressure available"));
        QCOMPARE(f.b->getSerialPressure(), 1001.0);
    }

    void liveReadingOf500IsCurrentButNotUsable()
    {
        LogFixture f;
        f.backEnd().setCurrentPressure(500.0, Tcp);
        QCOMPARE(f.backEnd().getCurrentPressure(), 500.0);
        QCOMPARE(f.backEnd().getPressureSource(), QStringLiteral("From TCP connection"));
        QSignalSpy missing(&f.backEnd(), &BackEnd::noPressureAvailable);
        QSignalSpy updates(&f.backEnd(), &BackEnd::dataUpdated);
        f.backEnd().slot_timerData();
        QCOMPARE(missing.count(), 1);
        QCOMPARE(updates.count(), 1);
        QCOMPARE(updates.at(0).at(3).toString(), QStringLiteral("NONE"));
        QCOMPARE(f.rowCount(QStringLiteral("BARO30M")), 0);
    }

    // ---- units ----

    void unitNames_data()
    {
        Columns::add<int, QString>("unit", "name");
        QTest::newRow("0 is mb") << 0 << "mb";
        QTest::newRow("1 is hPa") << 1 << "hPa";
        QTest::newRow("2 is kPa") << 2 << "kPa";
        QTest::newRow("3 is inHg") << 3 << "inHg";
        QTest::newRow("4 is mmHg") << 4 << "mmHg";
        QTest::newRow("9 is nothing") << 9 << "";
        QTest::newRow("5 is nothing") << 5 << "";
    }

    void unitNames()
    {
        QFETCH(int, unit);
        QFETCH(QString, name);
        Fixture f;
        f.b->setSetting(QStringLiteral("unitPre"), unit);
        QCOMPARE(f.b->getPressureUnit(), name);
    }

    void absentUnitIsMb()
    {
        Fixture f;
        QCOMPARE(f.b->getPressureUnit(), QStringLiteral("mb"));
        QCOMPARE(f.b->convertToOther(1013.25), 1013.25);
    }

    void conversionFromHpa_data()
    {
        Columns::add<int, double>("unit", "expected");
        QTest::newRow("mb unchanged") << 0 << 1013.25;
        QTest::newRow("hPa unchanged") << 1 << 1013.25;
        QTest::newRow("kPa divides by ten") << 2 << 101.325;
        QTest::newRow("inHg") << 3 << 1013.25 * InHgPerHpa;
        QTest::newRow("mmHg") << 4 << 1013.25 * MmHgPerHpa;
        QTest::newRow("unknown index unchanged") << 7 << 1013.25;
    }

    void conversionFromHpa()
    {
        QFETCH(int, unit);
        QFETCH(double, expected);
        Fixture f;
        f.b->setSetting(QStringLiteral("unitPre"), unit);
        QCOMPARE(f.b->convertToOther(1013.25), expected);
    }

    void conversionRoundTrip_data()
    {
        Columns::add<int, double>("unit", "value");
        for (int unit : {0, 1, 2, 3, 4, 7}) {
            for (double value : {1013.25, 950.5, 600.0, 0.001}) {
                QTest::addRow("unit %d, %g hPa", unit, value) << unit << value;
            }
        }
    }

    void conversionRoundTrip()
    {
        QFETCH(int, unit);
        QFETCH(double, value);
        Fixture f;
        f.b->setSetting(QStringLiteral("unitPre"), unit);
        const double back = f.b->convertToHpa(f.b->convertToOther(value));
        QVERIFY2(std::fabs(back - value) <= 1e-12 * value, qPrintable(QString::number(back, 'g', 17)));
        // The other way round too: a value typed in the unit comes back as typed.
        const double typed = f.b->convertToOther(f.b->convertToHpa(value));
        QVERIFY(std::fabs(typed - value) <= 1e-12 * value);
    }

    void conversionToHpa_data()
    {
        Columns::add<int, double, double>("unit", "value", "hpa");
        QTest::newRow("kPa multiplies by ten") << 2 << 101.325 << 1013.25;
        QTest::newRow("inHg divides by its factor") << 3 << 29.92 << 29.92 / InHgPerHpa;
        QTest::newRow("mmHg divides by its factor") << 4 << 760.0 << 760.0 / MmHgPerHpa;
        QTest::newRow("an unknown unit is taken as hPa") << 12 << 1000.0 << 1000.0;
    }

    void conversionToHpa()
    {
        QFETCH(int, unit);
        QFETCH(double, value);
        QFETCH(double, hpa);
        Fixture f;
        f.b->setSetting(QStringLiteral("unitPre"), unit);
        QCOMPARE(f.b->convertToHpa(value), hpa);
    }

    // ---- the preview text ----

    void formattedPreview_data()
    {
        Columns::add<double, int, double, int, double, QString>(
                "reading", "unit", "offset", "levelType", "elevation", "text");
        QTest::newRow("1013.25 hPa in inHg at the station is 29.921 inHg")
                << 1013.25 << 3 << 0.0 << 1 << 0.0 << "29.921 inHg";
        QTest::newRow("1000 hPa plus 1.5 reduced from 10 m is 1002.69 mb")
                << 1000.0 << 0 << 1.5 << 0 << 10.0 << "1002.69 mb";
        QTest::newRow("1000 hPa at 10 m reads 1001.19 hPa") << 1000.0 << 1 << 0.0 << 0 << 10.0 << "1001.19 hPa";
        QTest::newRow("1000 hPa at 100 m reads 1011.94 hPa") << 1000.0 << 1 << 0.0 << 0 << 100.0 << "1011.94 hPa";
        QTest::newRow("kPa keeps two decimals") << 1013.8 << 2 << 0.0 << 1 << 0.0 << "101.38 kPa";
        QTest::newRow("mmHg keeps two decimals") << 1013.25 << 4 << 0.0 << 1 << 0.0 << "760.00 mmHg";
        QTest::newRow("station level ignores the elevation") << 1000.0 << 1 << 0.0 << 1 << 500.0 << "1000.00 hPa";
        QTest::newRow("sea level at 0 m is unchanged") << 1000.0 << 0 << 0.0 << 0 << 0.0 << "1000.00 mb";
        QTest::newRow("an unknown unit has no suffix and no conversion")
                << 1013.25 << 8 << 0.0 << 1 << 0.0 << "1013.25";
        QTest::newRow("the reduction follows the conversion")
                << 1000.0 << 3 << 0.0 << 0 << 100.0
                << QString::number(1000.0 * InHgPerHpa / factor(100.0), 'f', 3) + " inHg";
        QTest::newRow("a negative offset is added too") << 1000.0 << 1 << -3.25 << 1 << 0.0 << "996.75 hPa";
        // Added after the reduction the offset would give 1137.41 hPa.
        QTest::newRow("10 hPa of offset is reduced from 1000 m with the reading")
                << 1000.0 << 1 << 10.0 << 0 << 1000.0 << "1138.68 hPa";
        QTest::newRow("the offset is reduced with the reading in inHg too")
                << 1000.0 << 3 << 10.0 << 0 << 1000.0 << "33.625 inHg";
    }

    void formattedPreview()
    {
        QFETCH(double, reading);
        QFETCH(int, unit);
        QFETCH(double, offset);
        QFETCH(int, levelType);
        QFETCH(double, elevation);
        QFETCH(QString, text);
        Fixture f;
        // The stored settings play no part in the preview.
        f.b->setSetting(QStringLiteral("unitPre"), 4);
        f.b->setSetting(QStringLiteral("offset"), 9.0);
        f.b->setSetting(QStringLiteral("preDisplay"), levelType == 1 ? 0 : 1);
        f.b->setCurrentPressure(reading, Serial);
        QCOMPARE(f.b->getFormatedPressure(unit, offset, levelType, elevation), text);
    }

    void previewWithoutPressureShowsTheNoReadingValue()
    {
        Fixture f;
        QCOMPARE(f.b->getFormatedPressure(1, 0.0, 1, 0.0), QStringLiteral("-2000.00 hPa"));
    }

    void previewIsWrittenWithAPointInFrench()
    {
        Fixture f;
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
        f.b->setCurrentPressure(1013.25, Serial);
        const QString text = f.b->getFormatedPressure(3, 0.0, 1, 0.0);
        const QString mb = f.b->getFormatedPressureMb(1013.256);
        QLocale::setDefault(before);
        QCOMPARE(text, QStringLiteral("29.921 inHg"));
        QCOMPARE(mb, QStringLiteral("1013.26 mb"));
    }

    void seaLevelFactorMatchesItsExamples_data()
    {
        Columns::add<double, double>("elevation", "expected");
        QTest::newRow("factor(10) is 0.99881496") << 10.0 << 0.99881496;
        QTest::newRow("factor(100) is 0.98820065") << 100.0 << 0.98820065;
    }

    void seaLevelFactorMatchesItsExamples()
    {
        QFETCH(double, elevation);
        QFETCH(double, expected);
        Fixture f;
        // A huge reading brings the factor's eighth decimal into the two printed ones.
        f.b->setCurrentPressure(1.0e8, Serial);
        const double reduced = f.b->getFormatedPressure(1, 0.0, 0, elevation).section(' ', 0, 0).toDouble();
        const double measured = 1.0e8 / reduced;
        QVERIFY2(std::fabs(measured - expected) < 5e-9, qPrintable(QString::number(measured, 'g', 12)));
    }

    void mbTextForTheCalibrationPage_data()
    {
        Columns::add<double, QString>("value", "text");
        QTest::newRow("two decimals, rounded") << 1013.256 << "1013.26 mb";
        QTest::newRow("no conversion whatever the unit") << 980.0 << "980.00 mb";
        QTest::newRow("negative") << -1.5 << "-1.50 mb";
    }

    void mbTextForTheCalibrationPage()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        Fixture f;
        f.b->setSetting(QStringLiteral("unitPre"), 3);
        QCOMPARE(f.b->getFormatedPressureMb(value), text);
    }

    // ---- the host's own sensor ----

    void noSensorIsOneLogLine()
    {
        MessageLog log;
        Fixture f;
        QCOMPARE(log.count(QStringLiteral("no pressure sensor")), 1);
        QCOMPARE(FakePressureSensor::starts.load(), 0);
        QCOMPARE(f.b->getCurrentPressure(), -2000.0);
    }

    void sensorReadingBecomesTheInternalPressure()
    {
        FakePressureSensor::install();
        FakePressureSensor::pascals = 101325.0;
        MessageLog log;
        Fixture f;
        QCOMPARE(log.count(QStringLiteral("no pressure sensor")), 0);
        QCOMPARE(FakePressureSensor::starts.load(), 1);
        QTRY_COMPARE(f.b->getCurrentPressure(), 1013.25);
        QCOMPARE(f.b->getPressureSource(), QStringLiteral("From internal pressure sensor"));
        // One reading, then the sensor rests until its timer starts it again.
        QCOMPARE(FakePressureSensor::stops.load(), 1);
        QVERIFY(!f.b->getSenderUdp());
    }

    void sensorOutranksASerialDevice()
    {
        FakePressureSensor::install();
        FakePressureSensor::pascals = 99000.0;
        Fixture f;
        f.b->setCurrentPressure(1020.0, Serial);
        QTRY_COMPARE(f.b->getCurrentPressure(), 990.0);
        QCOMPARE(f.b->getSerialPressure(), 1020.0);
    }

    void sensorIsStartedAgain800msAfterAReading()
    {
        FakePressureSensor::install();
        Fixture f;
        QTRY_COMPARE(FakePressureSensor::stops.load(), 1);
        QElapsedTimer timer;
        timer.start();
        FakePressureSensor::pascals = 100000.0;
        QTRY_COMPARE_WITH_TIMEOUT(FakePressureSensor::starts.load(), 2, 3000);
        const qint64 waited = timer.elapsed();
        QVERIFY2(waited >= 700 && waited <= 1500, qPrintable(QString::number(waited)));
        QTRY_COMPARE(f.b->getCurrentPressure(), 1000.0);
    }

    // ---- the sensor's broadcast, in a private network ----

    void sensorBroadcastsCorrectedPressure_data()
    {
        Columns::add<double, double, double, int, double>("pascals", "offset", "elevation", "port", "sent");
        QTest::newRow("offset added and reduced, default port 5999")
                << 100000.0 << 1.5 << 10.0 << -1 << 1001.5 / factor(10.0);
        QTest::newRow("no reduction at 0 m, port from updPort") << 101325.0 << 0.0 << 0.0 << 20123 << 1013.25;
        QTest::newRow("reduced even at station level display") << 95000.0 << -1.0 << 500.0 << -1 << 949.0 / factor(500.0);
        QTest::newRow("an offset of 10 hPa is reduced from 1000 m with the reading")
                << 100000.0 << 10.0 << 1000.0 << -1 << 1010.0 / factor(1000.0);
    }

    void sensorBroadcastsCorrectedPressure()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(double, pascals);
        QFETCH(double, offset);
        QFETCH(double, elevation);
        QFETCH(int, port);
        QFETCH(double, sent);
        FakePressureSensor::install();
        FakePressureSensor::pascals = pascals;
        QVariantMap settings{{QStringLiteral("offset"), offset},
                             {QStringLiteral("elevation"), elevation},
                             {QStringLiteral("preDisplay"), 1}};
        if (port > 0)
            settings.insert(QStringLiteral("updPort"), port);
        DatagramListener listener(port > 0 ? port : 5999);
        QVERIFY(listener.isListening());
        // Switched on after the start, so that no receiver sends as well: only the sensor's path.
        Fixture f(settings);
        QVERIFY(!f.b->getReceiver());
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 1);
        QVERIFY(listener.waitFor(1));
        QCOMPARE(listener.datagrams().first(), xdr(sent));
        QVERIFY(f.b->getSenderUdp());
    }

    void sensorSendsWhateverSourceWins()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        FakePressureSensor::install();
        DatagramListener listener(5999);
        Fixture f;
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 1);
        // A stale sensor reading loses to a fresh serial one, which the sensor's path sends.
        QTRY_COMPARE(FakePressureSensor::stops.load(), 1);
        listener.clear();
        Clock::advanceMonotonicMs(60000);
        f.b->setCurrentPressure(1020.0, Serial);
        FakePressureSensor::pascals = 0.0;
        QVERIFY(listener.waitFor(1, 3000));
        QCOMPARE(listener.datagrams().first(), xdr(1020.0));
    }

    void outputSwitchedOffDeletesTheSensorsSender()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        FakePressureSensor::install();
        DatagramListener listener(5999);
        Fixture f;
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 1);
        QVERIFY(listener.waitFor(1));
        QVERIFY(f.b->getSenderUdp());
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 0);
        const int stops = FakePressureSensor::stops.load();
        QTRY_VERIFY_WITH_TIMEOUT(FakePressureSensor::stops.load() > stops, 3000);
        QVERIFY(!f.b->getSenderUdp());
        listener.clear();
        QVERIFY(listener.staysQuietFor(1200));
    }
};

QTEST_MAIN(TestPressureModel)
#include "tst_pressuremodel.moc"
