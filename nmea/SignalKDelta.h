// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QSet>
#include <QtCore/QString>

struct ShownState;

// The Signal K messages of the barometer, in the v1 delta format and SI units: the meta of
// its paths, and one delta for each published state. Every message is one JSON object in
// compact form, without a line end. The position is never sent: the one Brinholt has
// usually came from the same network.
//
// Paths, and where they come from:
// - `environment.outside.pressure`, Pa: the path Signal K defines as the outside ambient
//   pressure, so the pressure around the instrument (the station pressure), the user's
//   offset added as it corrects the instrument, and not reduced to sea level. Only for
//   a reading of the serial device or the internal sensor: one from the TCP or UDP input
//   may have come from the same server.
// - `.threeHoursDelta` and `.oneHourDelta` below it, Pa, newest minus older: as the
//   "signalk-barometer" plug-in publishes them.
// - `.trend.tendency` below it, "RISING" or "FALLING" over three hours: as the
//   "signalk-barometer-trend" plug-in publishes it.
// - `.trend.oneHourClass` below it: our own, the class of the trend arrow, -4 to 4.
// - `notifications.environment.outside.pressure`: the pressure-fall warning.
class SignalKDelta
{
    Q_DECLARE_TR_FUNCTIONS(SignalKDelta)

public:
    static const QString Source;
    static const QString PressurePath;
    static const QString ThreeHoursDeltaPath;
    static const QString OneHourDeltaPath;
    static const QString TendencyPath;
    static const QString TrendClassPath;
    static const QString WordsPath;
    static const QString CharacteristicPath;
    static const QString NotificationPath;

    // The meta of every path, stamped `nowMs` (since the epoch).
    static QByteArray meta(qint64 nowMs);

    // What `state` changes for the server, or nothing. The values go at each state with a
    // usable reading; a value that goes away is sent once as null, so that the server
    // does not keep it. The warning goes at each state while a level holds, and once as
    // "normal" when it ends.
    QByteArray next(const ShownState& state);
    // Whether the last message carried a pressure of our own.
    bool sentOwnPressure() const { return ownPressure; }

private:
    QSet<QString> told;
    int lastLevel = 0;
    bool ownPressure = false;
};
