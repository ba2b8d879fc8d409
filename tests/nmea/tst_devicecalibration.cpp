// SPDX-License-Identifier: GPL-3.0-or-later
// The calibration dialogue as BackEnd runs it: commands out through the serial source,
// replies back into four numbers, and the time-out of a request.
#include "app/BackEnd.h"

#include "DeviceSim.h"
#include "nmea/Nmea0183.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/PseudoTerminal.h"
#include "tests/support/TestDataFolder.h"

#include <QtTest/QtTest>

using namespace NmeaTestKit;

class TestDeviceCalibration : public QObject
{
    Q_OBJECT

private slots:
    void reply_data();
    void reply();
    void malformedRepliesLeaveTheTimerRunning();
    void requestWithoutSerialSourceTimesOutAfterFiveSeconds();
    void replyAfterTheTimeoutStillArrives();
    void commandsGoOutAsBuilt();
    void dialogueWithTheSimulatedDevice();
    void deviceAnsweringErrGivesFalse();
    void stoppedSourceSendsNothing();
    void everyNewReceiverLinksItsSerialSource();
};

void TestDeviceCalibration::reply_data()
{
    Columns::add<QString, double, double, double, double>("message", "offset", "slope", "slopeRef", "pressure");

    QTest::newRow("device example stops the timer") << "$PWEGB,CAL,1.25,10,1013.40,1012.15*3D" << 1.25 << 10.0 << 1013.4 << 1012.15;
    QTest::newRow("slope 102.5 passes as 103") << "$PWEGB,CAL,0.00,102.5,1013.25,1000.00*00" << 0.0 << 103.0
                                               << 1013.25 << 1000.0;
    QTest::newRow("slope -102.5 passes as -103") << "$PWEGB,CAL,0.00,-102.5,1013.25,1000.00*00" << 0.0 << -103.0
                                                 << 1013.25 << 1000.0;
    QTest::newRow("exactly six fields are accepted") << "$PWEGB,CAL,1,2,3,4*00" << 1.0 << 2.0 << 3.0 << 4.0;
    QTest::newRow("more than six fields: the first six") << "$PWEGB,CAL,1,2,3,4,5,6*00" << 1.0 << 2.0 << 3.0 << 4.0;
    QTest::newRow("field that does not parse gives 0.0") << "$PWEGB,CAL,x,2,3,4*00" << 0.0 << 2.0 << 3.0 << 4.0;
}

void TestDeviceCalibration::reply()
{
    QFETCH(QString, message);
    QFETCH(double, offset);
    QFETCH(double, slope);
    QFETCH(double, slopeRef);
    QFETCH(double, pressure);
    BackEndFixture f;
    BackEnd& b = *f.b;
    QSignalSpy values(&b, &BackEnd::calibrationValuesReceived);
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);
    MessageLog log;
    b.requestCurrentCalibration();
    b.slot_calibrationValues(message);
    QCOMPARE(values.count(), 1);
    QCOMPARE(values.at(0).at(0).toDouble(), offset);
    QCOMPARE(values.at(0).at(1).toDouble(), slope);
    QCOMPARE(values.at(0).at(2).toDouble(), slopeRef);
    QCOMPARE(values.at(0).at(3).toDouble(), pressure);
    QCOMPARE(log.count(QStringLiteral("QSP received from calibrationr request %1").arg(slopeRef)), 1);
    if (QByteArray(QTest::currentDataTag()).endsWith("stops the timer")) {
        QTest::qWait(5300);
        QCOMPARE(timeout.count(), 0);
    }
}

void TestDeviceCalibration::malformedRepliesLeaveTheTimerRunning()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    QSignalSpy values(&b, &BackEnd::calibrationValuesReceived);
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);
    MessageLog log;
    b.requestCurrentCalibration();
    b.slot_calibrationValues(QStringLiteral("$PWEGB,CAL,1,2,3,4"));
    b.slot_calibrationValues(QStringLiteral("$PWEGBCAL*00"));
    b.slot_calibrationValues(QStringLiteral("$PWEGB,CAL,1"));
    // Five fields ahead of the star are one too few.
    b.slot_calibrationValues(QStringLiteral("$PWEGB,CAL,1,2,3*00"));
    QCOMPARE(values.count(), 0);
    QVERIFY(log.messages().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(timeout.count(), 1, 7000);
}

