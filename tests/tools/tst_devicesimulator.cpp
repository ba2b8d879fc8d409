// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/DeviceSimulator.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <fcntl.h>
#include <unistd.h>

// The simulator's weather scenarios, its name while it is away, and a dead sensor.
class TestDeviceSimulator : public QObject
{
    Q_OBJECT

private slots:
    void aDepressionFallsThenRises()
    {
        using S = DeviceSimulator::Scenario;
        QCOMPARE(DeviceSimulator::scenarioOffset(S::Depression, 0.0), 0.0);
        QCOMPARE(DeviceSimulator::scenarioOffset(S::Depression, 6 * 3600.0), -DeviceSimulator::DepressionDepth);
        QVERIFY(qAbs(DeviceSimulator::scenarioOffset(S::Depression, 12 * 3600.0)) < 1e-9);
        // Several hPa within the first hours, falling all the way down to the low...
        QVERIFY(DeviceSimulator::scenarioOffset(S::Depression, 3 * 3600.0) < -4.0);
        double previous = 0.0;
        for (int minute = 1; minute <= 360; ++minute) {
            const double now = DeviceSimulator::scenarioOffset(S::Depression, minute * 60.0);
            QVERIFY(now < previous);
            previous = now;
        }
        // ...then rising back.
        for (int minute = 361; minute <= 720; ++minute) {
            const double now = DeviceSimulator::scenarioOffset(S::Depression, minute * 60.0);
            QVERIFY(now > previous);
            previous = now;
        }
        QCOMPARE(DeviceSimulator::scenarioOffset(S::Depression, 30 * 3600.0), 0.0);
    }

    void steadyWeatherAddsNothing()
    {
        for (double s : {0.0, 1.0, 3600.0, 6 * 3600.0, 1e7})
            QCOMPARE(DeviceSimulator::scenarioOffset(DeviceSimulator::Scenario::Steady, s), 0.0);
    }

    void scenariosByName()
    {
        DeviceSimulator::Scenario scenario = DeviceSimulator::Scenario::Steady;
        QVERIFY(DeviceSimulator::scenarioFromName("depression", &scenario));
        QCOMPARE(scenario, DeviceSimulator::Scenario::Depression);
        QVERIFY(DeviceSimulator::scenarioFromName("steady", &scenario));
        QCOMPARE(scenario, DeviceSimulator::Scenario::Steady);
        QVERIFY(!DeviceSimulator::scenarioFromName("hurricane", &scenario));
        QCOMPARE(scenario, DeviceSimulator::Scenario::Steady);
    }

    // An unplugged device has no name. A link left behind would lead to whatever terminal
    // the system hands out next under the same number.
    void vanishedDeviceLeavesNoName()
    {
        QTemporaryDir folder;
        QVERIFY(folder.isValid());
        DeviceSimulator::Options options;
        options.linkPath = folder.filePath(QStringLiteral("skerry"));
        DeviceSimulator device(options);
        QVERIFY(device.open());
        QCOMPARE(QFileInfo(options.linkPath).symLinkTarget(), device.terminalPath());

        device.vanish();
        QVERIFY(!QFileInfo(options.linkPath).isSymLink());

        QVERIFY(device.comeBack());
        QCOMPARE(device.devicePath(), options.linkPath);
        QCOMPARE(QFileInfo(options.linkPath).symLinkTarget(), device.terminalPath());
    }

    // A sensor that gives nothing leaves the device able to talk: it answers a request for
    // its calibration, and its pressure comes back once the sensor does.
    void aDeadSensorStillAnswers()
    {
        DeviceSimulator::Options options;
        options.intervalMs = 20;
        options.noPressure = true;
        DeviceSimulator device(options);
        QVERIFY(device.open());
        const int fd = ::open(device.terminalPath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        QVERIFY(fd >= 0);
        QByteArray heard;
        QSocketNotifier notifier(fd, QSocketNotifier::Read);
        connect(&notifier, &QSocketNotifier::activated, this, [&] {
            char chunk[512];
            ssize_t n;
            while ((n = ::read(fd, chunk, sizeof chunk)) > 0)
                heard.append(chunk, static_cast<int>(n));
        });

        const QByteArray request = DeviceSimulator::sentence("$PWEGB,CAL?") + "\r\n";
        QCOMPARE(::write(fd, request.constData(), static_cast<size_t>(request.size())), ssize_t(request.size()));
        QTRY_VERIFY_WITH_TIMEOUT(heard.contains("$PWEGB,CAL,"), 3000);
        // Ten intervals more, and still no reading.
        QTest::qWait(10 * options.intervalMs);
        QVERIFY2(!heard.contains("XDR") && !heard.contains("MDA"), heard.constData());

        device.setNoPressure(false);
        QTRY_VERIFY_WITH_TIMEOUT(heard.contains("$WIXDR,P,"), 3000);
        ::close(fd);
    }
};

QTEST_MAIN(TestDeviceSimulator)
#include "tst_devicesimulator.moc"
