// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSourceUdp.h"

#include "SourceFixture.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NetworkNamespace.h"

#include <QtNetwork/QUdpSocket>
#include <QtTest/QtTest>

#include <sys/socket.h>

using namespace NmeaTestKit;

class TestNmeaSourceUdp : public QObject
{
    Q_OBJECT

private slots:
    void twoSentencesInOneDatagramGiveTwoDecodes();
    void sentenceSplitOverTwoDatagramsIsJoined();
    void crLfAloneStaysInTheBuffer();
    void emptyDatagramWarns();
    void startWithNothingWaitingWarnsEmpty();
    void backslashSplitsALine();
    void nulCutsTheDatagram();
    void rubbishAheadOfTheDollarDropsTheLine();
    void wrongChecksumAndUnknownAreSilent();
    void portInUseAtFirstBindLeavesTheSourceDead();
    void afterAnErrorBindIsRetriedUntilItWorks();
    void stopWithdrawsThePressure();
    void hostAnyBindsIPv4AndJoinsNoGroup();
    void readingStopsAbove10240Characters();
    void multicastHostBindsAnyAndJoinsTheGroup();

private:
    static QByteArray withSum(const QByteArray& body) { return body + '*' + Nmea0183::computeChecksum(body).toLatin1(); }
    // A source listening on every address at `port`, started.
    static NmeaSourceUdp* startedSource(SourceFixture& fixture, quint16 port)
    {
        auto* source = new NmeaSourceUdp(fixture.receiver.get(), QStringLiteral("0.0.0.0"), port);
        source->slot_startReceiving();
        return source;
    }

    // A source listening on every address at a free port of its own, started.
    struct Link
    {
        void send(const QByteArray& bytes) const { sendDatagram(bytes, port); }

        SourceFixture fixture;
        const quint16 port = freeUdpPort();
        NmeaSourceUdp* const source = startedSource(fixture, port);
    };
};

void TestNmeaSourceUdp::twoSentencesInOneDatagramGiveTwoDecodes()
{
    Link link;
    QVERIFY(link.source->getSocket());
    link.send(withSum("$IIMDA,29.92,I,1.0132,B") + "\r\n" + withSum("$WIMMB,29.92,I,1.0150,B") + "\r\n");
    QTRY_VERIFY(link.fixture.item(Mmb) != nullptr);
    QVERIFY(link.fixture.item(Mda) != nullptr);
    QCOMPARE(link.fixture.b->getCurrentPressure(), 1015.0);
    QVERIFY(link.source->getBuffer().isEmpty());
}

void TestNmeaSourceUdp::sentenceSplitOverTwoDatagramsIsJoined()
{
    Link link;
    link.send("$IIMDA,29.92,I,1.01");
    QTRY_COMPARE(link.source->getBuffer(), QStringLiteral("$IIMDA,29.92,I,1.01"));
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    link.send("32,B\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1013.2);
    QVERIFY(link.source->getBuffer().isEmpty());
}

void TestNmeaSourceUdp::crLfAloneStaysInTheBuffer()
{
    Link link;
    link.send("\r\n");
    QTRY_COMPARE(link.source->getBuffer(), QStringLiteral("\r\n"));
    link.send("$IIMDA,29.53\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1000.0);
    QVERIFY(link.source->getBuffer().isEmpty());
}

void TestNmeaSourceUdp::emptyDatagramWarns()
{
    Link link;
    MessageLog log;
    link.send(QByteArray());
    QTRY_COMPARE(log.count(QStringLiteral("empty datagram data received")), 1);
}

void TestNmeaSourceUdp::startWithNothingWaitingWarnsEmpty()
{
    SourceFixture fixture;
    MessageLog log;
    const quint16 port = freeUdpPort();
    auto* source = startedSource(fixture, port);
    QCOMPARE(log.count(QStringLiteral("empty datagram data received")), 1);
    QCOMPARE(log.count(QStringLiteral("udp source activated 0.0.0.0 %1").arg(port)), 1);
    QVERIFY(source->isConnected());
    QVERIFY(!source->isReconnecting());
}

void TestNmeaSourceUdp::backslashSplitsALine()
{
    Link link;
    link.send("$IIMDA,29.53\\$WIXDR,P,1.0200,B,Baro\r\n");
    QTRY_VERIFY(link.fixture.item(Xdr) != nullptr);
    QVERIFY(link.fixture.item(Mda) != nullptr);
    QCOMPARE(link.fixture.b->getCurrentPressure(), 1020.0);
}

void TestNmeaSourceUdp::nulCutsTheDatagram()
{
    Link link;
    link.send(QByteArray("$IIMDA,29.53\r\n\0$WIXDR,P,1.0500,B,Baro\r\n", 39));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1000.0);
    QTest::qWait(50);
    QCOMPARE(link.fixture.item(Xdr), nullptr);
}

void TestNmeaSourceUdp::rubbishAheadOfTheDollarDropsTheLine()
{
    Link link;
    link.send("xx$IIMDA,29.53\r\n$WIXDR,P,1.0200,B,Baro\r\n");
    QTRY_VERIFY(link.fixture.item(Xdr) != nullptr);
    QCOMPARE(link.fixture.item(Mda), nullptr);
}

void TestNmeaSourceUdp::wrongChecksumAndUnknownAreSilent()
{
    Link link;
    MessageLog log;
    link.send("$IIMDA,29.92,I,1.0132,B*00\r\n$GPGGA,1,2,3\r\n!AIVDM,1\r\n$WIXDR,P,1.0200,B,Baro\r\n");
    QTRY_VERIFY(link.fixture.item(Xdr) != nullptr);
    QCOMPARE(link.fixture.item(Mda), nullptr);
    QVERIFY(log.messages().isEmpty());
}

void TestNmeaSourceUdp::portInUseAtFirstBindLeavesTheSourceDead()
{
    FastTimers fast(100, 100);
    SourceFixture fixture;
    const quint16 port = freeUdpPort();
    QUdpSocket blocker;
    QVERIFY(blocker.bind(QHostAddress(QHostAddress::Any), port, QAbstractSocket::DontShareAddress));
    MessageLog log;
    auto* source = startedSource(fixture, port);
    QCOMPARE(source->getSocket(), nullptr);
    QVERIFY(!source->isConnected());
    blocker.close();
    QTest::qWait(500);
    // Silent and dead: no retry even once the port is free again.
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.messages().join(QLatin1Char('|'))));
    QCOMPARE(source->getSocket(), nullptr);
    sendDatagram("$IIMDA,29.53\r\n", port);
    QTest::qWait(100);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

