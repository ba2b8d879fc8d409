// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaReceiver.h"

#include "nmea/Nmea0183.h"
#include "nmea/NmeaSenderUdp.h"
#include "nmea/NmeaSourceSerial.h"
#include "nmea/NmeaSourceTcp.h"
#include "nmea/NmeaSourceUdp.h"
#include "nmea/ReceiverHost.h"
#include "nmea/SentenceTimes.h"
#include "util/Clock.h"
#include "util/SanitizerSync.h"
#include "util/SettingKeys.h"

#include <QtCore/QThread>
#include <QtCore/QTimer>

std::atomic<int> NmeaReceiver::delayBehindSerial{5000};

namespace {

// Orders the main thread's stop request with its run on the worker thread.
const char stopHandOff = 0;

} // namespace

NmeaReceiver::NmeaReceiver()
    : QObject(nullptr)
{
}

NmeaReceiver::~NmeaReceiver()
{
    if (timerSend) {
        timerSend->stop();
        delete timerSend;
        timerSend = nullptr;
    }
    delete sender;
    sender = nullptr;
    qDeleteAll(sources);
    sources.clear();
}

void NmeaReceiver::startReceiving()
{
    // Queued, so that it runs on the worker thread and the caller returns at once.
    SanitizerSync::release(this);
    QTimer::singleShot(0, this, SLOT(slot_startReceiving()));
}

void NmeaReceiver::quitThread()
{
    if (QThread::currentThread() == thread() || !thread()->isRunning()) {
        stopReceiving();
        emit finished();
        return;
    }
    // The sources live on the worker thread: the stop runs there while this thread waits
    // for it, so that no socket or port is touched from two threads at once. The worker
    // then waits in turn until finished() has been emitted here, because finished() ends
    // its thread, and the end of the thread deletes this object.
    auto handshake = std::make_shared<QuitHandshake>();
    quitHandshake = handshake;
    SanitizerSync::release(&stopHandOff);
    QMetaObject::invokeMethod(this, "slot_stopOnOwnThread", Qt::QueuedConnection);
    handshake->stopped.acquire();
    SanitizerSync::acquire(&stopHandOff);
    emit finished();
    SanitizerSync::release(&stopHandOff);
    handshake->emitted.release();
}

void NmeaReceiver::slot_stopOnOwnThread()
{
    SanitizerSync::acquire(&stopHandOff);
    const std::shared_ptr<QuitHandshake> handshake = quitHandshake;
    stopReceiving();
    SanitizerSync::release(&stopHandOff);
    handshake->stopped.release();
    handshake->emitted.acquire();
    SanitizerSync::acquire(&stopHandOff);
}

void NmeaReceiver::stopReceiving()
{
    if (timerSend) {
        timerSend->stop();
        delete timerSend;
        timerSend = nullptr;
    }
    if (sender) {
        delete sender;
        sender = nullptr;
    }
    for (NmeaSource* source : qAsConst(sources))
        source->stopReceiving();
    for (NmeaSource* source : qAsConst(sources))
        delete source;
    sources.clear();
}

bool NmeaReceiver::checkMessage(const QByteArray& sentence, NmeaMessageType* type)
{
    if (!nmea || !nmea->isMessageImplemented(sentence, type))
        return false;
    return Nmea0183::validateChecksum(sentence);
}

void NmeaReceiver::decode(const QByteArray& sentence, const NmeaMessageType& type, const NmeaSourceType& source)
{
    if (nmea)
        nmea->decode(sentence, type, source);
}

void NmeaReceiver::noteSentence(NmeaSourceType source)
{
    if (sentenceTimes)
        sentenceTimes->stamp(source, Clock::monotonicMs());
}

void NmeaReceiver::publishStatus(ConnectionStatus status)
{
    status.sinceMs = Clock::monotonicMs();
    // The copy the queued call makes here is read on the board's thread, after a hand-off
    // through Qt's event queue that the thread sanitizer cannot see.
    SanitizerSync::release(&NmeaReceiver::staticMetaObject);
    emit statusChanged(status);
}

void NmeaReceiver::publishOutput()
{
    // The null address that stands in for IPv6 entries receives nothing: it is not counted.
    int count = 0;
    const QSet<QHostAddress> addresses = sender->getBroadcastAddresses();
    for (const QHostAddress& address : addresses)
        count += address.isNull() ? 0 : 1;
    ConnectionStatus status;
    status.channel = ConnectionStatus::UdpOutput;
    status.phase = ConnectionStatus::Open;
    status.number = count;
    publishStatus(status);
}

