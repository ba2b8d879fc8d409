// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/ConnectionStatus.h"

ConnectionStatus::Reason ConnectionStatus::reasonFor(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::PermissionError:
        return PermissionDenied;
    case QSerialPort::DeviceNotFoundError:
        return NoSuchDevice;
    default:
        return Other;
    }
}

ConnectionStatus::Reason ConnectionStatus::reasonFor(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return Refused;
    case QAbstractSocket::HostNotFoundError:
        return HostNotFound;
    case QAbstractSocket::SocketTimeoutError:
        return TimedOut;
    case QAbstractSocket::AddressInUseError:
        return AddressInUse;
    case QAbstractSocket::SocketAccessError:
        return PermissionDenied;
    default:
        return Other;
    }
}
