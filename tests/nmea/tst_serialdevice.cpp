// SPDX-License-Identifier: GPL-3.0-or-later
// The serial source on its receiver thread against the simulated device: a device that
// misbehaves, and one that is unplugged and plugged in again.
#include "nmea/NmeaSourceSerial.h"

#include "DeviceSim.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"

#include <QtTest/QtTest>

using namespace NmeaTestKit;

class TestSerialDevice : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void unpluggedDeviceIsRetriedAndReadingsReturnWithoutRestart();
    void readingsReturnWithinOneRealRetryAfterReplug();
    void noiseFromTheDeviceIsStripped();
    void linesWithoutEndGiveNoReadingUntilEnded();
    void silentDeviceAgesOutWithoutRetry();

private:
    // The device on a fast link in its own folder, with `extra` on its command line, and
    // the application reading it over the serial source.
    struct Reading
    {
        explicit Reading(const QStringList& extra = {}) : path(startDevice(device, folder, extra)) {}

        // Starts the serial source and waits for the first pressure.
        bool firstPressure()
        {
            if (path.isEmpty())
                return false;
            startSerial(b, path);
            return QTest::qWaitFor([this] { return b.getSerialPressure() > 900.0; }, 5000);
        }

        TestDataFolder folder;
        DeviceSim device;
        const QString path;
        // Made before the worker thread, which logs from the start.
        MessageLog log;
        BackEnd b;
    };

    // Settings with no receiver, and the device on a link in `folder`, fast, with `extra`
    // on its command line; the path to give the serial port, empty on failure.
    static QString startDevice(DeviceSim& device, const TestDataFolder& folder, const QStringList& extra = {})
    {
        writeIni(quietSettings());
        return device.start(QStringList{QStringLiteral("--interval"), QStringLiteral("100"), QStringLiteral("--seed"),
                                        QStringLiteral("11"), QStringLiteral("--link"),
                                        folder.filePath(QStringLiteral("skerry"))}
                            + extra);
    }
};

void TestSerialDevice::cleanup()
{
    NmeaSource::setRetryIntervalMs(10000);
    Clock::reset();
}

void TestSerialDevice::unpluggedDeviceIsRetriedAndReadingsReturnWithoutRestart()
{
    NmeaSource::setRetryIntervalMs(500);
    Reading r;
    QVERIFY(r.firstPressure());
    NmeaReceiver* receiver = r.b.getReceiver();

    r.log.clear();
    QElapsedTimer sinceUnplug;
    sinceUnplug.start();
    r.device.command(QStringLiteral("vanish"));
    // Withdrawn at once, not after the 60 s a reading lives.
    QTRY_COMPARE_WITH_TIMEOUT(r.b.getSerialPressure(), -2000.0, 1000);
    QCOMPARE(r.b.getCurrentPressure(), -2000.0);
    QCOMPARE(r.log.count(QStringLiteral("error occured on port")), 1);
    // Retried every interval while the device stays away.
    QTRY_VERIFY_WITH_TIMEOUT(r.log.count(QStringLiteral("error opening serial port")) >= 3, 4000);
    const int attempts = r.log.count(QStringLiteral("error opening serial port"));
    QVERIFY2(attempts <= sinceUnplug.elapsed() / 500 + 1, qPrintable(QString::number(attempts)));

    QElapsedTimer sinceReplug;
    r.device.command(QStringLiteral("return"));
    QCOMPARE(r.device.nextPath(), r.path);
    sinceReplug.start();
    QTRY_VERIFY_WITH_TIMEOUT(r.b.getSerialPressure() > 900.0, 5000);
    // By one of the next retries at the shortened interval, plus the device's own interval:
    // far below the 10 s the real interval would take. The pace of the retries themselves
    // is checked above.
    QVERIFY2(sinceReplug.elapsed() < 2500, qPrintable(QString::number(sinceReplug.elapsed())));
    QCOMPARE(r.b.getReceiver(), receiver);
}

void TestSerialDevice::readingsReturnWithinOneRealRetryAfterReplug()
{
    // On the real 10000 ms retry.
    Reading r;
    QVERIFY(r.firstPressure());

    r.log.clear();
    r.device.command(QStringLiteral("vanish"));
    QTRY_COMPARE_WITH_TIMEOUT(r.b.getSerialPressure(), -2000.0, 1000);
    QElapsedTimer sinceLoss;
    sinceLoss.start();
    QTest::qWait(2000);
    r.device.command(QStringLiteral("return"));
    QCOMPARE(r.device.nextPath(), r.path);
    QTRY_VERIFY_WITH_TIMEOUT(r.b.getSerialPressure() > 900.0, 12000);
    const qint64 elapsed = sinceLoss.elapsed();
    // The port is opened again by the retry 10 s after the loss, not before (a coarse
    // timer may fire up to 5 % early).
    QVERIFY2(elapsed >= 9400 && elapsed < 11000, qPrintable(QString::number(elapsed)));
    QCOMPARE(r.log.count(QStringLiteral("error opening serial port")), 0);
}

void TestSerialDevice::noiseFromTheDeviceIsStripped()
{
    Reading r({QStringLiteral("--noise")});
    QVERIFY(r.firstPressure());
    QTest::qWait(500);
    // Lines of noise alone vanish; noise ahead of a sentence is stripped.
    QCOMPARE(r.log.count(QStringLiteral("message rejected by NMEA module")), 0);
}

void TestSerialDevice::linesWithoutEndGiveNoReadingUntilEnded()
{
    Reading r({QStringLiteral("--no-end")});
    QVERIFY(!r.path.isEmpty());
    startSerial(r.b, r.path);
    QTest::qWait(1500);
    QCOMPARE(r.b.getSerialPressure(), -2000.0);
    auto* serial = qobject_cast<NmeaSourceSerial*>(onReceiverThread(r.b.getReceiver(), [&] {
        return r.b.getReceiver()->getSources().value(0);
    }));
    QVERIFY(serial);
    QVERIFY(onReceiverThread(r.b.getReceiver(), [&] { return serial->getBuffer().size(); }) > 200);

    r.device.command(QStringLiteral("noend off"));
    QTRY_VERIFY_WITH_TIMEOUT(r.b.getSerialPressure() > 900.0, 3000);
}

void TestSerialDevice::silentDeviceAgesOutWithoutRetry()
{
    NmeaSource::setRetryIntervalMs(200);
    Reading r;
    QVERIFY(r.firstPressure());
    r.device.command(QStringLiteral("silent on"));
    QTest::qWait(300);
    r.log.clear();
    QTest::qWait(800);
    const double last = r.b.getSerialPressure();
    QVERIFY(last > 900.0);
    // The port stays open and quiet: nothing to retry, nothing said.
    QVERIFY2(r.log.messages().isEmpty(), qPrintable(r.log.messages().join(QLatin1Char('|'))));
    QCOMPARE(r.b.getCurrentPressure(), last);
    Clock::advanceMonotonicMs(60000);
    QCOMPARE(r.b.getCurrentPressure(), -2000.0);
    QCOMPARE(r.b.getSerialPressure(), last);
}

QTEST_MAIN(TestSerialDevice)
#include "tst_serialdevice.moc"
