// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageDriver.h"
#include "PageHarness.h"
#include "app/BackEnd.h"
#include "tools/DeviceSimulator.h"

#include <QtCore/QString>
#include <QtTest/QtTest>

// The simulated Skerry for the page tests that drive the serial port: on a link in the
// harness's folder, sending every tenth of a second.
namespace PageDevice {

inline DeviceSimulator::Options options(PageHarness& h)
{
    DeviceSimulator::Options options;
    options.intervalMs = 100;
    options.linkPath = h.folder().filePath(QStringLiteral("skerry"));
    return options;
}

// The port's entry as the Connections page lists it.
inline QString entry(const DeviceSimulator& device)
{
    return device.devicePath() + QStringLiteral(" Simulated Skerry");
}

// Opens the device and chooses it as the serial input for the next start.
inline bool attach(PageHarness& h, DeviceSimulator& device)
{
    if (!device.open())
        return false;
    h.writeSetting("SettingSerialPort", entry(device));
    h.writeSetting("SettingUseSerial", 1);
    return true;
}

// The main window started with the device attached; false if the device does not open,
// the window does not start, or no reading comes from the device within five seconds.
inline bool startReading(PageHarness& h, DeviceSimulator& device)
{
    return attach(h, device) && PageDriver::startMain(h) && QTest::qWaitFor([&h] {
               return h.backEnd()->getPressureSource() == QLatin1String("From serial connection");
           }, 5000);
}

} // namespace PageDevice
