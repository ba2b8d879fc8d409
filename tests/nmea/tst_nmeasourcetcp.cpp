// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSourceTcp.h"

#include "SourceFixture.h"
#include "tests/support/MessageLog.h"
#include "tests/support/LoopbackTcpServer.h"

#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace NmeaTestKit;

class TestNmeaSourceTcp : public QObject
{
    Q_OBJECT

private slots:
    void zeroPaddedDefaultAddressConnects();
    void sentenceSplitOverTwoSegmentsIsJoined();
    void lineEndingInBackslashIsFinished();
    void nulCutsTheRestOfTheBlock();
    void rubbishAheadOfTheDollarDropsTheLine();
    void serverAbsentAtFirstAttemptGivesUp();
    void serverThatGoesAwayIsRetriedUntilBack();
    void serverThatGoesAwayIsRetriedAfterTenSeconds();
    void eachAttemptBlocksUpToFiveSecondsWhileTheServerIsAway();
    void silentServerGivesNoReconnection();
    void twoErrorsInARowGiveOneRetry();
    void timeOutReconnectsAfterTenMilliseconds();
    void myWriteSendsToTheServer();
    void stopWithdrawsThePressure();
    void twentyMegabytesWithoutLineEndKeepMemoryFlat();

private:
    struct Served : LoopbackTcpServer
    {
        // A source on loopback, started and connected to this server; null if it never came.
        NmeaSourceTcp* connectSource(SourceFixture& fixture)
        {
            auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), port);
            source->slot_startReceiving();
            return accept() ? source : nullptr;
        }
    };

    // A source connected to a server of its own.
    struct Link
    {
        SourceFixture fixture;
        Served served;
        NmeaSourceTcp* source = nullptr;

        bool open()
        {
            source = served.listen() ? served.connectSource(fixture) : nullptr;
            return source != nullptr;
        }
        // Opens the link and waits for one reading through it.
        bool openWithReading()
        {
            if (!open())
                return false;
            served.send("$IIMDA,29.53\r\n");
            return QTest::qWaitFor([this] { return qFuzzyCompare(fixture.b->getCurrentPressure(), 1000.0); });
        }
    };
};

void TestNmeaSourceTcp::zeroPaddedDefaultAddressConnects()
{
    SourceFixture fixture;
    Served served;
    QVERIFY(served.listen());
    MessageLog log;
    auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.000.000.001"), served.port);
    source->slot_startReceiving();
    QCOMPARE(source->getHost(), QStringLiteral("127.000.000.001"));
    QVERIFY(source->isConnected());
    QVERIFY(served.accept());
    QCOMPARE(log.count(QStringLiteral("trying to connect to tcp")), 1);
    QCOMPARE(log.count(QStringLiteral("tcp source activated")), 1);
}

void TestNmeaSourceTcp::sentenceSplitOverTwoSegmentsIsJoined()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    link.served.send("$WIXDR,P,1.01");
    QTRY_COMPARE(source->getBuffer(), QStringLiteral("$WIXDR,P,1.01"));
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    link.served.send("32,B,Barometer\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1013.2);
    QVERIFY(source->getBuffer().isEmpty());
}

void TestNmeaSourceTcp::lineEndingInBackslashIsFinished()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    link.served.send("$IIMDA,29.53\\");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1000.0);
    QVERIFY(source->getBuffer().isEmpty());
}

void TestNmeaSourceTcp::nulCutsTheRestOfTheBlock()
{
    Link link;
    QVERIFY(link.open());
    link.served.send(QByteArray("$IIMDA,29.53\r\n\0$WIXDR,P,1.0500,B,Baro\r\n", 39));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1000.0);
    QTest::qWait(50);
    QCOMPARE(link.fixture.item(Xdr), nullptr);
    // The next block is read afresh.
    link.served.send("$WIXDR,P,1.0500,B,Baro\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1050.0);
}

void TestNmeaSourceTcp::rubbishAheadOfTheDollarDropsTheLine()
{
    Link link;
    MessageLog log;
    QVERIFY(link.open());
    link.served.send("xx$IIMDA,29.53\r\n$IIMDA,29.92,I,1.0132,B*00\r\n$WIXDR,P,1.0200,B,Baro\r\n");
    QTRY_VERIFY(link.fixture.item(Xdr) != nullptr);
    QCOMPARE(link.fixture.item(Mda), nullptr);
    QCOMPARE(log.count(QStringLiteral("rejected")), 0);
}

