// SPDX-License-Identifier: GPL-3.0-or-later
// The Signal K output as the application runs it: made from the settings, fed by the
// published state, serving TCP clients and sending datagrams. Everything that listens on
// all interfaces or sends a datagram runs in a private network namespace.
#include "nmea/SignalKDelta.h"
#include "nmea/SignalKLink.h"
#include "nmea/SignalKTcpServer.h"
#include "nmea/SignalKUdpSender.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/DatagramListener.h"
#include "tests/support/DeltaFormat.h"
#include "tests/support/NetworkNamespace.h"
#include "util/Pressure.h"
#include "util/StatePublisher.h"

#include "app/BackEnd.h"

#include <QtCore/QJsonObject>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>

namespace {

constexpr quint16 DefaultPort = 8376;

ShownState reading(double hPa)
{
    ShownState s;
    s.tickTime = QDateTime::currentMSecsSinceEpoch();
    s.readingTime = s.tickTime;
    s.rawPressure = hPa;
    s.stationPressureHpa = hPa;
    s.source = Serial;
    s.change3h = -1.0;
    s.trend = -2;
    return s;
}

// A client of the output that reads each line as it comes.
class Client
{
public:
    explicit Client(quint16 port = DefaultPort) { socket.connectToHost(QHostAddress::LocalHost, port); }

    bool connected() { return socket.waitForConnected(5000); }
    // The next whole line, or empty when none came in time.
    QByteArray line(int timeoutMs = 5000)
    {
        QElapsedTimer timer;
        timer.start();
        while (!socket.canReadLine() && timer.elapsed() < timeoutMs
               && socket.state() == QAbstractSocket::ConnectedState)
            socket.waitForReadyRead(50);
        return socket.canReadLine() ? socket.readLine().trimmed() : QByteArray();
    }

    QTcpSocket socket;
};

// A client that connects and never reads, with a receive buffer as small as the system
// allows, so that what the output sends soon piles up on its side.
class StalledClient
{
public:
    explicit StalledClient(quint16 port = DefaultPort)
    {
        fd = ::socket(AF_INET, SOCK_STREAM, 0);
        const int small = 1024;
        ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ok = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    ~StalledClient() { ::close(fd); }

    int fd = -1;
    bool ok = false;
};

} // namespace

class TestSignalKOutput : public QObject
{
    Q_OBJECT

private:
    StatePublisher publisher;
    std::unique_ptr<BackEndFixture> fixture;

    BackEnd& start(const QVariantMap& settings)
    {
        fixture = std::make_unique<BackEndFixture>(settings);
        // In place of the back end's own, which its tick feeds.
        StatePublisher::install(&publisher);
        return *fixture->b;
    }
    QString tcpStatus() { return fixture->b->connectionStatus(SignalKStatus::TcpServer); }
    QString udpStatus() { return fixture->b->connectionStatus(SignalKStatus::UdpDatagrams); }

private slots:
    void init()
    {
        SignalKLink::setPollMs(20);
    }

    void cleanup()
    {
        fixture.reset();
        StatePublisher::withdraw(&publisher);
        SignalKLink::setPollMs(250);
        SignalKTcpServer::setRetryMs(10000);
        SignalKTcpServer::setMaxBacklog(64 * 1024);
        SignalKUdpSender::setMetaIntervalMs(60000);
    }

    void offByDefault()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        start({});
        QCOMPARE(fixture->b->getSignalKOutput().getLink(), nullptr);
        QCOMPARE(tcpStatus(), QStringLiteral("off"));
        QCOMPARE(udpStatus(), QStringLiteral("off"));
        Client client;
        QVERIFY(!client.connected());
    }

