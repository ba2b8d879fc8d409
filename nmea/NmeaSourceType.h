// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where a reading came from. The order is also the priority: the lowest value with a
// usable reading wins, and the arrays of readings are indexed by it.
enum NmeaSourceType {
    Internal = 0,
    Serial = 1,
    Tcp = 2,
    Udp = 3,
};

constexpr int NmeaSourceCount = 4;