void TestNmeaSourceUdp::afterAnErrorBindIsRetriedUntilItWorks()
{
    FastTimers fast(200, 100);
    Link link;
    link.send("$IIMDA,29.53\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1000.0);

    MessageLog log;
    QUdpSocket blocker;
    // The error of a running socket; the port is then taken by somebody who will not share.
    link.source->slot_udpError(QAbstractSocket::NetworkError);
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    QVERIFY(link.source->isReconnecting());
    QCOMPARE(log.count(QStringLiteral("udp socket error")), 1);
    QVERIFY(blocker.bind(QHostAddress(QHostAddress::Any), link.port, QAbstractSocket::DontShareAddress));
    QTRY_VERIFY_WITH_TIMEOUT(log.count(QStringLiteral("trying to reconnect to udp")) >= 3, 3000);
    blocker.close();
    QTRY_COMPARE_WITH_TIMEOUT(log.count(QStringLiteral("udp source activated")), 1, 3000);
    QVERIFY(!link.source->isReconnecting());
    link.send("$IIMDA,29.92,I,1.0100,B\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1010.0);
}

void TestNmeaSourceUdp::stopWithdrawsThePressure()
{
    Link link;
    link.send("$IIMDA,29.53\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1000.0);
    link.source->stopReceiving();
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    QCOMPARE(link.source->getSocket(), nullptr);
    QVERIFY(!link.source->isConnected());
}

void TestNmeaSourceUdp::hostAnyBindsIPv4AndJoinsNoGroup()
{
    SourceFixture fixture;
    MessageLog log;
    const quint16 port = freeUdpPort();
    auto* source = new NmeaSourceUdp(fixture.receiver.get(), QStringLiteral("ANY"), port);
    source->slot_startReceiving();
    QVERIFY(source->getSocket());
    QCOMPARE(source->getSocket()->localAddress(), QHostAddress(QHostAddress::AnyIPv4));
    QCOMPARE(log.count(QStringLiteral("multicast")), 0);
    sendDatagram("$IIMDA,29.53\r\n", port);
    QTRY_COMPARE(fixture.b->getCurrentPressure(), 1000.0);
}

void TestNmeaSourceUdp::readingStopsAbove10240Characters()
{
    Link link;
    // Stop the source reading by itself, queue more than the limit, then read once.
    disconnect(link.source->getSocket(), nullptr, link.source, nullptr);
    const QByteArray chunk(6000, 'x');
    link.send(chunk);
    link.send(chunk);
    link.send(chunk);
    QTRY_VERIFY(link.source->getSocket()->hasPendingDatagrams());
    QTest::qWait(50);
    link.source->slot_readPendingDatagrams();
    // Two datagrams pass the limit; the third waits in the socket.
    QCOMPARE(link.source->getBuffer().size(), 12000);
    QVERIFY(link.source->getSocket()->hasPendingDatagrams());
    link.source->slot_readPendingDatagrams();
    QCOMPARE(link.source->getBuffer().size(), 18000);
}

void TestNmeaSourceUdp::multicastHostBindsAnyAndJoinsTheGroup()
{
    // Joining a group is announced on the network, so this runs in a private namespace.
    BRINHOLT_IN_PRIVATE_NETWORK(QString());

    SourceFixture fixture;
    MessageLog log;
    const quint16 port = freeUdpPort();
    auto* source = new NmeaSourceUdp(fixture.receiver.get(), QStringLiteral("239.1.1.1"), port);
    source->slot_startReceiving();
    QUdpSocket* socket = source->getSocket();
    QVERIFY(socket);
    QCOMPARE(socket->localAddress(), QHostAddress(QHostAddress::Any));

    // Here both share flags come down to SO_REUSEADDR, which only a shared bind sets; a
    // second socket may then share the port.
    int reuse = 0;
    socklen_t size = sizeof(reuse);
    QCOMPARE(getsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_REUSEADDR, &reuse, &size), 0);
    QVERIFY(reuse != 0);
    {
        QUdpSocket sharer;
        QVERIFY(sharer.bind(QHostAddress(QHostAddress::Any), port, QAbstractSocket::ShareAddress));
    }

    // The join is tried once. Qt 5 refuses an IPv4 group on a socket bound to every address
    // of both protocols, and the source goes on all the same.
    QCOMPARE(log.count(QStringLiteral("unable to join multicast group 239.1.1.1")), 1);
    QCOMPARE(log.count(QStringLiteral("joined to multicast group ok!")), 0);
    QVERIFY(source->isConnected());
    QCOMPARE(log.count(QStringLiteral("udp source activated 239.1.1.1")), 1);
    sendDatagram("$IIMDA,29.53\r\n", port);
    QTRY_COMPARE(fixture.b->getCurrentPressure(), 1000.0);
}

QTEST_MAIN(TestNmeaSourceUdp)
#include "tst_nmeasourceudp.moc"
