// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaItem.h"

// MDA, meteorological composite: pressure in inches of mercury (field 1) or bars (field 3).
class NmeaItemMDA : public NmeaItem
{
public:
    using NmeaItem::NmeaItem;

    void decode(const QByteArray& sentence, const NmeaSourceType& source) override;
    bool updateData(const NmeaSourceType& source) override;

    double pressure = 0.0;
};
