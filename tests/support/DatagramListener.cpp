// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/DatagramListener.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QNetworkDatagram>
#include <QtTest/QTest>

DatagramListener::DatagramListener(quint16 port)
{
    clock.start();
    socket.bind(QHostAddress(QHostAddress::AnyIPv4), port);
    QObject::connect(&socket, &QUdpSocket::readyRead, &socket, [this] { drain(); });
}

void DatagramListener::drain()
{
    while (socket.hasPendingDatagrams()) {
        received.append(socket.receiveDatagram().data());
        times.append(clock.elapsed());
    }
}

QList<QByteArray> DatagramListener::datagrams()
{
    drain();
    return received;
}

QList<qint64> DatagramListener::arrivals()
{
    drain();
    return times;
}

bool DatagramListener::waitFor(int count, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    drain();
    while (received.size() < count && timer.elapsed() < timeoutMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QTest::qSleep(1);
        drain();
    }
    return received.size() >= count;
}

bool DatagramListener::staysQuietFor(int ms)
{
    const int before = datagrams().size();
    QTest::qWait(ms);
    return datagrams().size() == before;
}

void DatagramListener::clear()
{
    drain();
    received.clear();
    times.clear();
}
