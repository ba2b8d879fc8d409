// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QTimer>
#include <QtSensors/QPressureSensor>

#include <functional>

class InternalBroadcast;
class ReadingStore;

// The host's own pressure sensor, read as a cycle of single readings: each reading stops
// it, goes to the store and, if the output is on, to the broadcast; a timer starts it again.
// A desktop usually has none, and the rest runs on NMEA.
class InternalSensor
{
public:
    InternalSensor(ReadingStore& readings, InternalBroadcast& broadcast);

    // Starts the cycle; `follow` connects the sensor's readings (uniquely) to whoever hands
    // them to takeReading. False, with a line in the log, on a host without a sensor.
    bool start(const std::function<void(QPressureSensor&)>& follow);
    void takeReading();

private:
    ReadingStore& readings;
    InternalBroadcast& broadcast;
    QTimer timerSensor;
    QPressureSensor pressureSensor;
    // Written, and read by nobody.
    bool sensorStarted = false;
};
