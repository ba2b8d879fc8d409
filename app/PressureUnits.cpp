// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PressureUnits.h"

#include "util/Pressure.h"

double PressureUnits::toHpa(double value, int unit)
{
    switch (unit) {
    case Pressure::Kpa:
        return value * Pressure::HpaPerKpa;
    case Pressure::InHg:
        return value / Pressure::InHgPerHpa;
    case Pressure::MmHg:
        return value / Pressure::MmHgPerHpa;
    default:
        return value;
    }
}

double PressureUnits::fromHpa(double hpa, int unit)
{
    switch (unit) {
    case Pressure::Kpa:
        return hpa / Pressure::HpaPerKpa;
    case Pressure::InHg:
        return hpa * Pressure::InHgPerHpa;
    case Pressure::MmHg:
        return hpa * Pressure::MmHgPerHpa;
    default:
        return hpa;
    }
}

QString PressureUnits::preview(double hpa, int unit, double offset, int levelType, double levelValue)
{
    const QString name = QString::fromLatin1(Pressure::unitName(unit));
    double value = fromHpa(hpa + offset, unit);
    if (levelType != 1)
        value /= Pressure::seaLevelFactor(levelValue);
    const int decimals = unit == Pressure::InHg ? 3 : 2;
    return QStringLiteral("%1").arg(value, 0, 'f', decimals, QLatin1Char(' '))
            + (name.isEmpty() ? QString() : QLatin1Char(' ') + name);
}

QString PressureUnits::inMb(double value)
{
    return QStringLiteral("%1").arg(value, 0, 'f', 2, QLatin1Char(' ')) + QStringLiteral(" mb");
}
