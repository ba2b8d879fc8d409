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

QStringList NmeaItem::splitFields(const QByteArray& sentence)
{
    const int nul = sentence.indexOf('\0');
    const QString text = QString::fromUtf8(sentence.constData(), nul >= 0 ? nul : sentence.size());
    const int star = text.indexOf(QLatin1Char('*'));
    return (star >= 0 ? text.left(star) : text).split(QLatin1Char(','), Qt::KeepEmptyParts);
}

double NmeaItem::applyBarRule(double value)
{
    if (value > 0.0 && value < 3.0)
        return value * 1000.0;
    return value;
}
