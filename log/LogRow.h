// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QSqlQuery;

// A row of the log as the screen reads it: its columns, the pressure it stands for and the
// chosen unit, by the settings of the moment. Shared by the chart, the cursor and the lists.
class LogRow
{
public:
    LogRow() = delete;

    // Columns of a row, in the order of the table's definition.
    enum Column { Time = 0, Lon = 1, Lat = 2, Cog = 3, Sog = 4, Pre = 5, Ele = 6, Ofs = 7 };

    // Station pressure reduced to sea level; elevation in metres. A zero elevation leaves
    // the pressure as it is.
    static double seaLevelPressure(double stationPressure, double elevation);
    // The pressure a row stands for on screen: PRE + OFS, at sea level unless "preDisplay"
    // asks for the station. Kept in hPa.
    static double displayedPressure(double pressure, double elevation, double offset, int preDisplay);
    static double displayedPressure(const QSqlQuery& row, int preDisplay);
    // "preDisplay" as the application gives it now.
    static int preDisplay();
    // hPa into the unit of "unitPre".
    static double unitFactor();
    // Seconds per unit of the chart's x-axis: minutes, hours or days by table.
    static double secondsPerUnit(int chartNb);
    // A hundredth of the chosen unit, which is what the chart and the cursor show.
    static double roundToHundredths(double value);
};
