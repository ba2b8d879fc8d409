// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/InternalSensor.h"

#include "app/InternalBroadcast.h"
#include "app/ReadingStore.h"

#include <QtCore/QDebug>
#include <QtSensors/QPressureReading>

InternalSensor::InternalSensor(ReadingStore& readings, InternalBroadcast& broadcast)
    : readings(readings)
    , broadcast(broadcast)
{
}

bool InternalSensor::start(const std::function<void(QPressureSensor&)>& follow)
{
    if (!pressureSensor.connectToBackend()) {
        qWarning().noquote() << "no pressure sensor";
        return false;
    }
    follow(pressureSensor);
    timerSensor.setSingleShot(true);
    timerSensor.setTimerType(Qt::PreciseTimer);
    timerSensor.setInterval(800);
    QObject::connect(&timerSensor, &QTimer::timeout, &pressureSensor, &QSensor::start, Qt::UniqueConnection);
    pressureSensor.start();
    sensorStarted = true;
    return true;
}

void InternalSensor::takeReading()
{
    pressureSensor.stop();
    if (QPressureReading* reading = pressureSensor.reading())
        readings.store(reading->pressure() / 100.0, Internal);
    // Whichever source wins, not only this one.
    broadcast.sendPressure(readings.current().value);
    timerSensor.start();
}
