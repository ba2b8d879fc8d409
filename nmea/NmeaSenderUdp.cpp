// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSenderUdp.h"

#include "nmea/Nmea0183.h"
#include "util/Clock.h"
#include "util/Truncation.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkAddressEntry>
#include <QtNetwork/QNetworkInterface>
#include <QtNetwork/QUdpSocket>

#include <cmath>

std::atomic<int> NmeaSenderUdp::restartDelay{5000};

namespace {

// Degrees and thousandths of a minute, "%1%2.%3", from the magnitude of a coordinate.
// There is no carry: a value just below the next degree is written with 60 minutes.
QString angleText(double coordinate, int degreeDigits)
{
    const double magnitude = std::fabs(coordinate);
    const double degrees = std::floor(magnitude);
    const qint64 thousandths = Truncation::towardZero<qint64>(std::floor((magnitude - degrees) * 60000.0 + 0.5));
    return QStringLiteral("%1%2.%3")
            .arg(Truncation::towardZero<qint64>(degrees), degreeDigits, 10, QLatin1Char('0'))
            .arg(thousandths / 1000, 2, 10, QLatin1Char('0'))
            .arg(thousandths % 1000, 3, 10, QLatin1Char('0'));
}

QDateTime nowUtc()
{
    return QDateTime::fromSecsSinceEpoch(Clock::currentSecsSinceEpoch(), Qt::UTC);
}

} // namespace

NmeaSenderUdp::NmeaSenderUdp()
    : QObject(nullptr)
{
    slot_restart();
}

NmeaSenderUdp::~NmeaSenderUdp() = default;

void NmeaSenderUdp::slot_restart()
{
    broadcastAddresses.clear();
    const auto interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& interface : interfaces) {
        const QNetworkInterface::InterfaceFlags flags = interface.flags();
        if (flags.testFlag(QNetworkInterface::IsLoopBack) || !flags.testFlag(QNetworkInterface::CanBroadcast)
            || !flags.testFlag(QNetworkInterface::IsUp) || !flags.testFlag(QNetworkInterface::IsRunning)
            || !interface.isValid())
            continue;
        // An IPv6 entry has no broadcast address: the null address stands in, once, and a
        // send to it fails. It stays in the set on purpose.
        const auto entries = interface.addressEntries();
        for (const QNetworkAddressEntry& entry : entries)
            broadcastAddresses.insert(entry.broadcast());
    }
    // Reached only without a socket: at construction, or after a failed send deleted it.
    socket = new QUdpSocket(this);
    emit broadcastAddressesChanged();
}

bool NmeaSenderUdp::sendPressure(const double& pressure, const int& port)
{
    if (!socket) {
        qWarning().noquote() << "no udp socket (pressure)";
        return false;
    }
    const QString text = QStringLiteral("$GPXDR,P,%1,B,Barometer").arg(pressure / 1000.0, 0, 'f', 5);
    const QString sentence = text + QLatin1Char('*') + computeChecksum(text.toUtf8());
    return send(sentence, port, "error in send pressure");
}

bool NmeaSenderUdp::sendPosition(const QPointF& position, const double& sog, const double& cog, const int& port)
{
    if (!socket) {
        qWarning().noquote() << "no udp socket (position)";
        return false;
    }
    return send(positionNmeaRMC(position, sog, cog), port, "error in send position");
}

QString NmeaSenderUdp::pressureNmeaMDA(const double& pressure)
{
    // The formatting routines keep their own unit factors; this is the inches one.
    constexpr double InHgPerHpa = 0.029529983071445;
    const QString text = QStringLiteral("$WIMDA,%1,I,%2,B,,,,,,,,,,,,,,,,")
                                 .arg(pressure * InHgPerHpa, 0, 'f', 4)
                                 .arg(pressure / 1000.0, 0, 'f', 5);
    return text + QLatin1Char('*') + computeChecksum(text.toUtf8());
}

