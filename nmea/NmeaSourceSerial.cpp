// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSourceSerial.h"

#include "nmea/CalibrationLink.h"

#include <QtCore/QDebug>

namespace {

// The entry at a page's index into one of the port's lists; any index outside the list
// gives its first entry.
template <typename Setting, int Count>
Setting pick(const Setting (&choices)[Count], int index)
{
    return index >= 0 && index < Count ? choices[index] : choices[0];
}

} // namespace

NmeaSourceSerial::NmeaSourceSerial(NmeaReceiver* receiver, const QString& portName, const int& baudRate,
                                   const int& flowControl, const int& parity, const int& nbBits, const int& stopBit)
    : NmeaSource(receiver)
    , portName(portName)
    , baudRate(baudRate)
    , parity(parity)
    , nbBits(nbBits)
    , stopBit(stopBit)
    , flowControl(flowControl)
{
    sourceType = Serial;
    readWrite = true;
    // Commands in and answers out, by whatever the application installed; every serial
    // source of every receiver is linked here as it is made.
    if (CalibrationLink* link = CalibrationLink::installed())
        link->connectCalibration(*this);
}

NmeaSourceSerial::~NmeaSourceSerial()
{
    stopReceiving();
    qWarning().noquote() << "NmeaSourceSerial deleted" << portName;
}

QSerialPort::FlowControl NmeaSourceSerial::flowControlFor(int index)
{
    return pick({QSerialPort::NoFlowControl, QSerialPort::HardwareControl, QSerialPort::SoftwareControl}, index);
}

QSerialPort::Parity NmeaSourceSerial::parityFor(int index)
{
    return pick({QSerialPort::NoParity, QSerialPort::EvenParity, QSerialPort::OddParity, QSerialPort::SpaceParity,
                 QSerialPort::MarkParity},
                index);
}

QSerialPort::DataBits NmeaSourceSerial::dataBitsFor(int index)
{
    return pick({QSerialPort::Data8, QSerialPort::Data7, QSerialPort::Data6, QSerialPort::Data5}, index);
}

QSerialPort::StopBits NmeaSourceSerial::stopBitsFor(int index)
{
    return pick({QSerialPort::OneStop, QSerialPort::OneAndHalfStop, QSerialPort::TwoStop}, index);
}

bool NmeaSourceSerial::myWrite(const QString& message)
{
    return writeTo(serial, message);
}

void NmeaSourceSerial::slot_startReceiving()
{
    stopReceiving();
    delete serial;
    serial = nullptr;

    serial = new QSerialPort(this);
    // A name that is a path (a pseudo-terminal, a link to one) is opened as it stands.
    serial->setPortName(portName);
    serial->setBaudRate(baudRate, QSerialPort::AllDirections);
    serial->setFlowControl(flowControlFor(flowControl));
    serial->setParity(parityFor(parity));
    serial->setDataBits(dataBitsFor(nbBits));
    serial->setStopBits(stopBitsFor(stopBit));

    publishPhase(ConnectionStatus::Opening);
    if (!serial->open(readWrite ? QIODevice::ReadWrite : QIODevice::ReadOnly)) {
        // Unlike the network sources this one never gives up, so that a device plugged in
        // later is found.
        qWarning().noquote() << "error opening serial port" << serial->errorString();
        publishPhase(ConnectionStatus::Retrying, ConnectionStatus::reasonFor(serial->error()), serial->errorString());
        scheduleReconnect();
        delete serial;
        serial = nullptr;
        return;
    }

    // Data terminal ready goes on before errors are watched: a line without modem control
    // (a pseudo-terminal, some adapters) refuses it, and that refusal is no fault of the
    // link.
    serial->setDataTerminalReady(true);
    connect(serial, &QSerialPort::errorOccurred, this, &NmeaSourceSerial::slot_errorOccured);
    skipCount = 0;
    qWarning().noquote() << portName << "opened successfully";
    connected = true;
    reconnecting = false;
    connect(serial, &QSerialPort::readyRead, this, &NmeaSourceSerial::slot_readyRead, Qt::UniqueConnection);
    qWarning().noquote() << "serial port started" << portName << baudRate;
    publishPhase(ConnectionStatus::Open);
}