void TestDeviceCalibration::requestWithoutSerialSourceTimesOutAfterFiveSeconds()
{
    // On the real timer.
    BackEndFixture f;
    BackEnd& b = *f.b;
    QCOMPARE(b.getReceiver(), nullptr);
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);
    QSignalSpy sent(&b, &BackEnd::sendCalibration);
    QElapsedTimer clock;
    clock.start();
    b.requestCurrentCalibration();
    QCOMPARE(sent.count(), 1);
    QCOMPARE(sent.at(0).at(0).toString(), QStringLiteral("$PWEGB,CAL?*1A"));
    QTRY_COMPARE_WITH_TIMEOUT(timeout.count(), 1, 7000);
    const qint64 elapsed = clock.elapsed();
    // A coarse timer may fire up to 5 % early.
    QVERIFY2(elapsed >= 4700 && elapsed < 6000, qPrintable(QString::number(elapsed)));
}

void TestDeviceCalibration::replyAfterTheTimeoutStillArrives()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    QSignalSpy values(&b, &BackEnd::calibrationValuesReceived);
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);
    b.requestCurrentCalibration();
    QTRY_COMPARE_WITH_TIMEOUT(timeout.count(), 1, 7000);
    b.slot_calibrationValues(QStringLiteral("$PWEGB,CAL,1.25,10,1013.40,1012.15*3D"));
    QCOMPARE(values.count(), 1);
}

void TestDeviceCalibration::commandsGoOutAsBuilt()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    QSignalSpy sent(&b, &BackEnd::sendCalibration);
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);
    MessageLog log;
    b.calibrateBarometer(1.25, 10.0, 1013.4);
    b.resetBarometer();
    QCOMPARE(sent.count(), 2);
    QCOMPARE(sent.at(0).at(0).toString(), QStringLiteral("$PWEGB,UCAL,1.25,10.0,1013.40*72"));
    QCOMPARE(sent.at(1).at(0).toString(), QStringLiteral("$PWEGB,FRST*78"));
    // The write is logged; neither command starts the timer.
    QCOMPARE(log.count(QStringLiteral("$PWEGB,UCAL,1.25,10.0,1013.40*72")), 1);
    QTest::qWait(5300);
    QCOMPARE(timeout.count(), 0);
}

void TestDeviceCalibration::dialogueWithTheSimulatedDevice()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    DeviceSim device;
    const QString path = device.start({QStringLiteral("--interval"), QStringLiteral("100"), QStringLiteral("--seed"),
                                       QStringLiteral("3"), QStringLiteral("--link"), f.folder.filePath("skerry")});
    QVERIFY(!path.isEmpty());
    startSerial(b, path);
    QTRY_VERIFY_WITH_TIMEOUT(b.getSerialPressure() > 900.0, 5000);

    QSignalSpy values(&b, &BackEnd::calibrationValuesReceived);
    QSignalSpy status(&b, &BackEnd::calibrationStatus);
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);

    b.requestCurrentCalibration();
    QTRY_COMPARE_WITH_TIMEOUT(values.count(), 1, 3000);
    QCOMPARE(values.at(0).at(0).toDouble(), 0.0);
    QCOMPARE(values.at(0).at(1).toDouble(), 0.0);
    QCOMPARE(values.at(0).at(2).toDouble(), 1013.25);
    const double devicePressure = values.at(0).at(3).toDouble();
    QVERIFY(devicePressure > 990.0 && devicePressure < 1040.0);

    b.calibrateBarometer(1.25, 10.0, devicePressure);
    QTRY_COMPARE_WITH_TIMEOUT(status.count(), 1, 3000);
    QCOMPARE(status.at(0).at(0).toBool(), true);

    b.requestCurrentCalibration();
    QTRY_COMPARE_WITH_TIMEOUT(values.count(), 2, 3000);
    QCOMPARE(values.at(1).at(0).toDouble(), 1.25);
    QCOMPARE(values.at(1).at(1).toDouble(), 10.0);
    QCOMPARE(values.at(1).at(2).toDouble(), QString::number(devicePressure, 'f', 2).toDouble());

    b.resetBarometer();
    QTRY_COMPARE_WITH_TIMEOUT(status.count(), 2, 3000);
    QCOMPARE(status.at(1).at(0).toBool(), true);
    b.requestCurrentCalibration();
    QTRY_COMPARE_WITH_TIMEOUT(values.count(), 3, 3000);
    QCOMPARE(values.at(2).at(0).toDouble(), 0.0);
    QCOMPARE(values.at(2).at(2).toDouble(), 1013.25);
    QCOMPARE(timeout.count(), 0);
}

