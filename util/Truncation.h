// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <limits>

// Truncation of a double towards zero into an integer type. A plain cast of NaN or of a
// value out of range is undefined; this gives the lowest value of the type instead, as the
// processor's own truncation does.
class Truncation
{
public:
    Truncation() = delete;

    template <typename Int>
    static Int towardZero(double value)
    {
        constexpr double low = static_cast<double>(std::numeric_limits<Int>::min());
        constexpr double high = -low; // one past the highest value, exactly representable
        if (!(value >= low && value < high))
            return std::numeric_limits<Int>::min();
        return static_cast<Int>(value);
    }
};
