// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaItem.h"
#include "util/Pressure.h"

// XDR, transducer measurements: the value of the last "P" quadruple, whatever the
// transducer is called.
class NmeaItemXDR : public NmeaItem
{
public:
    using NmeaItem::NmeaItem;

    void decode(const QByteArray& sentence, const NmeaSourceType& source) override;
    bool updateData(const NmeaSourceType& source) override;

    double pressure = Pressure::None;
    bool hasPressure = false;
};
