// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSource.h"

#include <QtCore/QByteArray>
#include <QtSerialPort/QSerialPort>

// Reads sentences from a serial port, above all from the USB pressure device, and is the
// one source that also writes: the $PWEGB calibration dialogue runs through it.
class NmeaSourceSerial : public NmeaSource
{
    Q_OBJECT

public:
    NmeaSourceSerial(NmeaReceiver* receiver, const QString& portName, const int& baudRate, const int& flowControl,
                     const int& parity, const int& nbBits, const int& stopBit);
    ~NmeaSourceSerial() override;

    void stopReceiving() override;
    bool myWrite(const QString& message) override;

    // The port settings as the Connections page stores them, as QSerialPort values.
    static QSerialPort::FlowControl flowControlFor(int index);
    static QSerialPort::Parity parityFor(int index);
    static QSerialPort::DataBits dataBitsFor(int index);
    static QSerialPort::StopBits stopBitsFor(int index);

    QSerialPort* getSerial() const { return serial; }
    QString getPortName() const { return portName; }
    int getBaudRate() const { return baudRate; }
    QByteArray getBuffer() const { return buffer; }
    bool isSkipStart() const { return skipStart; }
    int getSkipCount() const { return skipCount; }

signals:
    void calibrationStatus(bool ok);
    void calibrationValues(QString message);

public slots:
    void slot_startReceiving() override;
    void slot_readyRead();
    void slot_errorOccured(QSerialPort::SerialPortError error);

private:
    void handleLine(QString line);
    // The port's status in `phase`, with its name and the speed it is set to.
    void publishPhase(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason = ConnectionStatus::NoReason,
                      const QString& errorText = QString());

    QSerialPort* serial = nullptr;
    QString portName;
    int baudRate;
    int parity;
    int nbBits;
    int stopBit;
    int flowControl;
    QByteArray buffer;
    bool skipStart = true;
    int skipCount = 0;
};
