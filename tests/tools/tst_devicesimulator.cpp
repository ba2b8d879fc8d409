// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/DeviceSimulator.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

// The simulator's weather scenarios, its name while it is away, and a dead sensor.
class TestDeviceSimulator : public QObject
{
    Q_OBJECT

private slots:
    // The low is under way when the device starts: it falls on for hours, bottoms out, and
    // rises back past where it started. It is quick enough for the pressure-fall warning
    // and never for the alarm.
    void aDepressionFallsOnThenRises()
    {
        using S = DeviceSimulator::Scenario;
        const auto at = [](double hours) { return DeviceSimulator::weather(S::Depression, hours * 3600.0); };
        QCOMPARE(at(0.0), 0.0);
        const double fall3h = at(-3.0) - at(0.0);
        QVERIFY2(fall3h >= 3.6 + 0.5 && fall3h <= 6.0 - 0.5, qPrintable(QString::number(fall3h)));
        double lowest = 0.0;
        double lowestAt = 0.0;
        for (int minute = -8 * 60; minute <= 20 * 60; ++minute) {
            const double hours = minute / 60.0;
            QVERIFY2(at(hours - 1.0) - at(hours) < 2.0 - 0.4, qPrintable(QString::number(hours)));
            QVERIFY2(at(hours - 3.0) - at(hours) < 6.0 - 1.0, qPrintable(QString::number(hours)));
            if (at(hours) < lowest) {
                lowest = at(hours);
                lowestAt = hours;
            }
        }
        // Several hPa further down some hours later, then back up past the start.
        QVERIFY2(lowest < -3.0, qPrintable(QString::number(lowest)));
        QVERIFY2(lowestAt > 3.0 && lowestAt < 7.0, qPrintable(QString::number(lowestAt)));
        QVERIFY(at(12.0) > 0.0);
    }

    void steadyWeatherSwingsAroundTheBase()
    {
        using S = DeviceSimulator::Scenario;
        QCOMPARE(DeviceSimulator::weather(S::Steady, 0.0), 0.0);
        double low = 0.0;
        double high = 0.0;
        for (int minute = -36 * 60; minute <= 36 * 60; minute += 10) {
            const double w = DeviceSimulator::weather(S::Steady, minute * 60.0);
            low = std::min(low, w);
            high = std::max(high, w);
        }
        QVERIFY(low < -5.0 && low >= -7.2);
        QVERIFY(high > 5.0 && high <= 7.2);
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
