// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSource.h"

#include "nmea/NmeaReceiver.h"
#include "nmea/ReadingSink.h"
#include "util/Pressure.h"

#include <QtCore/QDebug>
#include <QtCore/QTimer>

std::atomic<int> NmeaSource::retryInterval{10000};

NmeaSource::NmeaSource(NmeaReceiver* receiver)
    : QObject(receiver)
    , receiver(receiver)
{
}

NmeaSource::~NmeaSource()
{
    withdrawPressure();
    qWarning().noquote() << "nmea source deleted:" << static_cast<int>(sourceType);
}

void NmeaSource::stopReceiving()
{
}

void NmeaSource::withdrawPressure()
{
    if (ReadingSink* sink = ReadingSink::installed())
        sink->setCurrentPressure(Pressure::None, sourceType);
}

bool NmeaSource::myWrite(const QString& message)
{
    Q_UNUSED(message)
    return false;
}

bool NmeaSource::writeTo(QIODevice* device, const QString& message)
{
    if (!device || message.isEmpty())
        return false;
    return device->write(message.toUtf8()) > 0;
}

void NmeaSource::slot_startReceiving()
{
}

void NmeaSource::reconnect()
{
    reconnecting = true;
    slot_startReceiving();
}

void NmeaSource::slot_sendMessage(const QString& message)
{
    if (message.isEmpty())
        return;
    myWrite(message + QStringLiteral("\r\n"));
}

bool NmeaSource::checkMessage(QString& message)
{
    int start = message.indexOf(QLatin1Char('$'));
    if (start < 0)
        start = message.indexOf(QLatin1Char('!'));
    if (start < 0)
        return false;
    if (start > 0)
        message.remove(0, start);
    return true;
}

QStringList NmeaSource::splitLines(const QString& text)
{
    QStringList lines;
    const QChar* data = text.constData();
    const int size = text.size();
    int start = 0;
    for (int i = 0; i < size; ++i) {
        if (isLineEnd(data[i])) {
            if (i > start)
                lines.append(text.mid(start, i - start));
            start = i + 1;
        }
    }
    if (size > start)
        lines.append(start == 0 ? text : text.mid(start));
    return lines;
}

QStringList NmeaSource::takeCompleteLines(QString& buffer)
{
    QStringList lines = splitLines(buffer);
    if (lines.isEmpty())
        return lines;
    if (isLineEnd(buffer.back()))
        buffer.clear();
    else
        buffer = lines.takeLast();
    return lines;
}

void NmeaSource::scheduleReconnect(int ms)
{
    QTimer::singleShot(ms, this, &NmeaSource::reconnect);
}

namespace {

template<typename Text>
bool dropOldest(Text& buffer)
{
    if (buffer.size() <= NmeaSource::MaxUnfinishedLine)
        return false;
    buffer.remove(0, buffer.size() - NmeaSource::MaxUnfinishedLine);
    return true;
}

} // namespace

void NmeaSource::boundUnfinished(QString& buffer)
{
    noteOverflow(dropOldest(buffer));
}

void NmeaSource::boundUnfinished(QByteArray& buffer)
{
    noteOverflow(dropOldest(buffer));
}

void NmeaSource::noteOverflow(bool dropped)
{
    if (dropped && !overflowing)
        qWarning().noquote() << "unfinished line too long, oldest bytes dropped, source" << static_cast<int>(sourceType);
    overflowing = dropped;
}

bool NmeaSource::handOn(const QString& line)
{
    const QByteArray sentence = line.toUtf8();
    NmeaMessageType type = Mda;
    if (!receiver->checkMessage(sentence, &type))
        return false;
    receiver->decode(sentence, type, sourceType);
    receiver->noteSentence(sourceType);
    return true;
}

ConnectionStatus NmeaSource::statusIn(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason,
                                      const QString& errorText)
{
    ConnectionStatus status;
    status.phase = phase;
    status.reason = reason;
    status.errorText = errorText;
    return status;
}

void NmeaSource::publish(ConnectionStatus status)
{
    status.channel = static_cast<ConnectionStatus::Channel>(sourceType);
    if (status.phase == ConnectionStatus::Retrying && status.milliseconds == 0)
        status.milliseconds = retryIntervalMs();
    receiver->publishStatus(status);
}
