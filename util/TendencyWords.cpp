// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/TendencyWords.h"

#include <cstdlib>

TendencyWords::Word TendencyWords::classify(const ThreeHourPoints& points)
{
    const std::optional<long> first = points.firstHalf();
    const std::optional<long> second = points.secondHalf();
    if (first && second) {
        if (*first <= 0 && *second >= DefiniteTurn)
            return NowRising;
        if (*first >= 0 && *second <= -DefiniteTurn)
            return NowFalling;
    }
    return bySize(points.change());
}

TendencyWords::Word TendencyWords::bySize(long changeTenths)
{
    const long size = std::labs(changeTenths);
    const bool rising = changeTenths > 0;
    if (size < 1)
        return Steady;
    if (size <= 15)
        return rising ? RisingSlowly : FallingSlowly;
    if (size <= 35)
        return rising ? Rising : Falling;
    if (size <= 60)
        return rising ? RisingQuickly : FallingQuickly;
    return rising ? RisingVeryRapidly : FallingVeryRapidly;
}

QString TendencyWords::text(Word word)
{
    switch (word) {
    case Steady:
        return tr("steady");
    case RisingSlowly:
        return tr("rising slowly");
    case Rising:
        return tr("rising");
    case RisingQuickly:
        return tr("rising quickly");
    case RisingVeryRapidly:
        return tr("rising very rapidly");
    case FallingSlowly:
        return tr("falling slowly");
    case Falling:
        return tr("falling");
    case FallingQuickly:
        return tr("falling quickly");
    case FallingVeryRapidly:
        return tr("falling very rapidly");
    case NowRising:
        return tr("now rising");
    case NowFalling:
        return tr("now falling");
    }
    return QString();
}
