// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>

class SettingsAccess;

// The strings of dataUpdated that are not the date. Three of them double as flags the pages
// compare exactly, so those literals are never translated.
class DisplayLine
{
public:
    DisplayLine() = delete;

    // "No Position" without a fix, and for exact zero in both components.
    static QString positionText(bool hasFix, const QPointF& position);
    // Course truncated, speed in the chosen unit; "no" when both are zero.
    static QString cogSogText(double cog, double sog);
    // The reading with the offset, at sea level unless the station is asked for, with its
    // unit.
    static QString pressureText(double reading, const SettingsAccess& settings);
};
