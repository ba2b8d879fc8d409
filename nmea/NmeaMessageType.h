// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The implemented sentences. The value is also the index into Nmea0183's list of
// identifiers, so the order is fixed.
enum NmeaMessageType {
    Mda = 0,
    Xdr = 1,
    Mmb = 2,
    Rmc = 3,
};
