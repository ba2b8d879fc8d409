// SPDX-License-Identifier: GPL-3.0-or-later
// What each connection of the running receiver is doing, as the Connections page reads it:
// the sources on real ports, sockets and terminals, and the board that keeps their states.
#include "nmea/ConnectionStatusBoard.h"

#include "DeviceSim.h"
#include "SourceFixture.h"
#include "app/ConnectionStatusText.h"
#include "nmea/NmeaSourceSerial.h"
#include "nmea/NmeaSourceTcp.h"
#include "nmea/NmeaSourceUdp.h"
#include "tests/support/Columns.h"
#include "tests/support/LoopbackTcpServer.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NetworkNamespace.h"
#include "tests/support/PseudoTerminal.h"
#include "util/Clock.h"

#include <QtCore/QProcess>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace NmeaTestKit;

namespace {

using S = ConnectionStatus;

// A source's own test receiver with a board that follows it, on the test's thread.
struct BoardFixture : SourceFixture
{
    BoardFixture() { board.follow(receiver.get()); }

    S status(S::Channel channel) const { return board.status(channel); }
    QString text(S::Channel channel) const
    {
        return ConnectionStatusText::describe(board.status(channel), board.lastSentenceMs(channel),
                                              Clock::monotonicMs());
    }

    ConnectionStatusBoard board;
};

// Runs one test function of this executable again as the unprivileged user "nobody", for a
// test that root, who may open anything, cannot make. True if the child passed.
bool runAsNobody(const QString& testFunction, QString* report)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Root's runtime folder is no place for another user.
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.setWorkingDirectory(QDir::tempPath());
    child.start(QStringLiteral("setpriv"),
                {QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups"),
                 QCoreApplication::applicationFilePath(), testFunction});
    if (!child.waitForStarted(10000) || !child.waitForFinished(60000)) {
        child.kill();
        child.waitForFinished(5000);
        *report = QStringLiteral("setpriv did not run: %1").arg(child.errorString());
        return false;
    }
    // The verdicts only: a failure message has room for little more.
    QStringList verdicts;
    const QStringList lines = QString::fromLocal8Bit(child.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (!line.startsWith(QLatin1String("QWARN")) && !line.startsWith(QLatin1String("QDEBUG"))
            && !line.startsWith(QLatin1String("QINFO")) && !line.startsWith(QLatin1String("QStandardPaths")))
            verdicts << line;
    }
    *report = verdicts.join(QLatin1Char('\n'));
    return child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0
            && report->contains(QLatin1String(" 0 failed, 0 skipped"));
}

using Server = LoopbackTcpServer;

} // namespace

