// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemMMB.h"

#include <QtCore/QDebug>

namespace {

// Inches of mercury to bars. Not the same conversion as MDA's 29.53; both are kept.
constexpr double InchesOfMercuryToBars = 0.033863886866999995;

} // namespace

void NmeaItemMMB::decode(const QByteArray& sentence, const NmeaSourceType& source)
{
    hasNewData = true;
    QString text;
    Fields fields;
    splitFields(sentence, &text, &fields);
    if (fields.size() != 5) {
        qWarning().noquote() << "MMB wrong message size" << fields.size();
        valid = false;
        return;
    }
    valid = false;
    double value = 0.0;
    if (!fields.at(3).isEmpty()) {
        decode_Double(fields.at(3), &value);
    } else if (!fields.at(1).isEmpty()) {
        decode_Double(fields.at(1), &value);
        value *= InchesOfMercuryToBars;
    } else {
        hasPressure = false;
        return;
    }
    pressure = applyBarRule(value);
    hasPressure = true;
    valid = true;
    updateData(source);
}

bool NmeaItemMMB::updateData(const NmeaSourceType& source)
{
    return passOnNewPressure(pressure, valid && hasPressure, source);
}
