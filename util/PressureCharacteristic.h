// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ThreeHourPoints.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

#include <optional>

// The characteristic of pressure tendency, a = 0 to 8 of WMO code table 0200, as an
// observer reads it off the barograph's trace of the last three hours.
//
// The trace is read at three points: three hours ago, an hour and a half ago, and now.
// Each half (and the whole) is a change rounded to 0.1 hPa, as the tendency's own figure
// is. A half is steady when it rounds to 0.0, rising or falling otherwise. Two halves that
// go the same way differ in rate when their sizes differ by 0.5 hPa or more: "more slowly"
// if the second is the smaller, "more quickly" if it is the larger. Then, in the table's
// own words, with "higher", "same" or "lower" the whole change against 0.0:
//   0  rising, then falling; the same or higher
//   1  rising, then steady; or rising, then more slowly; higher
//   2  rising at an even rate, or steady halves that add up to a rise; higher
//   3  falling or steady, then rising; or rising, then more quickly; higher
//   4  steady: the same (also whenever the whole rounds to 0.0 without a turn)
//   5  falling, then rising; the same or lower
//   6  falling, then steady; or falling, then more slowly; lower
//   7  falling at an even rate, or steady halves that add up to a fall; lower
//   8  steady or rising, then falling; or falling, then more quickly; lower
// Without the middle point (a gap in the log) there is no characteristic.
class PressureCharacteristic
{
    Q_DECLARE_TR_FUNCTIONS(PressureCharacteristic)

public:
    // How the trace was read; each shape belongs to one code, given the whole change.
    enum Shape {
        Steady,
        RisingThenFalling,
        FallingThenRising,
        RisingThenSteady,
        FallingThenSteady,
        SteadyThenRising,
        SteadyThenFalling,
        RisingMoreSlowly,
        Rising,
        RisingMoreQuickly,
        FallingMoreSlowly,
        Falling,
        FallingMoreQuickly,
    };

    struct Reading
    {
        int code = 4;
        Shape shape = Steady;
    };

    // Tenths of a hPa by which two halves must differ to count as a change of rate.
    static constexpr long RateChange = 5;

    static std::optional<Reading> read(const ThreeHourPoints& points);
    static Shape shapeOf(long firstHalf, long secondHalf, long whole);
    static int codeOf(Shape shape, long whole);
    // "characteristic 8: falling, then falling more quickly", in the current language.
    static QString text(const Reading& reading);
    static QString shapeText(Shape shape);
};