void NmeaReceiver::slot_startReceiving()
{
    SanitizerSync::acquire(this);
    int delay = 0;
    nmea = new Nmea0183(this);
    // Without the application there are no connection settings, and so no source.
    ReceiverHost* host = ReceiverHost::installed();
    if (!host)
        return;

    const QString serialSetting = host->getSetting(SettingKey::SerialPort, SettingDefault::SerialPort).toString();
    if (!serialSetting.isEmpty() && host->getSetting(SettingKey::UseSerial, SettingDefault::UseSerial).toInt() == 1
        && serialSetting != QLatin1String("None")) {
        // The setting holds the entry as the port list shows it: port name, a blank and a
        // description.
        // A hand-edited setting of blanks only names no port: the source is made with an
        // empty name, fails to open and retries like any other port that is not there.
        const QString portName = serialSetting.split(QLatin1Char(' '), Qt::SkipEmptyParts).value(0);
        // Deliberately not "SettingSerialSpeed", which is what the Connections page writes.
        const int speed = host->getSetting(SettingKey::SerialPortSpeed, SettingDefault::SerialPortSpeed).toInt();
        const int control = host->getSetting(SettingKey::SerialControl, SettingDefault::SerialControl).toInt();
        const int parity = host->getSetting(SettingKey::SerialParity, SettingDefault::SerialParity).toInt();
        const int nbBits = host->getSetting(SettingKey::SerialNbBits, SettingDefault::SerialNbBits).toInt();
        const int stopBit = host->getSetting(SettingKey::SerialStopBit, SettingDefault::SerialStopBit).toInt();
        auto* serial = new NmeaSourceSerial(this, portName, speed, control, parity, nbBits, stopBit);
        sources.append(serial);
        QTimer::singleShot(0, serial, SLOT(slot_startReceiving()));
        delay = delayBehindSerialMs();
    } else if (host->getSetting(SettingKey::UseSerial, SettingDefault::UseSerial).toInt() == 1) {
        ConnectionStatus status;
        status.phase = ConnectionStatus::NoPort;
        publishStatus(status);
    }

    if (host->getSetting(SettingKey::UseTcp, SettingDefault::UseTcp).toInt() == 1) {
        const int port = host->getSetting(SettingKey::TcpIpPort, SettingDefault::TcpIpPort).toInt();
        const QString address =
                host->getSetting(SettingKey::TcpIpAddress, SettingDefault::TcpIpAddress).toString();
        auto* tcp = new NmeaSourceTcp(this, address, port);
        sources.append(tcp);
        QTimer::singleShot(delay, tcp, SLOT(slot_startReceiving()));
        if (delay > 0)
            publishDelayed(ConnectionStatus::TcpInput, address, port, delay);
    }

    if (host->getSetting(SettingKey::UseUdp, SettingDefault::UseUdp).toInt() == 1) {
        const int port = host->getSetting(SettingKey::UdpPort, SettingDefault::UdpPort).toInt();
        auto* udp = new NmeaSourceUdp(this, QStringLiteral("0.0.0.0"), port);
        sources.append(udp);
        QTimer::singleShot(delay, udp, SLOT(slot_startReceiving()));
        if (delay > 0)
            publishDelayed(ConnectionStatus::UdpInput, QString(), port, delay);
    }

    if (host->getSetting(SettingKey::UseUdpOut, SettingDefault::UseUdpOut).toInt() == 1) {
        timerSend = new QTimer(this);
        timerSend->setInterval(1000);
        connect(timerSend, &QTimer::timeout, this, &NmeaReceiver::slot_sendUdp);
        timerSend->start();
        ConnectionStatus status;
        status.channel = ConnectionStatus::UdpOutput;
        status.phase = ConnectionStatus::Opening;
        publishStatus(status);
    }
}

void NmeaReceiver::publishDelayed(ConnectionStatus::Channel channel, const QString& where, int port, int delayMs)
{
    ConnectionStatus status;
    status.channel = channel;
    status.phase = ConnectionStatus::Delayed;
    status.where = where;
    status.number = port;
    status.milliseconds = delayMs;
    publishStatus(status);
}

void NmeaReceiver::slot_sendUdp()
{
    ReceiverHost* host = ReceiverHost::installed();
    if (!host)
        return;
    if (!sender) {
        sender = new NmeaSenderUdp();
        connect(sender, &NmeaSenderUdp::broadcastAddressesChanged, this, &NmeaReceiver::publishOutput);
        publishOutput();
    }
    const int port = host->getSetting(SettingKey::UpdPort, SettingDefault::UpdPort).toInt();
    // Raw: no offset and no reduction to sea level on this path.
    const double pressure = host->getCurrentPressure();
    if (pressure > 0.0)
        sender->sendPressure(pressure, port);
    if (pressure > 0.0 && host->getSetting(SettingKey::SendUdpMda, SettingDefault::SendUdpMda).toInt() == 1)
        sender->sendPressureMda(pressure, port);
    sendAlarmIfDue(*host, port);
    if (host->getSetting(SettingKey::SendUdpPos, SettingDefault::SendUdpPos).toInt() == 1) {
        const QPointF position = host->getPosition();
        // Exactly zero in both, not QPointF's fuzzy equality.
        if (!(position.x() == 0.0 && position.y() == 0.0)) {
            const std::pair<double, double> cogSog = host->getCogSog();
            // Course where the speed belongs and speed where the course belongs: the
            // sentences of this path have always carried them swapped, and are kept so.
            sender->sendPosition(position, cogSog.first, cogSog.second, port);
        }
    }
}

void NmeaReceiver::sendAlarmIfDue(ReceiverHost& host, int port)
{
    // At each change of the warning, and every 60 ticks while a level holds, so that a
    // display that joins later learns of it.
    const WarningState state = host.getWarningState();
    ++ticksSinceAlr;
    if (state == alrSent && (state.level == 0 || ticksSinceAlr < 60))
        return;
    sender->sendAlarm(state.changedAt, state.level, state.acknowledged, port);
    alrSent = state;
    ticksSinceAlr = 0;
}
