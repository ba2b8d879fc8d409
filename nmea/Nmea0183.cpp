// SPDX-License-Identifier: GPL-3.0-or-later
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

namespace {

// The sum of computeChecksum as a number: at most the first 99 bytes, up to a NUL, the
// first byte skipped, stopped by "*", CR or LF.
unsigned checksumOf(const QByteArray& sentence)
{
    const char* data = sentence.constData();
    const int length = qMin(sentence.size(), ChecksumScratchSize);
    unsigned sum = 0;
    if (length < 2 || data[0] == '\0')
        return 0;
    for (int i = 1; i < length; ++i) {
        const char c = data[i];
        if (c == '\0' || c == '*' || c == '\r' || c == '\n')
            break;
        sum ^= static_cast<unsigned char>(c);
    }
    return sum;
}

const char HexDigits[] = "0123456789ABCDEF";

// Upper case as QByteArray::toUpper does it for the bytes that can match a hex digit.
char upperAscii(char c)
{
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

bool Nmea0183::validateChecksum(const QByteArray& sentence)
{
    // Sentences without a checksum are taken as they are, on purpose.
    const int lastStar = sentence.lastIndexOf('*');
    if (lastStar < 0)
        return true;
    const unsigned expected = checksumOf(sentence);
    // The digits come from behind the last "*", the sum stops at the first one. Fewer
    // than two digits, or a NUL among them, can never equal the two expected.
    const int first = lastStar + 1;
    if (sentence.size() < first + 2)
        return false;
    const char high = upperAscii(sentence.at(first));
    const char low = upperAscii(sentence.at(first + 1));
    return high == HexDigits[expected >> 4] && low == HexDigits[expected & 0xF];
}

QString Nmea0183::computeChecksum(const QByteArray& sentence)
{
    const unsigned sum = checksumOf(sentence);
    const QChar digits[2] = {QLatin1Char(HexDigits[sum >> 4]), QLatin1Char(HexDigits[sum & 0xF])};
    return QString(digits, 2);
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
            qWarning().noquote() << "message not implemented??" << static_cast<int>(type);
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