class TestConnectionStatusBoard : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        Clock::reset();
        NmeaSource::setRetryIntervalMs(10000);
    }
    void cleanup()
    {
        Clock::reset();
        NmeaSource::setRetryIntervalMs(10000);
        NmeaReceiver::setDelayBehindSerialMs(5000);
    }

    // ---- the board ----

    void everyConnectionIsOffWithoutAReceiver()
    {
        ConnectionStatusBoard board;
        for (S::Channel channel : {S::SerialInput, S::TcpInput, S::UdpInput, S::UdpOutput}) {
            QCOMPARE(board.status(channel).phase, S::Off);
            QCOMPARE(board.status(channel).channel, channel);
            QCOMPARE(board.lastSentenceMs(channel), qint64(-1));
        }
    }

    void reportsArriveQueuedAsValues()
    {
        BoardFixture fixture;
        S status;
        status.channel = S::UdpInput;
        status.phase = S::Open;
        status.number = 20123;
        Clock::setFixedMonotonicMs(4000000);
        fixture.receiver->publishStatus(status);
        // Not inside the source's call: only once the event loop delivers it.
        QCOMPARE(fixture.status(S::UdpInput).phase, S::Off);
        QSignalSpy changed(&fixture.board, &ConnectionStatusBoard::statusChanged);
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toInt(), int(S::UdpInput));
        QCOMPARE(fixture.status(S::UdpInput).phase, S::Open);
        QCOMPARE(fixture.status(S::UdpInput).number, 20123);
        // Stamped when it happened, not when it arrived.
        QCOMPARE(fixture.status(S::UdpInput).sinceMs, qint64(4000000));
        QCOMPARE(fixture.status(S::TcpInput).phase, S::Off);
    }

    void aReplacedReceiverIsNoLongerHeard()
    {
        BoardFixture fixture;
        S status;
        status.channel = S::TcpInput;
        status.phase = S::Open;
        fixture.receiver->publishStatus(status);
        fixture.receiver->noteSentence(Tcp);
        QVERIFY(fixture.board.lastSentenceMs(S::TcpInput) >= 0);

        NmeaReceiver next;
        fixture.board.follow(&next);
        QTest::qWait(50);
        QCoreApplication::processEvents();
        // The old receiver's report, already on its way, and its later sentences are dropped.
        QCOMPARE(fixture.status(S::TcpInput).phase, S::Off);
        fixture.receiver->noteSentence(Tcp);
        QCOMPARE(fixture.board.lastSentenceMs(S::TcpInput), qint64(-1));
        next.publishStatus(status);
        QTRY_COMPARE(fixture.status(S::TcpInput).phase, S::Open);
    }

    // ---- serial ----

    void serialReadingTellsItsSpeedAndLastSentence()
    {
        BoardFixture fixture;
        PseudoTerminal terminal;
        QVERIFY(terminal.open());
        Clock::setFixedMonotonicMs(1000000);
        auto* source = new NmeaSourceSerial(fixture.receiver.get(), terminal.path(), 4800, 0, 0, 0, 0);
        source->slot_startReceiving();
        QVERIFY(source->getSerial());
        QTRY_COMPARE(fixture.status(S::SerialInput).phase, S::Open);
        QCOMPARE(fixture.status(S::SerialInput).number, 4800);
        QCOMPARE(fixture.status(S::SerialInput).where, terminal.path());

        // Thirty seconds of rubbish, as at the wrong speed: open, but no sentence.
        for (int block = 1; block <= 2; ++block) {
            QVERIFY(terminal.writeBlock("\x93\xfe\x11 garbled\r\n"));
            QTRY_COMPARE(source->getSkipCount(), block);
        }
        MessageLog log;
        QVERIFY(terminal.writeBlock("\x93\xfe$\x11\xc8 garbled\r\n"));
        QTRY_COMPARE(log.count(QStringLiteral("message rejected by NMEA module")), 1);
        Clock::advanceMonotonicMs(30000);
        QCOMPARE(fixture.board.lastSentenceMs(S::SerialInput), qint64(-1));
        QCOMPARE(fixture.text(S::SerialInput),
                 QStringLiteral("%1 open at 4800 baud, but no sentence for 30 s").arg(terminal.path()));

        // A sentence that is refused does not count; one that is accepted does.
        QVERIFY(terminal.writeBlock("$WIXDR,P,1.0132,B,Barometer*00\r\n"));
        QTRY_COMPARE(log.count(QStringLiteral("message rejected by NMEA module")), 2);
        QCOMPARE(fixture.board.lastSentenceMs(S::SerialInput), qint64(-1));
        QVERIFY(terminal.writeBlock("$WIXDR,P,1.0132,B,Barometer\r\n"));
        QTRY_COMPARE(fixture.board.lastSentenceMs(S::SerialInput), Clock::monotonicMs());
        Clock::advanceMonotonicMs(2000);
        QCOMPARE(fixture.text(S::SerialInput),
                 QStringLiteral("reading %1 at 4800 baud, last sentence 2 s ago").arg(terminal.path()));
    }

    void serialDeviceThatIsNotThereIsNoSuchDevice()
    {
        BoardFixture fixture;
        const QString path = fixture.folder.filePath(QStringLiteral("ttyGONE"));
        auto* source = new NmeaSourceSerial(fixture.receiver.get(), path, 9600, 0, 0, 0, 0);
        source->slot_startReceiving();
        QVERIFY(!source->getSerial());
        QTRY_COMPARE(fixture.status(S::SerialInput).phase, S::Retrying);
        QCOMPARE(fixture.status(S::SerialInput).reason, S::NoSuchDevice);
        QCOMPARE(fixture.status(S::SerialInput).milliseconds, 10000);
        QCOMPARE(fixture.text(S::SerialInput),
                 QStringLiteral("cannot open %1: no such device; retrying every 10 s").arg(path));
    }

    void serialPortWithoutPermissionSaysHowToGetIt()
    {
        // Root opens any terminal: the test runs again as a user who cannot.
        if (geteuid() == 0) {
            QString report;
            QVERIFY2(runAsNobody(QString::fromLatin1(QTest::currentTestFunction()), &report), qPrintable(report));
            return;
        }
        BoardFixture fixture;
        PseudoTerminal terminal;
        QVERIFY(terminal.open());
        auto* source = new NmeaSourceSerial(fixture.receiver.get(), terminal.terminalPath(), 9600, 0, 0, 0, 0);
        // This user may open the terminal as it is, so what follows comes from its mode alone.
        source->slot_startReceiving();
        QTRY_COMPARE(fixture.status(S::SerialInput).phase, S::Open);
        source->stopReceiving();
        QCOMPARE(::chmod(QFile::encodeName(terminal.terminalPath()).constData(), 0), 0);
        source->slot_startReceiving();
        QVERIFY(!source->getSerial());
        QTRY_COMPARE(fixture.status(S::SerialInput).phase, S::Retrying);
        QCOMPARE(fixture.status(S::SerialInput).reason, S::PermissionDenied);
        QCOMPARE(fixture.text(S::SerialInput),
                 QStringLiteral("cannot open %1: permission denied (add your user to the dialout group, then log in "
                                "again); retrying every 10 s")
                         .arg(terminal.terminalPath()));
    }

    // ---- TCP ----

    void tcpRefusedAtTheFirstAttemptIsNotRetried()
    {
        BoardFixture fixture;
        const quint16 port = freeTcpPort();
        auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), port);
        source->slot_startReceiving();
        QTRY_COMPARE(fixture.status(S::TcpInput).phase, S::GivenUp);
        QCOMPARE(fixture.status(S::TcpInput).reason, S::Refused);
        QCOMPARE(fixture.text(S::TcpInput),
                 QStringLiteral("cannot connect to 127.0.0.1:%1: connection refused, not retried; leave this page "
                                "to try again")
                         .arg(port));
    }

    void tcpConnectedThenLostIsRetried()
    {
        BoardFixture fixture;
        auto server = std::make_unique<Server>();
        QVERIFY(server->listen());
        const quint16 port = server->port;
        Clock::setFixedMonotonicMs(2000000);
        auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.000.000.001"), port);
        source->slot_startReceiving();
        QVERIFY(server->accept());
        QTRY_COMPARE(fixture.status(S::TcpInput).phase, S::Open);
        const QString where = QStringLiteral("127.000.000.001:%1").arg(port);
        QCOMPARE(fixture.text(S::TcpInput), QStringLiteral("connected to %1, but no sentence for 0 s").arg(where));

        server->peer->write("$IIMDA,29.53\r\n");
        server->peer->flush();
        QTRY_COMPARE(fixture.board.lastSentenceMs(S::TcpInput), qint64(2000000));
        Clock::advanceMonotonicMs(3000);
        QCOMPARE(fixture.text(S::TcpInput), QStringLiteral("connected to %1, last sentence 3 s ago").arg(where));

        server.reset();
        QTRY_COMPARE(fixture.status(S::TcpInput).phase, S::Retrying);
        QCOMPARE(fixture.status(S::TcpInput).reason, S::Lost);
        QCOMPARE(fixture.text(S::TcpInput), QStringLiteral("connection to %1 lost, retrying every 10 s").arg(where));
    }

    // ---- UDP input ----

    void udpListeningTellsItsPortAndLastSentence()
    {
        BoardFixture fixture;
        const quint16 port = freeUdpPort();
        Clock::setFixedMonotonicMs(3000000);
        auto* source = new NmeaSourceUdp(fixture.receiver.get(), QStringLiteral("0.0.0.0"), port);
        source->slot_startReceiving();
        QTRY_COMPARE(fixture.status(S::UdpInput).phase, S::Open);
        QCOMPARE(fixture.status(S::UdpInput).number, int(port));
        sendDatagram("$IIMDA,29.53\r\n", port);
        QTRY_COMPARE(fixture.board.lastSentenceMs(S::UdpInput), qint64(3000000));
        Clock::advanceMonotonicMs(2500);
        QCOMPARE(fixture.text(S::UdpInput), QStringLiteral("listening on port %1, last sentence 2 s ago").arg(port));
    }

    void udpPortInUseAtTheFirstAttemptIsNotRetried()
    {
        BoardFixture fixture;
        const quint16 port = freeUdpPort();
        QUdpSocket blocker;
        QVERIFY(blocker.bind(QHostAddress(QHostAddress::Any), port, QAbstractSocket::DontShareAddress));
        auto* source = new NmeaSourceUdp(fixture.receiver.get(), QStringLiteral("0.0.0.0"), port);
        source->slot_startReceiving();
        QTRY_COMPARE(fixture.status(S::UdpInput).phase, S::GivenUp);
        QCOMPARE(fixture.status(S::UdpInput).reason, S::AddressInUse);
        QCOMPARE(fixture.text(S::UdpInput),
                 QStringLiteral("cannot listen on port %1: port already in use, not retried; leave this page to try "
                                "again")
                         .arg(port));
    }

    // ---- the receiver on its own thread, as the application runs it ----

    void networkInputsWaitBehindTheSerialSource()
    {
        NmeaReceiver::setDelayBehindSerialMs(3000);
        TestDataFolder folder;
        writeIni(quietSettings());
        DeviceSim device;
        const QString path = device.start({QStringLiteral("--interval"), QStringLiteral("100")});
        QVERIFY(!path.isEmpty());
        const quint16 port = freeUdpPort();
        BackEnd b;
        applySettings(b, {{QStringLiteral("SettingSerialPort"), path + QStringLiteral(" Simulated")},
                          {QStringLiteral("SettingUseSerial"), 1},
                          {QStringLiteral("SettingSerialPortSpeed"), 19200},
                          {QStringLiteral("SettingUseUdp"), 1},
                          {QStringLiteral("SettingUdpPort"), port}});
        b.startNmea();
        const ConnectionStatusBoard& board = b.getConnectionStatusBoard();
        QTRY_COMPARE(board.status(S::UdpInput).phase, S::Delayed);
        QCOMPARE(board.status(S::UdpInput).milliseconds, 3000);
        QVERIFY2(b.connectionStatus(S::UdpInput).endsWith(QLatin1String(" s, after the serial input")),
                 qPrintable(b.connectionStatus(S::UdpInput)));

        // The speed the source really runs at is its own key's, not the page's.
        QTRY_COMPARE(board.status(S::SerialInput).phase, S::Open);
        QCOMPARE(board.status(S::SerialInput).number, 19200);
        QTRY_VERIFY_WITH_TIMEOUT(board.lastSentenceMs(S::SerialInput) >= 0, 5000);
        QVERIFY2(b.connectionStatus(S::SerialInput).startsWith(QStringLiteral("reading %1 at 19200 baud").arg(path)),
                 qPrintable(b.connectionStatus(S::SerialInput)));

        QTRY_COMPARE_WITH_TIMEOUT(board.status(S::UdpInput).phase, S::Open, 5000);
        QVERIFY2(b.connectionStatus(S::UdpInput).startsWith(QStringLiteral("listening on port %1, but no sentence for").arg(port)),
                 qPrintable(b.connectionStatus(S::UdpInput)));
        QCOMPARE(b.connectionStatus(S::TcpInput), QStringLiteral("off"));
        QCOMPARE(b.connectionStatus(S::UdpOutput), QStringLiteral("off"));
        QVERIFY(stopNmea(b));
        QCOMPARE(b.connectionStatus(S::SerialInput), QStringLiteral("off"));
    }

    void serialSwitchedOnWithoutAPort()
    {
        TestDataFolder folder;
        writeIni(quietSettings());
        BackEnd b;
        applySettings(b, {{QStringLiteral("SettingUseSerial"), 1}, {QStringLiteral("SettingUseUdp"), 1},
                          {QStringLiteral("SettingUdpPort"), freeUdpPort()}});
        b.startNmea();
        QTRY_COMPARE(b.getConnectionStatusBoard().status(S::SerialInput).phase, S::NoPort);
        QCOMPARE(b.connectionStatus(S::SerialInput), QStringLiteral("on, but no port chosen"));
        // Without a serial source nothing waits.
        QTRY_COMPARE(b.getConnectionStatusBoard().status(S::UdpInput).phase, S::Open);
        QVERIFY(stopNmea(b));
    }

    // ---- UDP output ----

    void outputCountsItsBroadcastAddresses_data()
    {
        Columns::add<QString, int, QString>("setup", "count", "expected");
        // v0 and v1 share a subnet: one broadcast address; their IPv6 entries add only the
        // null address, which is not counted.
        QTest::newRow("two interfaces on one subnet") << QString() << 1 << "sending to 1 broadcast address";
        QTest::newRow("a second subnet") << QStringLiteral("ip addr add 198.19.0.1/24 broadcast 198.19.0.255 dev v1")
                                         << 2 << "sending to 2 broadcast addresses";
        QTest::newRow("loopback only") << QStringLiteral("ip link del v0") << 0
                                       << "no broadcast address found: no network that can broadcast is up";
    }

    void outputCountsItsBroadcastAddresses()
    {
        QFETCH(QString, setup);
        BRINHOLT_IN_PRIVATE_NETWORK(setup);
        QFETCH(int, count);
        QFETCH(QString, expected);
        TestDataFolder folder;
        writeIni(quietSettings());
        BackEnd b;
        applySettings(b, {{QStringLiteral("SettingUseUdpOut"), 1}, {QStringLiteral("updPort"), 10110}});
        b.startNmea();
        const ConnectionStatusBoard& board = b.getConnectionStatusBoard();
        QCOMPARE(b.connectionStatus(S::UdpOutput), QStringLiteral("off"));
        QTRY_COMPARE(board.status(S::UdpOutput).phase, S::Opening);
        QCOMPARE(b.connectionStatus(S::UdpOutput), QStringLiteral("starting"));
        // The sender is made at the first tick of the output, a second later.
        QTRY_COMPARE_WITH_TIMEOUT(board.status(S::UdpOutput).phase, S::Open, 5000);
        QCOMPARE(board.status(S::UdpOutput).number, count);
        QCOMPARE(b.connectionStatus(S::UdpOutput), expected);
        QVERIFY(stopNmea(b));
    }
};

QTEST_MAIN(TestConnectionStatusBoard)
#include "tst_connectionstatusboard.moc"
