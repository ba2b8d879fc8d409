// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtSensors/QPressureReading>
#include <QtSensors/QSensorBackend>
#include <QtSensors/QSensorBackendFactory>

#include <atomic>

// A host pressure sensor for tests: registered with QtSensors as the backend of
// QPressureSensor, it delivers one reading of `pascals` shortly after each start, as a real
// sensor does, and counts its starts and stops.
class FakePressureSensor : public QSensorBackend
{
public:
    explicit FakePressureSensor(QSensor* sensor);

    void start() override;
    void stop() override;

    // The value of the next readings, in pascals.
    static std::atomic<double> pascals;
    static std::atomic<int> starts;
    static std::atomic<int> stops;

    // Registers the backend for QPressureSensor::type, or takes it away again.
    static void install();
    static void uninstall();

private:
    QPressureReading reading;
    bool running = false;
};