void TestNmeaSourceTcp::serverAbsentAtFirstAttemptGivesUp()
{
    FastTimers fast(100, 100);
    SourceFixture fixture;
    const quint16 port = freeTcpPort();
    MessageLog log;
    auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), port);
    source->slot_startReceiving();
    QCOMPARE(source->getSocket(), nullptr);
    QVERIFY(!source->isConnected());
    QCOMPARE(log.count(QStringLiteral("failed to connect to TCP host 127.0.0.1 %1").arg(port)), 1);
    QCOMPARE(log.count(QStringLiteral("Connection refused")), 1);
    // The server turns up later: nobody comes.
    Served served;
    QVERIFY(served.listen(port));
    QTest::qWait(600);
    QVERIFY(!served.server.hasPendingConnections());
    QCOMPARE(log.count(QStringLiteral("trying to connect to tcp")), 1);
}

void TestNmeaSourceTcp::serverThatGoesAwayIsRetriedUntilBack()
{
    FastTimers fast(200, 100);
    SourceFixture fixture;
    auto served = std::make_unique<Served>();
    QVERIFY(served->listen());
    const quint16 port = served->port;
    auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), port);
    source->slot_startReceiving();
    QVERIFY(served->accept());
    served->send("$IIMDA,29.53\r\n");
    QTRY_COMPARE(fixture.b->getCurrentPressure(), 1000.0);

    MessageLog log;
    served.reset();
    // The pressure goes at once, and the retries go on while the server stays away.
    QTRY_COMPARE(fixture.b->getCurrentPressure(), -2000.0);
    QTRY_VERIFY_WITH_TIMEOUT(log.count(QStringLiteral("trying to reconnect to Tcp")) >= 3, 5000);
    QCOMPARE(log.count(QStringLiteral("failed to connect to TCP host")), 0);
    QVERIFY(source->isReconnecting());

    served = std::make_unique<Served>();
    QVERIFY(served->listen(port));
    QVERIFY(served->accept());
    QTRY_VERIFY(source->isConnected());
    served->send("$IIMDA,29.92,I,1.0100,B\r\n");
    QTRY_COMPARE(fixture.b->getCurrentPressure(), 1010.0);
}

void TestNmeaSourceTcp::serverThatGoesAwayIsRetriedAfterTenSeconds()
{
    // On the real timer: the first new attempt comes 10000 ms after the loss.
    SourceFixture fixture;
    auto served = std::make_unique<Served>();
    QVERIFY(served->listen());
    const quint16 port = served->port;
    auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), port);
    source->slot_startReceiving();
    QVERIFY(served->accept());
    MessageLog log;
    served->peer->disconnectFromHost();
    QElapsedTimer sinceLoss;
    QTRY_VERIFY(log.count(QStringLiteral("tcp socket")) >= 1);
    sinceLoss.start();
    QTRY_VERIFY_WITH_TIMEOUT(log.count(QStringLiteral("trying to connect to tcp")) == 1, 12000);
    const qint64 elapsed = sinceLoss.elapsed();
    // A coarse timer may fire up to 5 % early.
    QVERIFY2(elapsed >= 9400 && elapsed < 11500, qPrintable(QString::number(elapsed)));
    QVERIFY(served->accept());
}

void TestNmeaSourceTcp::eachAttemptBlocksUpToFiveSecondsWhileTheServerIsAway()
{
    // A listener whose queue is full drops new handshakes unanswered, as a host that has
    // gone away does: a connection attempt hangs until it times out.
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    QVERIFY(listener >= 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    QCOMPARE(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    QCOMPARE(::listen(listener, 0), 0);
    socklen_t length = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    const quint16 port = ntohs(address.sin_port);
    QTcpSocket filler;
    filler.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(filler.waitForConnected(2000));
    QTcpSocket secondFiller;
    secondFiller.connectToHost(QHostAddress::LocalHost, port);
    QTest::qWait(100);

    SourceFixture fixture;
    MessageLog log;
    auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), port);
    QElapsedTimer attempt;
    attempt.start();
    // A retry, as after a lost connection.
    source->reconnect();
    const qint64 blocked = attempt.elapsed();
    ::close(listener);
    QVERIFY2(blocked >= 4900 && blocked < 6500, qPrintable(QString::number(blocked)));
    QCOMPARE(log.count(QStringLiteral("trying to reconnect to Tcp")), 1);
    QVERIFY(source->isReconnecting());
    QVERIFY(!source->isConnected());
}

