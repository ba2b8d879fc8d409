#include "nmea/Nmea0183.h"

#include "nmea/NmeaItemMDA.h"
#include "nmea/NmeaItemMMB.h"
#include "nmea/NmeaItemRMC.h"
#include "nmea/NmeaItemXDR.h"

#include <QtCore/QDebug>

#include <cstring>

namespace {

// Only this many bytes of a sentence take part in its checksum.
constexpr int ChecksumScratchSize = 99;

} // namespace

Nmea0183::Nmea0183(QObject* parent)
    : QObject(parent)
{
    implementedMessages << QByteArrayLiteral("MDA") << QByteArrayLiteral("XDR")
                        << QByteArrayLiteral("MMB") << QByteArrayLiteral("RMC");
}

Nmea0183::~Nmea0183()
{
    clearItems();
}

bool Nmea0183::isMessageImplemented(const QByteArray& sentence, NmeaMessageType* type)
{
    if (sentence.size() < 6)
        return false;
    if (sentence.at(0) != '$')
        return false;
    // The talker, bytes 1 and 2, means nothing here: "$IIMDA" and "$WIMDA" are one sentence.
    const char* identifier = sentence.constData() + 3;
    for (int i = 0; i < implementedMessages.size(); ++i) {
        if (std::memcmp(identifier, implementedMessages.at(i).constData(), 3) == 0) {
            *type = static_cast<NmeaMessageType>(i);
            return true;
        }
    }
    return false;
}

bool Nmea0183::validateChecksum(const QByteArray& sentence)
{
    // Sentences without a checksum are taken as they are, on purpose.
    const int lastStar = sentence.lastIndexOf('*');
    if (lastStar < 0)
        return true;
    const QString expected = computeChecksum(sentence);
    // The digits come from behind the last "*", the sum stops at the first one.
    QByteArray received = sentence.mid(lastStar + 1).left(2).toUpper();
    const int nul = received.indexOf('\0');
    if (nul >= 0)
        received.truncate(nul);
    return expected == QLatin1String(received);
}

QString Nmea0183::computeChecksum(const QByteArray& sentence)
{
    const int nul = sentence.indexOf('\0');
    const int length = qMin(nul >= 0 ? nul : sentence.size(), ChecksumScratchSize);
    unsigned sum = 0;
    if (length >= 2) {
        const char* data = sentence.constData();
        // The first byte is skipped whatever it is.
        for (int i = 1; i < length; ++i) {
            const char c = data[i];
            if (c == '*' || c == '\r' || c == '\n')
                break;
            sum ^= static_cast<unsigned char>(c);
        }
    }
    return QStringLiteral("%1").arg(sum, 2, 16, QLatin1Char('0')).toUpper();
}

void Nmea0183::decode(const QByteArray& sentence, const NmeaMessageType& type, const NmeaSourceType& source)
{
    NmeaItem* found = items.value(type, nullptr);
    if (!found) {
        switch (static_cast<int>(type)) {
        case Mda:
            found = new NmeaItemMDA(type);
            break;
        case Xdr:
            found = new NmeaItemXDR(type);
            break;
        case Mmb:
            found = new NmeaItemMMB(type);
            break;
        case Rmc:
            found = new NmeaItemRMC(type);
            break;
        default:
            qWarning() << "message not implemented??" << static_cast<int>(type);
            return;
        }
        items.insert(type, found);
    }
    found->decode(sentence, source);
}

void Nmea0183::clearItems()
{
    for (NmeaItem* each : qAsConst(items))
        delete each;
    items.clear();
}

QString Nmea0183::createMessageCalibration(const double& offset, const double& slope, const double& pressure)
{
    return withChecksum(QStringLiteral("$PWEGB,UCAL,%1,%2,%3")
                                .arg(offset, 0, 'f', 2)
                                .arg(slope, 0, 'f', 1)
                                .arg(pressure, 0, 'f', 2));
}

QString Nmea0183::createMessageGetCalibration()
{
    return withChecksum(QStringLiteral("$PWEGB,CAL?"));
}

QString Nmea0183::createMessageResetBarometer()
{
    return withChecksum(QStringLiteral("$PWEGB,FRST"));
}

QString Nmea0183::withChecksum(const QString& text)
{
    return text + QLatin1Char('*') + computeChecksum(text.toUtf8());
}
