// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <optional>

// What a three-hour tendency is read from: the raw pressure three hours ago, half way (an
// hour and a half ago) and now, in hPa. Half way may be missing where the log has a gap.
struct ThreeHourPoints
{
    double start = 0.0;
    std::optional<double> middle;
    double end = 0.0;

    // Every bound of the tendency is a whole number of tenths of a hectopascal, so a change
    // is rounded to tenths before it is judged: half away from zero, the same both ways.
    static long tenths(double hPa) { return std::lround(hPa * 10.0); }

    long change() const { return tenths(end - start); }
    std::optional<long> firstHalf() const
    {
        return middle ? std::optional<long>(tenths(*middle - start)) : std::nullopt;
    }
    std::optional<long> secondHalf() const
    {
        return middle ? std::optional<long>(tenths(end - *middle)) : std::nullopt;
    }
};
