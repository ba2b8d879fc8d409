#include "nmea/NmeaItemXDR.h"

#include "app/BackEnd.h"

NmeaItemXDR::NmeaItemXDR(const NmeaMessageType& messageType)
    : NmeaItem(messageType)
{
}

void NmeaItemXDR::decode(const QByteArray& sentence, const NmeaSourceType& source)
{
    hasNewData = true;
    QStringList fields = splitFields(sentence);
    valid = false;
    fields.removeFirst();
    // A misaligned sentence loses fields from the front, not from the back.
    const int misaligned = fields.size() % 4;
    fields.erase(fields.begin(), fields.begin() + misaligned);
    for (int i = 0; i + 4 <= fields.size(); i += 4) {
        const QString& type = fields.at(i);
        const QString& value = fields.at(i + 1);
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
        pressure = -2000.0;
        return false;
    }
    if (!hasNewData)
        return false;
    hasNewData = false;
    if (!valid)
        return false;
    backend->setCurrentPressure(pressure, source);
    return true;
}
