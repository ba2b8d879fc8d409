// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDevice.h"
#include "PageDriver.h"
#include "PageHarness.h"
#include "PageInput.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"
#include "tools/DeviceSimulator.h"
#include "util/Clock.h"
#include "util/Pressure.h"

#include <QtCore/QPointer>
#include <QtCore/QSettings>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>

// The calibration page end to end: the real BackEnd and serial source, and the simulated
using namespace PageDriver;

// device on a pseudo-terminal.
class TestCalibrationPage : public QObject
{
    Q_OBJECT

private:
    static bool startMain(PageHarness& h)
    {
        return PageDriver::startMain(h, QSize(900, 700));
    }

    // The device on its terminal, chosen on the connections page as a user would have.
    static void press(PageHarness& h, const QString& button)
    {
        QQuickItem* item = h.item(button);
        QVERIFY(item);
        QVERIFY(item->isEnabled());
        QVERIFY2(PageInput::click(h.window(), h.loadedPage(), item), qPrintable(button));
    }

    static QQuickItem* open(PageHarness& h)
    {
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/quillmereCalibration\")"));
        QQuickItem* page = h.loadedPage();
        return page && page->objectName() == QLatin1String("calibrationPage") ? page : nullptr;
    }

    static bool locked(QQuickItem* page)
    {
        return !prop(page, "offsetInput", "enabled").toBool() && !prop(page, "slopeInput", "enabled").toBool()
               && !prop(page, "buttonCalib", "enabled").toBool() && !prop(page, "buttonReset", "enabled").toBool();
    }

    static bool unlocked(QQuickItem* page)
    {
        return prop(page, "offsetInput", "enabled").toBool() && prop(page, "slopeInput", "enabled").toBool()
               && prop(page, "buttonCalib", "enabled").toBool() && prop(page, "buttonReset", "enabled").toBool();
    }

    // Only what the pages themselves say counts here: the device has words of its own.
    static void checkClean(PageHarness& h)
    {
        const QStringList left = pageWarnings(h);
        QVERIFY2(left.isEmpty(), qPrintable(left.join('\n')));
    }

