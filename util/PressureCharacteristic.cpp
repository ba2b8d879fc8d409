// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/PressureCharacteristic.h"

#include <cstdlib>

namespace {
int direction(long tenths)
{
    return tenths > 0 ? 1 : tenths < 0 ? -1 : 0;
}
}

std::optional<PressureCharacteristic::Reading> PressureCharacteristic::read(const ThreeHourPoints& points)
{
    const std::optional<long> first = points.firstHalf();
    const std::optional<long> second = points.secondHalf();
    if (!first || !second)
        return std::nullopt;
    Reading reading;
    reading.shape = shapeOf(*first, *second, points.change());
    reading.code = codeOf(reading.shape, points.change());
    return reading;
}

PressureCharacteristic::Shape PressureCharacteristic::shapeOf(long firstHalf, long secondHalf, long whole)
{
    const int first = direction(firstHalf);
    const int second = direction(secondHalf);
    if (first > 0 && second < 0)
        return RisingThenFalling;
    if (first < 0 && second > 0)
        return FallingThenRising;

    // No turn: whatever the halves, a whole that rounds to nothing is steady.
    const int overall = direction(whole);
    if (overall == 0)
        return Steady;
    if (first == 0 && second == 0)
        return overall > 0 ? Rising : Falling;
    if (second == 0)
        return first > 0 ? RisingThenSteady : FallingThenSteady;
    if (first == 0)
        return second > 0 ? SteadyThenRising : SteadyThenFalling;

    const long firstSize = std::labs(firstHalf);
    const long secondSize = std::labs(secondHalf);
    const bool slower = secondSize <= firstSize - RateChange;
    const bool quicker = secondSize >= firstSize + RateChange;
    if (first > 0)
        return slower ? RisingMoreSlowly : quicker ? RisingMoreQuickly : Rising;
    return slower ? FallingMoreSlowly : quicker ? FallingMoreQuickly : Falling;
}

int PressureCharacteristic::codeOf(Shape shape, long whole)
{
    switch (shape) {
    case RisingThenFalling:
        return whole >= 0 ? 0 : 8;
    case FallingThenRising:
        return whole > 0 ? 3 : 5;
    case RisingThenSteady:
    case RisingMoreSlowly:
        return 1;
    case Rising:
        return 2;
    case SteadyThenRising:
    case RisingMoreQuickly:
        return 3;
    case FallingThenSteady:
    case FallingMoreSlowly:
        return 6;
    case Falling:
        return 7;
    case SteadyThenFalling:
    case FallingMoreQuickly:
        return 8;
    case Steady:
        break;
    }
    return 4;
}

QString PressureCharacteristic::text(const Reading& reading)
{
    return tr("characteristic %1: %2").arg(reading.code).arg(shapeText(reading.shape));
}

QString PressureCharacteristic::shapeText(Shape shape)
{
    switch (shape) {
    case Steady:
        return tr("steady");
    case RisingThenFalling:
        return tr("rising, then falling");
    case FallingThenRising:
        return tr("falling, then rising");
    case RisingThenSteady:
        return tr("rising, then steady");
    case FallingThenSteady:
        return tr("falling, then steady");
    case SteadyThenRising:
        return tr("steady, then rising");
    case SteadyThenFalling:
        return tr("steady, then falling");
    case RisingMoreSlowly:
        return tr("rising, then rising more slowly");
    case Rising:
        return tr("rising");
    case RisingMoreQuickly:
        return tr("rising, then rising more quickly");
    case FallingMoreSlowly:
        return tr("falling, then falling more slowly");
    case Falling:
        return tr("falling");
    case FallingMoreQuickly:
        return tr("falling, then falling more quickly");
    }
    return QString();
}