void TestDeviceCalibration::deviceAnsweringErrGivesFalse()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    DeviceSim device;
    const QString path = device.start({QStringLiteral("--interval"), QStringLiteral("100"), QStringLiteral("--err")});
    QVERIFY(!path.isEmpty());
    startSerial(b, path);
    QTRY_VERIFY_WITH_TIMEOUT(b.getSerialPressure() > 900.0, 5000);
    QSignalSpy status(&b, &BackEnd::calibrationStatus);
    b.calibrateBarometer(0.5, 1.0, 1013.0);
    QTRY_COMPARE_WITH_TIMEOUT(status.count(), 1, 3000);
    QCOMPARE(status.at(0).at(0).toBool(), false);

    // A silent device answers nothing, and the request times out.
    // Both in effect before the request goes out, however loaded the machine is.
    QVERIFY(device.command(QStringLiteral("err off")));
    QVERIFY(device.command(QStringLiteral("silent on"), true));
    QSignalSpy timeout(&b, &BackEnd::operationTimeout);
    b.requestCurrentCalibration();
    QTRY_COMPARE_WITH_TIMEOUT(timeout.count(), 1, 7000);
    QCOMPARE(status.count(), 1);
}

void TestDeviceCalibration::stoppedSourceSendsNothing()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    startSerial(b, terminal.path());
    // The port is open once it takes a command.
    QByteArray received;
    QTRY_VERIFY_WITH_TIMEOUT((b.resetBarometer(), received += terminal.readAvailable()).contains("$PWEGB,FRST*78\r\n"),
                             5000);
    QVERIFY(stopNmea(b));
    terminal.readAvailable();
    b.requestCurrentCalibration();
    QCOMPARE(terminal.readUntil("\r\n", 500), QByteArray());
}

void TestDeviceCalibration::everyNewReceiverLinksItsSerialSource()
{
    BackEndFixture f;
    BackEnd& b = *f.b;
    DeviceSim device;
    const QString path = device.start({QStringLiteral("--interval"), QStringLiteral("100")});
    QVERIFY(!path.isEmpty());
    QSignalSpy values(&b, &BackEnd::calibrationValuesReceived);
    QSignalSpy status(&b, &BackEnd::calibrationStatus);
    startSerial(b, path);
    // Each round leaves the Connections page once more: a new receiver, a new source.
    for (int round = 1; round <= 3; ++round) {
        if (round > 1)
            b.startNmea();
        // The source before is gone, and its pressure with it: this one reads.
        QTRY_VERIFY_WITH_TIMEOUT(b.getSerialPressure() > 900.0, 5000);
        b.requestCurrentCalibration();
        QTRY_COMPARE_WITH_TIMEOUT(values.count(), round, 3000);
        b.resetBarometer();
        QTRY_COMPARE_WITH_TIMEOUT(status.count(), round, 3000);
    }
    QVERIFY(stopNmea(b));
}

QTEST_MAIN(TestDeviceCalibration)
#include "tst_devicecalibration.moc"
