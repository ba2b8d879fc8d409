// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogRow.h"

#include "log/LogHost.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"

#include <QtCore/QtMath>
#include <QtCore/QVariant>
#include <QtSql/QSqlQuery>

#include <cmath>

double LogRow::seaLevelPressure(double stationPressure, double elevation)
{
    if (std::fabs(elevation) <= 1e-12)
        return stationPressure;
    return stationPressure / Pressure::seaLevelFactor(elevation);
}

double LogRow::displayedPressure(double pressure, double elevation, double offset, int preDisplay)
{
    const double station = pressure + offset;
    return preDisplay == 0 ? seaLevelPressure(station, elevation) : station;
}

double LogRow::displayedPressure(const QSqlQuery& row, int preDisplay)
{
    return displayedPressure(row.value(Pre).toDouble(), row.value(Ele).toDouble(), row.value(Ofs).toDouble(),
                             preDisplay);
}

int LogRow::preDisplay()
{
    return LogHost::installed()->getSetting(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();
}

double LogRow::unitFactor()
{
    switch (LogHost::installed()->getSetting(SettingKey::UnitPre, SettingDefault::UnitPre).toInt()) {
    case Pressure::Kpa:
        return Pressure::KpaPerHpa;
    case Pressure::InHg:
        return Pressure::InHgPerHpa;
    case Pressure::MmHg:
        return Pressure::MmHgPerHpa;
    default:
        return 1.0;
    }
}

double LogRow::secondsPerUnit(int chartNb)
{
    if (chartNb == 0)
        return 60.0;
    if (chartNb <= 5)
        return 3600.0;
    return 86400.0;
}

double LogRow::roundToHundredths(double value)
{
    return qRound(value * 100) / 100.0;
}