private slots:
    void calibrateWithTheDevice()
    {
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));
        QSignalSpy commands(&device, &DeviceSimulator::commandReceived);

        // From the settings page, whose button the chosen port enables.
        press(h, "settingsButton");
        press(h, "buttonCalibration");
        QCOMPARE(loaderSource(h), QUrl("qrc:/quillmereCalibration"));
        QQuickItem* page = h.loadedPage();
        QVERIFY(page);
        QCOMPARE(prop(page, "title", "text").toString(), QStringLiteral("Quillmere Skerry calibration"));
        QVERIFY(locked(page));
        QCOMPARE(prop(page, "stationPressure", "text").toString(), QString());
        QCOMPARE(prop(page, "buttonCancel", "enabled").toBool(), true);
        QPointer<QObject> dialog = control(page, "calibStatus");
        QVERIFY(dialog);
        QSignalSpy dialogShown(dialog.data(), SIGNAL(visibilityChanged()));

        QSignalSpy values(h.backEnd(), &BackEnd::calibrationValuesReceived);
        QTRY_COMPARE_WITH_TIMEOUT(values.count(), 1, 3000);
        QCOMPARE(commands.at(0).at(0).toByteArray(), QByteArray("$PWEGB,CAL?*1A"));
        QVERIFY(unlocked(page));
        const double qsp = values.at(0).at(3).toDouble();
        QCOMPARE(page->property("qsp").toDouble(), qsp);
        const double initialPressure = page->property("initialPressure").toDouble();
        QVERIFY(initialPressure > 900.0);
        QCOMPARE(page->property("initialOffset").toDouble(), initialPressure - qsp);
        QCOMPARE(prop(page, "offsetInput", "decimals").toInt(), 2);
        QCOMPARE(prop(page, "offsetInput", "value").toInt(), int((initialPressure - qsp) * 100));
        QCOMPARE(prop(page, "slopeInput", "value").toInt(), 0);
        QCOMPARE(prop(page, "stationPressure", "text").toString(),
                 h.backEnd()->getFormatedPressureMb(initialPressure - (initialPressure - qsp)
                                                    + prop(page, "offsetInput", "realValue").toDouble()));

        // The preview follows the box: the device's pressure plus the chosen offset.
        set(page, "offsetInput", "value", 125);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), h.backEnd()->getFormatedPressureMb(qsp + 1.25));
        set(page, "slopeInput", "value", 30);
        QCOMPARE(prop(page, "slopeInput", "realValue").toDouble(), 3.0);

        commands.clear();
        press(h, "buttonCalib");
        QTRY_COMPARE_WITH_TIMEOUT(commands.count(), 1, 3000);
        const QByteArray body = "$PWEGB,UCAL,1.25,3.0," + QByteArray::number(qsp, 'f', 2);
        QCOMPARE(commands.at(0).at(0).toByteArray(), DeviceSimulator::sentence(body));
        // The device's OK leads back to the main page with no word: the dialogue never
        // showed, not even for an instant before the page went.
        QTRY_COMPARE_WITH_TIMEOUT(loaderSource(h), QUrl("qrc:/BaroSwipe"), 3000);
        QCOMPARE(dialogShown.count(), 0);
        QVERIFY(dialog.isNull() || !dialog->property("visible").toBool());
        QCOMPARE(device.offset(), 1.25);
        QCOMPARE(device.slope(), 3.0);
        QCOMPARE(device.reference(), QByteArray::number(qsp, 'f', 2).toDouble());
        QVERIFY(h.item("baroH"));
        checkClean(h);
    }

    void factoryReset()
    {
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));
        // Something to reset.
        QSignalSpy status(h.backEnd(), &BackEnd::calibrationStatus);
        h.backEnd()->calibrateBarometer(2.0, 5.0, 1000.0);
        QTRY_COMPARE_WITH_TIMEOUT(status.count(), 1, 3000);
        QCOMPARE(device.offset(), 2.0);

        QQuickItem* page = open(h);
        QVERIFY(page);
        QPointer<QObject> dialog = control(page, "calibStatus");
        QVERIFY(dialog);
        QSignalSpy dialogShown(dialog.data(), SIGNAL(visibilityChanged()));
        QTRY_VERIFY_WITH_TIMEOUT(unlocked(page), 3000);
        // The slope box opens at 0 whatever the device holds.
        QCOMPARE(prop(page, "slopeInput", "value").toInt(), 0);
        QSignalSpy commands(&device, &DeviceSimulator::commandReceived);
        press(h, "buttonReset");
        QTRY_COMPARE_WITH_TIMEOUT(commands.count(), 1, 3000);
        QCOMPARE(commands.at(0).at(0).toByteArray(), QByteArray("$PWEGB,FRST*78"));
        QTRY_COMPARE_WITH_TIMEOUT(loaderSource(h), QUrl("qrc:/BaroSwipe"), 3000);
        // With no word on the way.
        QCOMPARE(dialogShown.count(), 0);
        QVERIFY(dialog.isNull() || !dialog->property("visible").toBool());
        QCOMPARE(device.offset(), DeviceSimulator::FactoryOffset);
        QCOMPARE(device.slope(), DeviceSimulator::FactorySlope);
        checkClean(h);
    }

    void silentDeviceGivesTheTimeoutOnce()
    {
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));
        device.setSilent(true);
        QSignalSpy commands(&device, &DeviceSimulator::commandReceived);
        QSignalSpy timeouts(h.backEnd(), &BackEnd::operationTimeout);
        QQuickItem* page = open(h);
        QVERIFY(page);
        QObject* dialog = control(page, "calibStatus");
        QVERIFY(dialog);
        QCOMPARE(dialog->property("visible").toBool(), false);
        QSignalSpy shown(dialog, SIGNAL(visibilityChanged()));
        QTRY_COMPARE_WITH_TIMEOUT(timeouts.count(), 1, 7000);
        QCOMPARE(dialog->property("visible").toBool(), true);
        QCOMPARE(dialog->property("text").toString(),
                 QStringLiteral("Operation timeout, probably no<br>Quillmere Skerry is connected"));
        QCOMPARE(PageHarness::evaluate(dialog, "icon === StandardIcon.Critical").toBool(), true);
        // No new request follows, so nothing more comes.
        QTest::qWait(5500);
        QCOMPARE(timeouts.count(), 1);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(commands.count(), 1);
        QVERIFY(locked(page));
        QCOMPARE(prop(page, "stationPressure", "text").toString(), QString());
        // Close hides it; Cancel still leads back.
        QMetaObject::invokeMethod(dialog, "close");
        QTRY_COMPARE(dialog->property("visible").toBool(), false);
        press(h, "buttonCancel");
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        QCOMPARE(commands.count(), 1);
        checkClean(h);
    }

    void lateAnswerStillUnlocks()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(startMain(h));
        QQuickItem* page = open(h);
        QVERIFY(page);
        QSignalSpy timeouts(h.backEnd(), &BackEnd::operationTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(timeouts.count(), 1, 7000);
        QVERIFY(locked(page));
        // A usable pressure of the program's own, or the answer would unlock only the reset.
        h.backEnd()->setCurrentPressure(1012.5, Serial);
        h.backEnd()->slot_calibrationValues(QStringLiteral("$PWEGB,CAL,0.00,0,1013.25,1000.00*00"));
        QVERIFY(unlocked(page));
        QCOMPARE(page->property("qsp").toDouble(), 1000.0);
        QCOMPARE(page->property("initialOffset").toDouble(), 12.5);
        QVERIFY(!prop(page, "stationPressure", "text").toString().isEmpty());
        checkClean(h);
    }

    void errorAnswerGivesOperationFailedAndANewRequest()
    {
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));
        QSignalSpy values(h.backEnd(), &BackEnd::calibrationValuesReceived);
        QQuickItem* page = open(h);
        QVERIFY(page);
        QTRY_COMPARE_WITH_TIMEOUT(values.count(), 1, 3000);
        QObject* dialog = control(page, "calibStatus");

        // The device refuses the next command only; it answers again afterwards.
        QSignalSpy commands(&device, &DeviceSimulator::commandReceived);
        device.setAnswerErr(true);
        connect(&device, &DeviceSimulator::commandReceived, this,
                [&device] { QTimer::singleShot(0, &device, [&device] { device.setAnswerErr(false); }); });
        set(page, "offsetInput", "value", 300);
        press(h, "buttonCalib");
        QTRY_VERIFY_WITH_TIMEOUT(dialog->property("visible").toBool(), 3000);
        QCOMPARE(dialog->property("text").toString(), QStringLiteral("Operation failed"));
        QCOMPARE(PageHarness::evaluate(dialog, "icon === StandardIcon.Critical").toBool(), true);
        // The page stays, asks again, and the new figures overwrite what was typed.
        QTRY_COMPARE_WITH_TIMEOUT(values.count(), 2, 3000);
        QCOMPARE(commands.count(), 2);
        QVERIFY(commands.at(0).at(0).toByteArray().startsWith("$PWEGB,UCAL,3.00,"));
        QCOMPARE(commands.at(1).at(0).toByteArray(), QByteArray("$PWEGB,CAL?*1A"));
        QCOMPARE(loaderSource(h), QUrl("qrc:/quillmereCalibration"));
        QVERIFY(unlocked(page));
        QVERIFY(prop(page, "offsetInput", "value").toInt() != 300);
        QCOMPARE(device.offset(), DeviceSimulator::FactoryOffset);
        checkClean(h);
    }

    // The device answers while the program has no usable pressure: the offset would be
    // worked out from nothing, so Calibrate waits, says why, and the device is asked again
    // once a reading has come.
    void calibrateWaitsForAUsablePressure_data()
    {
        QTest::addColumn<bool>("lowReading");
        QTest::newRow("no reading younger than a minute") << false;
        QTest::newRow("a reading below 600 hPa is none") << true;
    }

    void calibrateWaitsForAUsablePressure()
    {
        QFETCH(bool, lowReading);
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));
        if (lowReading) {
            device.setBasePressure(500.0);
            QTRY_VERIFY_WITH_TIMEOUT(h.backEnd()->getCurrentPressure() > 0.0
                                             && h.backEnd()->getCurrentPressure() < 600.0,
                                     3000);
        } else {
            // The sensor dies; its last readings, some still on the line, age out.
            device.setNoPressure(true);
            for (int i = 0; i < 20 && h.backEnd()->getCurrentPressure() != Pressure::None; ++i) {
                QTest::qWait(200);
                Clock::advanceMonotonicMs(60000);
            }
            QCOMPARE(h.backEnd()->getCurrentPressure(), Pressure::None);
        }
        // The tick has seen no usable pressure before the page opens.
        h.backEnd()->slot_timerData();

        QSignalSpy commands(&device, &DeviceSimulator::commandReceived);
        QSignalSpy values(h.backEnd(), &BackEnd::calibrationValuesReceived);
        QQuickItem* page = open(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "noPressureNote", "visible").toBool(), false);
        QTRY_COMPARE_WITH_TIMEOUT(values.count(), 1, 3000);
        QCOMPARE(commands.count(), 1);
        QCOMPARE(commands.at(0).at(0).toByteArray(), QByteArray("$PWEGB,CAL?*1A"));

        // Says why; Calibrate and the boxes stay locked, the reset and the way back do not.
        QCOMPARE(prop(page, "noPressureNote", "visible").toBool(), true);
        QCOMPARE(prop(page, "noPressureNote", "text").toString(),
                 QStringLiteral("No current pressure: Calibrate waits until a reading arrives"));
        QCOMPARE(PageHarness::evaluate(control(page, "noPressureNote"), "Accessible.role === Accessible.StaticText")
                         .toBool(),
                 true);
        QCOMPARE(prop(page, "buttonCalib", "enabled").toBool(), false);
        QCOMPARE(prop(page, "offsetInput", "enabled").toBool(), false);
        QCOMPARE(prop(page, "slopeInput", "enabled").toBool(), false);
        QCOMPARE(prop(page, "buttonReset", "enabled").toBool(), true);
        QCOMPARE(prop(page, "buttonCancel", "enabled").toBool(), true);
        // Nothing was worked out from the missing pressure.
        QCOMPARE(prop(page, "offsetInput", "value").toInt(), 0);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), QString());

        // A click on the locked Calibrate, and a tick still without a usable pressure: neither
        // sends anything, as the next command to reach the device shows.
        QVERIFY(PageInput::click(h.window(), page, h.item("buttonCalib")));
        h.backEnd()->slot_timerData();

        if (lowReading)
            device.setBasePressure(DeviceSimulator::Options().basePressure);
        else
            device.setNoPressure(false);
        QTRY_VERIFY_WITH_TIMEOUT(h.backEnd()->getCurrentPressure() >= 600.0, 3000);
        // The page hears of the pressure from the tick; one tick in 385 shows nothing, so two.
        h.backEnd()->slot_timerData();
        h.backEnd()->slot_timerData();
        QTRY_COMPARE_WITH_TIMEOUT(commands.count(), 2, 3000);
        QCOMPARE(commands.at(1).at(0).toByteArray(), QByteArray("$PWEGB,CAL?*1A"));
        QTRY_COMPARE_WITH_TIMEOUT(values.count(), 2, 3000);

        // Now from a usable pressure: the device's own reading, so next to no difference.
        QCOMPARE(prop(page, "noPressureNote", "visible").toBool(), false);
        QVERIFY(unlocked(page));
        const double initialPressure = page->property("initialPressure").toDouble();
        QVERIFY(initialPressure >= 600.0);
        const double initialOffset = page->property("initialOffset").toDouble();
        QVERIFY2(qAbs(initialOffset) < 1.0, qPrintable(QString::number(initialOffset)));
        QCOMPARE(page->property("qsp").toDouble(), values.at(1).at(3).toDouble());
        QCOMPARE(prop(page, "offsetInput", "value").toInt(), int(initialOffset * 100));

        // Ready: a further tick asks nothing more, and Calibrate sends that offset.
        h.backEnd()->slot_timerData();
        press(h, "buttonCalib");
        QTRY_COMPARE_WITH_TIMEOUT(commands.count(), 3, 3000);
        const QByteArray sent = commands.at(2).at(0).toByteArray();
        QVERIFY2(sent.startsWith("$PWEGB,UCAL,"), sent.constData());
        QVERIFY2(qAbs(sent.split(',').at(2).toDouble()) < 1.0, sent.constData());
        QTRY_COMPARE_WITH_TIMEOUT(loaderSource(h), QUrl("qrc:/BaroSwipe"), 3000);
        QVERIFY(qAbs(device.offset()) < 1.0);
        checkClean(h);
    }

    void capitalUnitPreKeyGivesThreeDecimals_data()
    {
        Columns::add<QString, int>("key", "decimals");
        QTest::newRow("the usual key does nothing here") << "unitPre" << 2;
        QTest::newRow("the capital key by hand") << "UnitPre" << 3;
    }

    void capitalUnitPreKeyGivesThreeDecimals()
    {
        QFETCH(QString, key);
        QFETCH(int, decimals);
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        h.writeSetting(key, 3);
        QVERIFY(startMain(h));
        QQuickItem* page = open(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "offsetInput", "decimals").toInt(), decimals);
        QCOMPARE(prop(page, "offsetInput", "from").toInt(), -10000000);
        QCOMPARE(prop(page, "offsetInput", "to").toInt(), 10000000);
        QCOMPARE(prop(page, "slopeInput", "to").toInt(), 100);
        QCOMPARE(prop(page, "slopeInput", "stepSize").toInt(), 10);
        press(h, "buttonCancel");
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        checkClean(h);
    }
};

QTEST_MAIN(TestCalibrationPage)
#include "tst_calibrationpage.moc"
