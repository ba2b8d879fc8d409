// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItem.h"

#include <cmath>

NmeaItem::NmeaItem(const NmeaMessageType& messageType)
    : messageType(messageType)
{
}

NmeaItem::~NmeaItem() = default;

void NmeaItem::decode(const QByteArray& sentence, const NmeaSourceType& source)
{
    Q_UNUSED(sentence)
    Q_UNUSED(source)
}

bool NmeaItem::updateData(const NmeaSourceType& source)
{
    Q_UNUSED(source)
    return false;
}

bool NmeaItem::decode_Int(const QString& text, int* value)
{
    bool ok = false;
    *value = text.toInt(&ok, 10);
    if (!ok)
        *value = 0;
    return ok;
}

bool NmeaItem::decode_Double(const QString& text, double* value)
{
    return decode_Double(QStringRef(&text), value);
}

bool NmeaItem::decode_Double(const QStringRef& text, double* value)
{
    bool ok = false;
    *value = text.toDouble(&ok);
    if (!ok)
        *value = 0.0;
    return ok;
}

namespace {

// ddmm.mmm or dddmm.mmm to signed degrees: the minutes are read as hundredths of v / 100,
// and dividing by 0.6 turns them into the fraction of a degree.
double degreesFromNmea(double v)
{
    const int d = static_cast<int>(std::floor(v / 100.0));
    return (v / 100.0 - d) / 0.6 + d;
}

} // namespace

bool NmeaItem::decode_Position(const QString& lat, const QString& latHemisphere, const QString& lon,
                               const QString& lonHemisphere, QPointF* position)
{
    return decode_Position(QStringRef(&lat), QStringRef(&latHemisphere), QStringRef(&lon),
                           QStringRef(&lonHemisphere), position);
}

bool NmeaItem::decode_Position(const QStringRef& lat, const QStringRef& latHemisphere, const QStringRef& lon,
                               const QStringRef& lonHemisphere, QPointF* position)
{
    if (lat.isEmpty() || latHemisphere.isEmpty() || lon.isEmpty() || lonHemisphere.isEmpty())
        return false;

    double v = 0.0;
    if (!decode_Double(lon, &v))
        return false;
    double x = degreesFromNmea(v);
    if (lonHemisphere == QLatin1String("W"))
        x = -x;
    else if (lonHemisphere != QLatin1String("E"))
        return false;
    position->setX(x);

    if (!decode_Double(lat, &v))
        return false;
    double y = degreesFromNmea(v);
    if (latHemisphere == QLatin1String("S"))
        y = -y;
    else if (latHemisphere != QLatin1String("N"))
        return false;
    position->setY(y);

    // Exactly on the crossing of equator and prime meridian is how "no position" is said.
    return !(x == 0.0 && y == 0.0);
}

void NmeaItem::splitFields(const QByteArray& sentence, QString* text, Fields* fields)
{
    const int nul = sentence.indexOf('\0');
    *text = QString::fromUtf8(sentence.constData(), nul >= 0 ? nul : sentence.size());
    const QChar* data = text->constData();
    int size = text->size();
    for (int i = 0; i < size; ++i) {
        if (data[i] == QLatin1Char('*')) {
            size = i;
            break;
        }
    }
    fields->clear();
    int start = 0;
    for (int i = 0; i <= size; ++i) {
        if (i == size || data[i] == QLatin1Char(',')) {
            fields->append(QStringRef(text, start, i - start));
            start = i + 1;
        }
    }
}

QStringList NmeaItem::splitFields(const QByteArray& sentence)
{
    QString text;
    Fields views;
    splitFields(sentence, &text, &views);
    QStringList fields;
    for (const QStringRef& field : views)
        fields.append(field.toString());
    return fields;
}

double NmeaItem::applyBarRule(double value)
{
    if (value > 0.0 && value < 3.0)
        return value * 1000.0;
    return value;
}