void TestNmeaSourceTcp::silentServerGivesNoReconnection()
{
    FastTimers fast(100, 100);
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    MessageLog log;
    QTest::qWait(1500);
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.messages().join(QLatin1Char('|'))));
    QVERIFY(source->isConnected());
    QVERIFY(source->getSocket() != nullptr);
    QCOMPARE(link.served.server.hasPendingConnections(), false);
}

void TestNmeaSourceTcp::twoErrorsInARowGiveOneRetry()
{
    FastTimers fast(300, 100);
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    MessageLog log;
    source->slot_tcpError(QAbstractSocket::NetworkError);
    source->slot_tcpError(QAbstractSocket::NetworkError);
    QCOMPARE(log.count(QStringLiteral("tcp socket error")), 1);
    QTest::qWait(800);
    QCOMPARE(log.count(QStringLiteral("trying to connect to tcp")), 1);
    QTRY_VERIFY(source->isConnected());
}

void TestNmeaSourceTcp::timeOutReconnectsAfterTenMilliseconds()
{
    Link link;
    QVERIFY(link.openWithReading());
    auto* source = link.source;
    MessageLog log;
    source->slot_timeOut();
    QCOMPARE(source->getSocket(), nullptr);
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    QTRY_COMPARE_WITH_TIMEOUT(log.count(QStringLiteral("tcp source activated")), 1, 1000);
}

void TestNmeaSourceTcp::myWriteSendsToTheServer()
{
    SourceFixture fixture;
    Served served;
    QVERIFY(served.listen());
    auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), served.port);
    QVERIFY(!source->myWrite(QStringLiteral("x")));
    source->slot_startReceiving();
    QVERIFY(served.accept());
    QVERIFY(!source->myWrite(QString()));
    source->slot_sendMessage(QStringLiteral("$PWEGB,CAL?*1A"));
    QByteArray received;
    QTRY_COMPARE(received += served.peer->readAll(), QByteArray("$PWEGB,CAL?*1A\r\n"));
}

void TestNmeaSourceTcp::stopWithdrawsThePressure()
{
    Link link;
    QVERIFY(link.openWithReading());
    auto* source = link.source;
    MessageLog log;
    source->stopReceiving();
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    QCOMPARE(source->getSocket(), nullptr);
    QTest::qWait(200);
    // Stopped on purpose: no retry.
    QCOMPARE(log.count(QStringLiteral("trying to connect")), 0);
}

void TestNmeaSourceTcp::twentyMegabytesWithoutLineEndKeepMemoryFlat()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    link.served.send("$WIXDR,P,1.0132,B,Barometer\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1013.2);

    MessageLog log;
    sendTwentyMegabytesWithoutLineEnd(
            [&link](const QByteArray& block) {
                link.served.send(block);
                return QTest::qWaitFor([&link] { return link.served.peer->bytesToWrite() == 0; });
            },
            [source] { return source->getBuffer().size(); });
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(log.count(QStringLiteral("unfinished line too long, oldest bytes dropped, source 2")), 1);

    // The rubbish ends as a line of its own, dropped; the sentence after it is read.
    link.served.send("\r\n$WIXDR,P,1.0050,B,Barometer\r\n");
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1005.0);
    QVERIFY(source->getBuffer().isEmpty());

    // A second overflow is told again.
    link.served.send(noLineEndBlock(NmeaSource::MaxUnfinishedLine + 10));
    QTRY_COMPARE(log.count(QStringLiteral("unfinished line too long")), 2);
}

QTEST_MAIN(TestNmeaSourceTcp)
#include "tst_nmeasourcetcp.moc"
