// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QString>

// Class-level routines only: the text forms of values, the data folder and a folder copy.
// Each reads the settings it needs anew at every call, through the installed SettingsReader.
class Util
{
public:
    Util() = delete;

    // The application's data folder: absolute, with no closing separator. On macOS the
    // executable sits three levels down inside its bundle; elsewhere the folder that
    // holds the executable is the data folder, except for an installed copy, which keeps
    // its data per user (DataFolder).
    static QString currentPath();
    // The folder `levels` above `path`, stopping at the root.
    static QString ascend(const QString& path, int levels);

    // Positions and directions.
    static QString formatPosition(const double& longitude, const double& latitude);
    static QString formatLatitude(const double& latitude);
    static QString formatLongitude(const double& longitude);
    static QString formatDegres(const double& value);
    static QString formatDir3(const int& value);
    static QString formatDir3(const double& value, const int& decimals);

    // Dates and times.
    static QDateTime convertDateTime(const QDateTime& dateTime);
    static QString convertDateFormat(const QString& format);
    static QString formatDateLong(const QDateTime& dateTime);
    static QString formatDateTimeLong(const QDateTime& dateTime);
    static QString formatDateIso(const QDateTime& dateTime);
    static QString formatDateBaro(const QDateTime& dateTime);
    static QString formatDateTimeSecs(const QDateTime& dateTime);

    // Pressures and speeds.
    static QString formatSpeed(const double& speed);
    static QString formatPressure(const double& pressure, const bool& withUnit);

    static bool copyDir(const QString& source, const QString& destination, const bool& move);
};
