// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DisplayLine.h"

#include "app/SettingsAccess.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"
#include "util/Truncation.h"
#include "util/Util.h"

#include <QtCore/QCoreApplication>

#include <cmath>

QString DisplayLine::positionText(bool hasFix, const QPointF& position)
{
    if (!hasFix || (position.x() == 0.0 && position.y() == 0.0))
        return QStringLiteral("No Position");
    return Util::formatPosition(position.x(), position.y());
}

QString DisplayLine::cogSogText(double cog, double sog)
{
    // Built first and then thrown away for a vessel at rest on exactly north.
    const QString text = QStringLiteral("COG ") + Util::formatDir3(Truncation::towardZero<int>(cog))
            + QCoreApplication::translate("BackEnd", "deg") + QStringLiteral(" T - SOG ")
            + Util::formatSpeed(sog * 1.852 / 3.6);
    if (std::fabs(cog) <= 1e-12 && std::fabs(sog) <= 1e-12)
        return QStringLiteral("no");
    return text;
}

QString DisplayLine::pressureText(double reading, const SettingsAccess& settings)
{
    const double elevation = settings.value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();
    const int preDisplay = settings.value(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();
    // Read as an integer default on purpose: an absent key is integer zero.
    const double offset = settings.value(SettingKey::Offset, SettingDefault::OffsetAtTick).toDouble();
    double value = reading + offset;
    if (preDisplay != 1)
        value /= Pressure::seaLevelFactor(elevation);
    return Util::formatPressure(value, true);
}
