// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/DeviceSimulator.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

// The simulator's weather scenarios, and its name while it is away.
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
};

QTEST_MAIN(TestDeviceSimulator)
#include "tst_devicesimulator.moc"
