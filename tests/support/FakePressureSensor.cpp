// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FakePressureSensor.h"

#include <QtCore/QTimer>
#include <QtSensors/QPressureSensor>
#include <QtSensors/QSensorManager>

std::atomic<double> FakePressureSensor::pascals{101325.0};
std::atomic<int> FakePressureSensor::starts{0};
std::atomic<int> FakePressureSensor::stops{0};

namespace {

const QByteArray Identifier("brinholt.test.pressure");

class Factory : public QSensorBackendFactory
{
public:
    QSensorBackend* createBackend(QSensor* sensor) override { return new FakePressureSensor(sensor); }
};

Factory factory;

} // namespace

FakePressureSensor::FakePressureSensor(QSensor* sensor)
    : QSensorBackend(sensor)
{
    setReading<QPressureReading>(&reading);
    addDataRate(1, 10);
}

void FakePressureSensor::start()
{
    ++starts;
    running = true;
    // A reading comes from the event loop, never from inside start().
    QTimer::singleShot(0, this, [this] {
        if (!running)
            return;
        reading.setPressure(pascals.load());
        reading.setTimestamp(reading.timestamp() + 1);
        newReadingAvailable();
    });
}

void FakePressureSensor::stop()
{
    ++stops;
    running = false;
}

void FakePressureSensor::install()
{
    starts = 0;
    stops = 0;
    if (!QSensorManager::isBackendRegistered(QPressureSensor::type, Identifier))
        QSensorManager::registerBackend(QPressureSensor::type, Identifier, &factory);
    QSensorManager::setDefaultBackend(QPressureSensor::type, Identifier);
}

void FakePressureSensor::uninstall()
{
    if (QSensorManager::isBackendRegistered(QPressureSensor::type, Identifier))
        QSensorManager::unregisterBackend(QPressureSensor::type, Identifier);
}
