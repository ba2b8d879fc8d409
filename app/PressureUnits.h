// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>

// hPa and the five display units, by their index in "unitPre": conversions both ways and the
// settings page's preview. An index out of range converts nothing.
class PressureUnits
{
public:
    PressureUnits() = delete;

    static double toHpa(double value, int unit);
    static double fromHpa(double hpa, int unit);
    // `hpa` plus the offset in the unit with its suffix, reduced to sea level at
    // `levelValue` metres unless `levelType` is 1; a point for the decimal mark always.
    static QString preview(double hpa, int unit, double offset, int levelType, double levelValue);
    // Two decimals and " mb", with no conversion.
    static QString inMb(double value);
};