    void everyClientGetsTheMetaThenEachDelta()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        start({{QStringLiteral("signalkTcpOn"), 1}});
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, no client connected"));
        std::vector<std::unique_ptr<Client>> clients;
        for (int i = 0; i < 3; ++i) {
            clients.push_back(std::make_unique<Client>());
            QVERIFY(clients.back()->connected());
        }
        for (auto& client : clients) {
            const QByteArray meta = client->line();
            QVERIFY2(DeltaFormat::problems(meta).isEmpty(), qPrintable(DeltaFormat::problems(meta) + meta));
            QCOMPARE(DeltaFormat::find(meta, SignalKDelta::PressurePath, QStringLiteral("meta"))
                             .toObject()
                             .value(QStringLiteral("units"))
                             .toString(),
                     QStringLiteral("Pa"));
        }
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, 3 clients connected"));
        for (double hPa : {1012.5, 1011.75}) {
            publisher.publish(reading(hPa));
            for (auto& client : clients) {
                const QByteArray delta = client->line();
                QVERIFY2(DeltaFormat::problems(delta).isEmpty(), qPrintable(DeltaFormat::problems(delta) + delta));
                QCOMPARE(DeltaFormat::find(delta, SignalKDelta::PressurePath).toDouble(), hPa * 100.0);
            }
        }
    }

    void clientThatReadsNothingIsDropped()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        SignalKTcpServer::setMaxBacklog(8 * 1024);
        SignalKLink::setPollMs(2);
        start({{QStringLiteral("signalkTcpOn"), 1}});
        QTRY_VERIFY(tcpStatus().startsWith(QStringLiteral("listening")));
        Client reader;
        QVERIFY(reader.connected());
        StalledClient stalled;
        QVERIFY(stalled.ok);
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, 2 clients connected"));
        reader.line();
        // Each state is news to the output; the reader keeps up, the stalled one cannot.
        double hPa = 1000.0;
        for (int i = 0; i < 4000 && tcpStatus().endsWith(QStringLiteral("2 clients connected")); ++i) {
            hPa += 0.01;
            publisher.publish(reading(hPa));
            QTest::qWait(3);
            reader.socket.readAll();
        }
        QCOMPARE(tcpStatus(), QStringLiteral("listening on port 8376, 1 client connected"));
        // The one that reads is still served.
        reader.socket.readAll();
        publisher.publish(reading(1020.0));
        QByteArray delta;
        for (int i = 0; i < 50 && DeltaFormat::find(delta, SignalKDelta::PressurePath).toDouble() != 102000.0; ++i)
            delta = reader.line();
        QCOMPARE(DeltaFormat::find(delta, SignalKDelta::PressurePath).toDouble(), 102000.0);
    }

    void clientThatVanishesIsForgotten()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        start({{QStringLiteral("signalkTcpOn"), 1}});
        QTRY_VERIFY(tcpStatus().startsWith(QStringLiteral("listening")));
        auto gone = std::make_unique<Client>();
        Client staying;
        QVERIFY(gone->connected() && staying.connected());
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, 2 clients connected"));
        gone->socket.abort();
        gone.reset();
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, 1 client connected"));
        QVERIFY(!staying.line().isEmpty());
        publisher.publish(reading(1009.0));
        QCOMPARE(DeltaFormat::find(staying.line(), SignalKDelta::PressurePath).toDouble(), 100900.0);
        // One that comes back later starts with the meta again.
        Client back;
        QVERIFY(back.connected());
        QVERIFY(!DeltaFormat::find(back.line(), SignalKDelta::PressurePath, QStringLiteral("meta")).isUndefined());
    }

    void clientsBeyondTheBoundAreTurnedAway()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        start({{QStringLiteral("signalkTcpOn"), 1}});
        QTRY_VERIFY(tcpStatus().startsWith(QStringLiteral("listening")));
        std::vector<std::unique_ptr<Client>> clients;
        for (int i = 0; i < SignalKTcpServer::MaxClients; ++i) {
            clients.push_back(std::make_unique<Client>());
            QVERIFY(clients.back()->connected());
        }
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, %1 clients connected")
                                          .arg(SignalKTcpServer::MaxClients));
        Client extra;
        QVERIFY(extra.connected());
        QTRY_COMPARE(extra.socket.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(tcpStatus(), QStringLiteral("listening on port 8376, %1 clients connected")
                                      .arg(SignalKTcpServer::MaxClients));
    }

    void portInUseIsTriedAgain()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        auto holder = std::make_unique<QTcpServer>();
        QVERIFY(holder->listen(QHostAddress::Any, DefaultPort));
        SignalKTcpServer::setRetryMs(300);
        start({{QStringLiteral("signalkTcpOn"), 1}});
        QTRY_COMPARE(tcpStatus(), QStringLiteral("port 8376 is in use; retrying every 1 s"));
        holder.reset();
        QTRY_COMPARE(tcpStatus(), QStringLiteral("listening on port 8376, no client connected"));
        Client client;
        QVERIFY(client.connected());
        QVERIFY(!client.line().isEmpty());
    }

    void settingsChangeRestartsTheOutput()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        BackEnd& b = start({{QStringLiteral("signalkTcpOn"), 1}});
        QTRY_VERIFY(tcpStatus().startsWith(QStringLiteral("listening on port 8376")));
        b.setSetting(QStringLiteral("signalkTcpPort"), 8377);
        b.startNmea();
        QTRY_VERIFY(tcpStatus().startsWith(QStringLiteral("listening on port 8377")));
        QVERIFY(Client(8377).connected());
        QVERIFY(!Client(8376).connected());
        // The same port again: the old server has let go of it before the new one starts.
        b.startNmea();
        QTRY_VERIFY(tcpStatus().startsWith(QStringLiteral("listening on port 8377")));
        b.setSetting(QStringLiteral("signalkTcpOn"), 0);
        b.startNmea();
        QCOMPARE(tcpStatus(), QStringLiteral("off"));
        QVERIFY(!Client(8377).connected());
    }

    void datagramsCarryTheMetaThenTheDeltas()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        DatagramListener listener(9400);
        QVERIFY(listener.isListening());
        SignalKUdpSender::setMetaIntervalMs(400);
        // Another address of the namespace, as a server on another computer would be.
        start({{QStringLiteral("signalkUdpOn"), 1}, {QStringLiteral("signalkUdpHost"), QStringLiteral("198.18.0.2")},
               {QStringLiteral("signalkUdpPort"), 9400}});
        QTRY_COMPARE(udpStatus(), QStringLiteral("sending to 198.18.0.2:9400"));
        QVERIFY(listener.waitFor(1));
        QVERIFY(!DeltaFormat::find(listener.datagrams().at(0), SignalKDelta::PressurePath, QStringLiteral("meta"))
                         .isUndefined());
        publisher.publish(reading(1003.25));
        QTRY_VERIFY(std::any_of(listener.datagrams().cbegin(), listener.datagrams().cend(), [](const QByteArray& d) {
            return DeltaFormat::find(d, SignalKDelta::PressurePath).toDouble() == 100325.0;
        }));
        // With no connection to greet, the meta comes round again.
        QTRY_VERIFY(std::count_if(listener.datagrams().cbegin(), listener.datagrams().cend(), [](const QByteArray& d) {
                        return d.contains("\"meta\"");
                    }) >= 3);
        for (const QByteArray& datagram : listener.datagrams())
            QVERIFY2(DeltaFormat::problems(datagram).isEmpty(), qPrintable(DeltaFormat::problems(datagram) + datagram));
        QCOMPARE(tcpStatus(), QStringLiteral("off"));
    }

    // What goes to the server is the pressure around the instrument: the reading and the
    // offset, whatever level the pages show.
    void tickPublishesTheStationPressureWithTheOffset()
    {
        BackEnd& b = start({{QStringLiteral("offset"), 1.5}, {QStringLiteral("elevation"), 100.0},
                            {QStringLiteral("preDisplay"), 0}});
        b.setCurrentPressure(1000.0, Serial);
        b.slot_timerData();
        const auto state = b.getStatePublisher().current();
        QCOMPARE(state->stationPressureHpa, 1001.5);
        QVERIFY(state->shownPressureHpa > 1012.0);
        b.setCurrentPressure(Pressure::None, Serial);
        b.slot_timerData();
        QVERIFY(std::isnan(b.getStatePublisher().current()->stationPressureHpa));
    }

    void nameIsNoAddress()
    {
        // Nothing is sent, so nothing needs a namespace.
        start({{QStringLiteral("signalkUdpOn"), 1}, {QStringLiteral("signalkUdpHost"), QStringLiteral("boat.local")}});
        QTRY_COMPARE(udpStatus(), QStringLiteral("boat.local is not an IP address; nothing is sent"));
    }
};

QTEST_MAIN(TestSignalKOutput)
#include "tst_signalkoutput.moc"
