// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemRMC.h"

#include "nmea/ReadingSink.h"

void NmeaItemRMC::decode(const QByteArray& sentence, const NmeaSourceType& source)
{
    hasNewData = true;
    status = QStringLiteral("V");
    position = QPointF(0.0, 0.0);
    // A sentence without a mode field counts as autonomous.
    mode = QStringLiteral("A");
    QString text;
    Fields fields;
    splitFields(sentence, &text, &fields);
    if (fields.size() < 12) {
        valid = false;
        return;
    }
    status = fields.at(2).toString();
    if (!decode_Position(fields.at(3), fields.at(4), fields.at(5), fields.at(6), &position)) {
        valid = false;
        return;
    }
    // Knots and degrees as the sentence gives them.
    decode_Double(fields.at(7), &speed);
    decode_Double(fields.at(8), &course);
    if (fields.size() >= 13 && !fields.at(12).isEmpty())
        mode = fields.at(12).toString();
    valid = true;
    updateData(source);
}

bool NmeaItemRMC::updateData(const NmeaSourceType& source)
{
    if (!hasNewData)
        return false;
    hasNewData = false;
    if (!valid)
        return false;
    ReadingSink* sink = ReadingSink::installed();
    if (status == QLatin1String("V") || mode == QLatin1String("N")) {
        if (sink)
            sink->clearHasFix(source);
        return false;
    }
    if (sink)
        sink->setPositionData(position, speed, course, source);
    return true;
}
