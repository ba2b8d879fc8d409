// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <limits>

// What the barometer shows after one tick, for every view that is not a page: built whole
// on the main thread, published, and never changed after. Numbers that are unknown are NaN.
struct ShownState
{
    static constexpr double Unknown = std::numeric_limits<double>::quiet_NaN();

    // 1 for the first tick after start, one more at each tick; 0 before any.
    quint64 sequence = 0;
    // When the tick ran, by the log's clock (whole seconds), in milliseconds since the epoch.
    qint64 tickTime = 0;

    // The four strings of the tick's dataUpdated, as the pages show them ("NONE" for the
    // pressure while there is no usable reading).
    QString date;
    QString position;
    QString cogsog;
    QString pressureText;

    // The reading the tick took, in hPa as the source gave it; NaN when none was usable.
    double rawPressure = Unknown;
    // The pressure as shown: offset added, at sea level unless the station is asked for, in
    // hPa and in the user's unit.
    double shownPressureHpa = Unknown;
    double shownPressure = Unknown;
    // The "unitPre" index and its name as the pages write it ("mb", "hPa", ...).
    int unit = 0;
    QString unitText;
    // The "preDisplay" choice: 0 sea level (QNH), 1 station (QFE); and its caption.
    int level = 0;
    QString levelText;
    // The NmeaSourceType that gave the reading, -1 with none; and its name.
    int source = -1;
    QString sourceText;
    // When the reading was taken, in milliseconds since the epoch; 0 with none.
    qint64 readingTime = 0;
    // Whether this tick wrote a row into the log.
    bool logged = false;

    // The log's trend class as the arrow shows it (-10 while unknown).
    int trend = -10;
    // Raw change over three hours and over one hour, newest minus older, in hPa.
    double change3h = Unknown;
    double change1h = Unknown;

    // The pressure-fall warning: 0 none, 1 warning, 2 alarm; the raw falls (positive when
    // the pressure went down) of its last judgement; since when in seconds since the epoch.
    int warningLevel = 0;
    double warningFall3h = Unknown;
    double warningFall1h = Unknown;
    qint64 warningSince = 0;
    bool warningAcknowledged = false;
    // The level's name and its detail line, in the user's language and unit.
    QString warningText;
    QString warningDetail;

    // The last fix of the source that has one; course in degrees true, speed in knots.
    bool hasFix = false;
    double latitude = Unknown;
    double longitude = Unknown;
    double cog = Unknown;
    double sog = Unknown;

    // The theme as shown: 0 light, 1 dark; `followsSystem` when the setting asks for the
    // system's. The language's code, "en" or "fr".
    int theme = 0;
    bool followsSystem = false;
    QString language;
};
