// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItem.h"

#include "nmea/EchoGuard.h"
#include "nmea/ReadingSink.h"

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

// One coordinate in degrees, negative in the hemisphere `negative`; false if the value does
// not convert or the hemisphere is neither of the two.
bool coordinate(const QStringRef& value, const QStringRef& hemisphere, QLatin1String negative,
                QLatin1String positive, double* degrees)
{
    double v = 0.0;
    if (!NmeaItem::decode_Double(value, &v))
        return false;
    *degrees = degreesFromNmea(v);
    if (hemisphere == negative)
        *degrees = -*degrees;
    else if (hemisphere != positive)
        return false;
    return true;
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

    double x = 0.0;
    if (!coordinate(lon, lonHemisphere, QLatin1String("W"), QLatin1String("E"), &x))
        return false;
    position->setX(x);

    double y = 0.0;
    if (!coordinate(lat, latHemisphere, QLatin1String("S"), QLatin1String("N"), &y))
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

bool NmeaItem::passOnNewPressure(double pressure, bool usable, const NmeaSourceType& source)
{
    if (!hasNewData) {
        valid = false;
        return false;
    }
    return takeNewPressure(pressure, usable, source);
}

bool NmeaItem::takeNewPressure(double pressure, bool usable, const NmeaSourceType& source)
{
    hasNewData = false;
    if (!usable)
        return false;
    if (ReadingSink* sink = ReadingSink::installed())
        sink->setCurrentPressure(EchoGuard::filter(pressure, source), source);
    return true;
}

double NmeaItem::applyBarRule(double value)
{
    if (value > 0.0 && value < 3.0)
        return value * 1000.0;
    return value;
}
