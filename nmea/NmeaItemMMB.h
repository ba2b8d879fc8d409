// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaItem.h"
#include "util/Pressure.h"

// MMB, barometer: pressure in bars (field 3) or inches of mercury (field 1).
class NmeaItemMMB : public NmeaItem
{
public:
    using NmeaItem::NmeaItem;

    void decode(const QByteArray& sentence, const NmeaSourceType& source) override;
    bool updateData(const NmeaSourceType& source) override;

    double pressure = Pressure::None;
    bool hasPressure = false;
};
