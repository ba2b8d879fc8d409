// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>

// What every layer knows about a pressure: readings are hPa, and these are their marks,
// units and reduction to sea level.
namespace Pressure {

// No reading: what a source writes when it stops or loses its link, and what a reading
// holds before the first one.
constexpr double None = -2000.0;
// Any value below this counts as no usable pressure: the tick neither shows nor logs it.
constexpr double UsableFrom = 600.0;

// A reading counts for this long after it came, in milliseconds; a source silent for longer
// no longer feeds the instrument.
constexpr int ReadingLifetimeMs = 60000;

// The units by their index in the "unitPre" setting.
enum Unit : int {
    Mb = 0,
    Hpa = 1,
    Kpa = 2,
    InHg = 3,
    MmHg = 4,
};
constexpr int UnitCount = 5;

// The unit's name as the pages, the published state and the CSV header write it; empty
// for an index out of range.
constexpr const char* unitName(int unit)
{
    switch (unit) {
    case Mb:
        return "mb";
    case Hpa:
        return "hPa";
    case Kpa:
        return "kPa";
    case InHg:
        return "inHg";
    case MmHg:
        return "mmHg";
    default:
        return "";
    }
}

// From hPa into the unit; the other way is the division by the same factor. Util's
// formatting routines hold a copy of their own on purpose (see util/Util.cpp).
// kPa both ways: the log multiplies by 0.1, BackEnd divides by 10.0; the two differ in the
// last bit and each keeps its own.
constexpr double KpaPerHpa = 0.1;
constexpr double HpaPerKpa = 10.0;
constexpr double InHgPerHpa = 0.029529983071445;
constexpr double MmHgPerHpa = 0.75006157584566;

// Station pressure divided by this is the pressure at sea level; h in metres. The
// multiplication, then the division, then the addition, in this order so that every reader
// agrees to the last bit. The display writes the sum as 1 + x and the log and its exports as
// x + 1: both orders are deliberate and, an addition of two doubles being exact in either
// order, give the same bits, so one function serves both.
inline double seaLevelFactor(double h)
{
    return std::pow(1.0 + h * -22.55687745833333 / 1000000.0, 5.2561);
}

} // namespace Pressure