void NmeaSourceSerial::publishPhase(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason,
                                    const QString& errorText)
{
    ConnectionStatus status = statusIn(phase, reason, errorText);
    status.where = portName;
    // What the port was set to, from this source's own key, not the page's speed box.
    status.number = serial ? static_cast<int>(serial->baudRate()) : baudRate;
    publish(status);
}

void NmeaSourceSerial::slot_readyRead()
{
    if (!serial)
        return;
    const QByteArray block = serial->readAll();

    // The first two blocks after construction are thrown away, whatever their size; a
    // reconnect skips nothing.
    if (skipStart) {
        const bool seenOne = skipCount > 0;
        ++skipCount;
        if (seenOne)
            skipStart = false;
        return;
    }

    buffer.append(block);
    if (buffer.isEmpty())
        return;

    int nul = buffer.indexOf('\0');
    QStringList lines = splitLines(QString::fromUtf8(buffer.constData(), nul >= 0 ? nul : buffer.size()));
    // With nothing ahead of a NUL, the NUL would hold back every later byte for good; a
    // UART reports a break, as when the device is plugged in, as such a byte. It goes,
    // with whatever stands before it, and the rest is read.
    while (lines.isEmpty() && nul >= 0) {
        buffer.remove(0, nul + 1);
        nul = buffer.indexOf('\0');
        lines = splitLines(QString::fromUtf8(buffer.constData(), nul >= 0 ? nul : buffer.size()));
    }
    if (lines.isEmpty()) {
        boundUnfinished(buffer);
        return;
    }
    if (isLineEnd(QLatin1Char(buffer.back())))
        buffer.clear();
    else
        buffer = lines.takeLast().toUtf8();
    boundUnfinished(buffer);

    for (const QString& line : qAsConst(lines))
        handleLine(line);
}

void NmeaSourceSerial::handleLine(QString line)
{
    // Line noise ahead of the sentence is stripped here, unlike on the network sources.
    int start = 0;
    while (start < line.size() && line.at(start) != QLatin1Char('$') && line.at(start) != QLatin1Char('!'))
        ++start;
    line.remove(0, start);
    if (line.isEmpty())
        return;

    // Replies of the device are known by their start; their checksums are not looked at.
    if (line.startsWith(QLatin1String("$PWEGB,OK"))) {
        emit calibrationStatus(true);
        return;
    }
    if (line.startsWith(QLatin1String("$PWEGB,ERR"))) {
        emit calibrationStatus(false);
        return;
    }
    if (line.startsWith(QLatin1String("$PWEGB,CAL,"))) {
        emit calibrationValues(line);
        qWarning().noquote() << portName << "Calibration value" << line;
        return;
    }
    if (!handOn(line))
        qWarning().noquote() << "message rejected by NMEA module";
}

void NmeaSourceSerial::slot_errorOccured(QSerialPort::SerialPortError error)
{
    // NoError is how the port reports success; every other value is a lost link.
    if (error == QSerialPort::NoError || !serial)
        return;
    qWarning().noquote() << "error occured on port" << portName << error << serial->errorString();
    publishPhase(ConnectionStatus::Retrying, ConnectionStatus::Lost, serial->errorString());
    // A failing port keeps reporting until it is gone; one report is enough.
    serial->disconnect(this);
    serial->deleteLater();
    serial = nullptr;
    connected = false;
    withdrawPressure();
    scheduleReconnect();
}

void NmeaSourceSerial::stopReceiving()
{
    if (serial) {
        disconnect(serial, &QSerialPort::readyRead, this, &NmeaSourceSerial::slot_readyRead);
        // A port closed on purpose has no errors to report, and one without modem control
        // would report the switch below.
        disconnect(serial, &QSerialPort::errorOccurred, this, &NmeaSourceSerial::slot_errorOccured);
        if (serial->isOpen()) {
            serial->setDataTerminalReady(false);
            serial->close();
            qWarning().noquote() << "serial port closed";
        }
        delete serial;
        serial = nullptr;
    }
    withdrawPressure();
    connected = false;
}
