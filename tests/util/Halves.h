// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ThreeHourPoints.h"

// Three points of a trace from 1012.0 hPa: half way `firstHalf` above the start, and at the
// end `secondHalf` above half way (negative for a fall).
inline ThreeHourPoints halves(double firstHalf, double secondHalf)
{
    ThreeHourPoints points;
    points.start = 1012.0;
    points.middle = points.start + firstHalf;
    points.end = points.start + firstHalf + secondHalf;
    return points;
}
