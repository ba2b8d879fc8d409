// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

// The calibration page's dialogue with the USB device: commands built by the codec and sent
// out as a signal, the device's answer turned into four numbers, and the five seconds a
// request waits for it. It neither talks to the port nor keeps the device's values.
class CalibrationDialogue : public QObject
{
    Q_OBJECT

public:
    CalibrationDialogue();

    void requestCurrentCalibration();
    void calibrateBarometer(double offset, double slope, double pressure);
    void resetBarometer();
    // A "$PWEGB,CAL" answer; a malformed one is dropped without a word and the page learns
    // of it by the time-out.
    void takeAnswer(const QString& message);

signals:
    void sendCalibration(QString message);
    void calibrationValuesReceived(double offset, double slope, double slopeRef, double pressure);
    void operationTimeout();

private:
    QTimer timerOperation;
};
