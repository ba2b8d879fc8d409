// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CalibrationDialogue.h"

#include "nmea/Nmea0183.h"

#include <QtCore/QDebug>
#include <QtCore/QStringList>

#include <cmath>

CalibrationDialogue::CalibrationDialogue()
{
    timerOperation.setSingleShot(true);
    timerOperation.setInterval(5000);
    connect(&timerOperation, &QTimer::timeout, this, &CalibrationDialogue::operationTimeout);
}

void CalibrationDialogue::requestCurrentCalibration()
{
    const QString message = Nmea0183::createMessageGetCalibration();
    timerOperation.start();
    emit sendCalibration(message);
}

void CalibrationDialogue::calibrateBarometer(double offset, double slope, double pressure)
{
    const QString message = Nmea0183::createMessageCalibration(offset, slope, pressure);
    qWarning().noquote() << message;
    emit sendCalibration(message);
}

void CalibrationDialogue::resetBarometer()
{
    emit sendCalibration(Nmea0183::createMessageResetBarometer());
}

void CalibrationDialogue::takeAnswer(const QString& message)
{
    if (!message.contains(QLatin1Char('*')) || !message.contains(QLatin1Char(',')))
        return;
    const QStringList fields = message.split(QLatin1Char('*'), Qt::KeepEmptyParts)
                                       .first()
                                       .split(QLatin1Char(','), Qt::KeepEmptyParts);
    if (fields.size() < 6)
        return;
    timerOperation.stop();
    qWarning().noquote() << "QSP received from calibrationr request" << fields.at(4).toDouble();
    const double offset = fields.at(2).toDouble();
    // Halves away from zero: -102.5 is passed on as -103.
    const double slope = std::round(fields.at(3).toDouble());
    const double slopeRef = fields.at(4).toDouble();
    const double devicePressure = fields.at(5).toDouble();
    emit calibrationValuesReceived(offset, slope, slopeRef, devicePressure);
}