bool NmeaSenderUdp::sendPressureMda(const double& pressure, const int& port)
{
    if (!socket) {
        qWarning().noquote() << "no udp socket (mda)";
        return false;
    }
    return send(pressureNmeaMDA(pressure), port, "error in send mda");
}

QString NmeaSenderUdp::alarmNmeaALR(const qint64& changedAt, const int& level, const bool& acknowledged)
{
    // One alarm number for the pressure fall; the text tells the level. Plain ASCII in
    // capitals, as the receiving displays expect, and short of the sentence's 82 bytes.
    static const char* const texts[] = {"PRESSURE FALL ENDED", "PRESSURE FALLING QUICKLY",
                                        "PRESSURE FALLING VERY RAPIDLY"};
    const int index = qBound(0, level, 2);
    const QString text = QStringLiteral("$WIALR,%1,001,%2,%3,%4")
                                 .arg(QDateTime::fromSecsSinceEpoch(changedAt, Qt::UTC)
                                              .toString(QStringLiteral("hhmmss.00")))
                                 .arg(index == 0 ? QLatin1Char('V') : QLatin1Char('A'))
                                 .arg(acknowledged ? QLatin1Char('A') : QLatin1Char('V'))
                                 .arg(QLatin1String(texts[index]));
    return text + QLatin1Char('*') + computeChecksum(text.toUtf8());
}

bool NmeaSenderUdp::sendAlarm(const qint64& changedAt, const int& level, const bool& acknowledged, const int& port)
{
    if (!socket) {
        qWarning().noquote() << "no udp socket (alarm)";
        return false;
    }
    return send(alarmNmeaALR(changedAt, level, acknowledged), port, "error in send alarm");
}

bool NmeaSenderUdp::send(const QString& sentence, const int& port, const char* failed)
{
    const QByteArray datagram = (sentence + QStringLiteral("\r\n")).toUtf8();
    qint32 total = 0;
    const QSet<QHostAddress> addresses = broadcastAddresses;
    for (const QHostAddress& address : addresses) {
        // The null address that an IPv6 entry leaves in the set is a failed datagram. It is
        // not handed to Qt, which on Linux would take it for 0.0.0.0 and deliver a second
        // copy to this very host.
        if (address.isNull()) {
            total += -1;
            continue;
        }
        total += static_cast<qint32>(socket->writeDatagram(datagram, address, static_cast<quint16>(port)));
    }
    lastTotal = total;
    // Good as soon as anything went out, even if some addresses failed.
    if (total > 0)
        return true;
    qWarning().noquote() << failed << socket->errorString();
    delete socket;
    socket = nullptr;
    QTimer::singleShot(restartDelayMs(), this, &NmeaSenderUdp::slot_restart);
    return false;
}

QString NmeaSenderUdp::positionNmeaRMC(const QPointF& position, const double& sog, const double& cog)
{
    // The clock is read twice, once for the time and once for the date.
    const QString time = nowUtc().toString(QStringLiteral("hhmmss")) + QStringLiteral(".00");
    const QString latitude = angleText(position.y(), 2);
    const QString longitude = angleText(position.x(), 3);
    const QString date = nowUtc().toString(QStringLiteral("ddMMyy"));
    const QString text = QStringLiteral("$ECRMC,%1,%2,%3,%4,%5,%6,%7,%8,%9,,,")
                                 .arg(time, QStringLiteral("A"), latitude,
                                      position.y() < 0.0 ? QStringLiteral("S") : QStringLiteral("N"), longitude,
                                      position.x() < 0.0 ? QStringLiteral("W") : QStringLiteral("E"),
                                      QString::number(sog, 'f', 2), QString::number(cog, 'f', 2), date);
    return text + QLatin1Char('*') + computeChecksum(text.toUtf8());
}

QString NmeaSenderUdp::computeChecksum(const QByteArray& sentence)
{
    // The same routine as the reader's, step by step.
    return Nmea0183::computeChecksum(sentence);
}
