// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemXDR.h"

#include "util/Pressure.h"

void NmeaItemXDR::decode(const QByteArray& sentence, const NmeaSourceType& source)
{
    hasNewData = true;
    QString text;
    Fields fields;
    splitFields(sentence, &text, &fields);
    valid = false;
    // Field 0, the head, goes; then a misaligned sentence loses fields from the front, not
    // from the back.
    const int first = 1 + (fields.size() - 1) % 4;
    for (int i = first; i + 4 <= fields.size(); i += 4) {
        const QStringRef& type = fields.at(i);
        const QStringRef& value = fields.at(i + 1);
        if (type == QLatin1String("P") && !value.isEmpty()) {
            decode_Double(value, &pressure);
            valid = true;
            // Pascals to bars.
            if (pressure > 10000.0)
                pressure /= 100000.0;
            hasPressure = true;
        }
    }
    pressure = applyBarRule(pressure);
    updateData(source);
}

bool NmeaItemXDR::updateData(const NmeaSourceType& source)
{
    if (!hasPressure) {
        pressure = Pressure::None;
        return false;
    }
    if (!hasNewData)
        return false;
    return takeNewPressure(pressure, valid, source);
}
