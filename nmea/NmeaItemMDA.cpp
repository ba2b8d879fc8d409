// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemMDA.h"

#include <QtCore/QDebug>

void NmeaItemMDA::decode(const QByteArray& sentence, const NmeaSourceType& source)
{
    hasNewData = true;
    QString text;
    Fields fields;
    splitFields(sentence, &text, &fields);
    if (fields.size() < 2) {
        qWarning().noquote() << "MDA wrong message size" << fields.size();
        valid = false;
        return;
    }
    double value = 0.0;
    if (fields.size() < 4) {
        // Inches of mercury to bars.
        valid = decode_Double(fields.at(1), &value);
        pressure = valid ? value / 29.53 : 0.0;
    } else {
        // No fall-back to field 1 when field 3 is empty: that gives no reading.
        valid = decode_Double(fields.at(3), &value);
        pressure = valid ? value : 0.0;
    }
    pressure = applyBarRule(pressure);
    updateData(source);
}

bool NmeaItemMDA::updateData(const NmeaSourceType& source)
{
    return passOnNewPressure(pressure, valid, source);
}
