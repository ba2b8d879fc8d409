// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/Nmea0183.h"
#include "nmea/NmeaSenderUdp.h"
#include "tests/support/Columns.h"
#include "tests/support/DatagramListener.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NetworkNamespace.h"
#include "util/Clock.h"

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtNetwork/QNetworkInterface>
#include <QtNetwork/QUdpSocket>
#include <QtTest/QtTest>

#include <fcntl.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <sys/ioctl.h>
#include <unistd.h>

// The sending side of UDP output: the sentences byte for byte, the broadcast addresses, and
// the failure and restart cycle. Everything that sends runs in a private network namespace.
class TestNmeaSenderUdp : public QObject
{
    Q_OBJECT

private:
    // The checksum worked out here independently: XOR of the bytes between "$" and "*".
    static QByteArray withChecksum(const QByteArray& text)
    {
        unsigned sum = 0;
        for (int i = 1; i < text.size(); ++i)
            sum ^= static_cast<unsigned char>(text.at(i));
        return text + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper();
    }

    static QByteArray xdr(const QByteArray& bars) { return withChecksum("$GPXDR,P," + bars + ",B,Barometer") + "\r\n"; }

    static void at(const char* utc) { Clock::setFixedSecsSinceEpoch(QDateTime::fromString(utc, Qt::ISODate).toSecsSinceEpoch()); }

    static bool runIp(const QStringList& arguments)
    {
        QProcess ip;
        ip.start(QStringLiteral("ip"), arguments);
        return ip.waitForFinished(10000) && ip.exitCode() == 0;
    }

    static const QHostAddress Broadcast;

private slots:
    void init()
    {
        Clock::reset();
        NmeaSenderUdp::setRestartDelayMs(5000);
    }

    void cleanup()
    {
        Clock::reset();
        NmeaSenderUdp::setRestartDelayMs(5000);
    }

    // ---- the text ----

    void checksumIsTheReadersRoutine_data()
    {
        Columns::add<QByteArray, QString>("sentence", "checksum");
        QTest::newRow("the pressure example") << QByteArray("$GPXDR,P,1.01325,B,Barometer") << "34";
        QTest::newRow("the first byte is skipped, whatever it is")
                << QByteArray("!GPXDR,P,1.01325,B,Barometer") << "34";
        QTest::newRow("stops at the star") << QByteArray("$GPXDR,P,1.01325,B,Barometer*FF,junk") << "34";
        QTest::newRow("stops at CR") << QByteArray("$GPXDR,P,1.01325,B,Barometer\rjunk") << "34";
        QTest::newRow("stops at LF") << QByteArray("$GPXDR,P,1.01325,B,Barometer\njunk") << "34";
        QTest::newRow("upper-case digits") << QByteArray("$A\x2b") << "6A";
        QTest::newRow("a single byte sums to nothing") << QByteArray("$") << "00";
        const QByteArray first99 = "$" + QByteArray(98, 'A');
        QTest::newRow("only the first 99 bytes count") << first99 + "BCDEFG" << Nmea0183::computeChecksum(first99);
    }

    void checksumIsTheReadersRoutine()
    {
        QFETCH(QByteArray, sentence);
        QFETCH(QString, checksum);
        QCOMPARE(NmeaSenderUdp::computeChecksum(sentence), checksum);
        QCOMPARE(NmeaSenderUdp::computeChecksum(sentence), Nmea0183::computeChecksum(sentence));
    }

    void positionSentence_data()
    {
        Columns::add<double, double, double, double, QByteArray>("x", "y", "sog", "cog", "text");
        QTest::newRow("the worked example")
                << 11.516667 << 48.1173 << 22.4 << 84.4
                << QByteArray("$ECRMC,123519.00,A,4807.038,N,01131.000,E,22.40,84.40,230394,,,*02");
        QTest::newRow("x -0.5 and y -33.25 are west and south")
                << -0.5 << -33.25 << 0.0 << 0.0
                << withChecksum("$ECRMC,123519.00,A,3315.000,S,00030.000,W,0.00,0.00,230394,,,");
        QTest::newRow("x 0 is east and y 0 is north")
                << 0.0 << 0.0 << 1.005 << 359.999
                << withChecksum("$ECRMC,123519.00,A,0000.000,N,00000.000,E,1.00,360.00,230394,,,");
        QTest::newRow("a latitude of 10.99999999 keeps 60 minutes")
                << 2.0 << 10.99999999 << 5.0 << 90.0
                << withChecksum("$ECRMC,123519.00,A,1060.000,N,00200.000,E,5.00,90.00,230394,,,");
        QTest::newRow("a longitude of -170.99999999 keeps 60 minutes")
                << -170.99999999 << 1.0 << 5.0 << 90.0
                << withChecksum("$ECRMC,123519.00,A,0100.000,N,17060.000,W,5.00,90.00,230394,,,");
        QTest::newRow("thousandths of a minute are rounded")
                << 0.00001 << 0.0000083 << 0.0 << 0.0
                << withChecksum("$ECRMC,123519.00,A,0000.000,N,00000.001,E,0.00,0.00,230394,,,");
    }

    void positionSentence()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(double, sog);
        QFETCH(double, cog);
        QFETCH(QByteArray, text);
        at("1994-03-23T12:35:19Z");
        QCOMPARE(NmeaSenderUdp::positionNmeaRMC(QPointF(x, y), sog, cog).toUtf8(), text);
    }

    void positionSentenceTakesTimeAndDateFromTheClock()
    {
        at("2031-12-31T23:59:58Z");
        const QString text = NmeaSenderUdp::positionNmeaRMC(QPointF(1.0, 1.0), 0.0, 0.0);
        QCOMPARE(text.section(',', 1, 1), QStringLiteral("235958.00"));
        QCOMPARE(text.section(',', 9, 9), QStringLiteral("311231"));
    }

    // ---- sending, in a private network ----

    void pressureSentenceByteForByte_data()
    {
        Columns::add<double, QByteArray>("hpa", "datagram");
        QTest::newRow("1013.25 hPa is the worked example")
                << 1013.25 << QByteArray("$GPXDR,P,1.01325,B,Barometer*34\r\n");
        QTest::newRow("1000.0 gives 1.00000") << 1000.0 << xdr("1.00000");
        QTest::newRow("987.6 gives 0.98760") << 987.6 << xdr("0.98760");
        QTest::newRow("no field width for large values") << 12345.678 << xdr("12.34568");
    }

    void pressureSentenceByteForByte()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(double, hpa);
        QFETCH(QByteArray, datagram);
        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QVERIFY(sender.sendPressure(hpa, 10110));
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(100));
        QCOMPARE(listener.datagrams(), QList<QByteArray>{datagram});
    }

    void positionSentenceByteForByte()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        at("1994-03-23T12:35:19Z");
        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QVERIFY(sender.sendPosition(QPointF(11.516667, 48.1173), 22.4, 84.4, 10110));
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(100));
        QCOMPARE(listener.datagrams(),
                 QList<QByteArray>{"$ECRMC,123519.00,A,4807.038,N,01131.000,E,22.40,84.40,230394,,,*02\r\n"});
    }

    void portIsCutTo16Bits()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        DatagramListener listener(20500);
        NmeaSenderUdp sender;
        QVERIFY(sender.sendPressure(1013.25, 65536 + 20500));
        QVERIFY(listener.waitFor(1));
        QCOMPARE(listener.datagrams().first(), QByteArray("$GPXDR,P,1.01325,B,Barometer*34\r\n"));
    }

    void oneInterfaceWithIpv4AndIpv6()
    {
        // v1 keeps no address at all, so v0 is the one interface with addresses.
        BRINHOLT_IN_PRIVATE_NETWORK(QStringLiteral("ip addr flush dev v1 && sysctl -qw net.ipv6.conf.v1.disable_ipv6=1"));
        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QCOMPARE(sender.getBroadcastAddresses(), (QSet<QHostAddress>{Broadcast, QHostAddress()}));
        MessageLog log;
        QVERIFY(sender.sendPressure(1013.25, 10110));
        const QByteArray datagram("$GPXDR,P,1.01325,B,Barometer*34\r\n");
        // The null address fails with -1, which the total takes in.
        QCOMPARE(sender.lastSendTotal(), datagram.size() - 1);
        QVERIFY(sender.getSocket());
        QCOMPARE(log.count(QStringLiteral("error in send")), 0);
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(100));
        QCOMPARE(listener.datagrams(), QList<QByteArray>{datagram});
    }

    void twoInterfacesOnOneSubnetAreOneEntry()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QStringLiteral(
                "sysctl -qw net.ipv6.conf.v0.disable_ipv6=1 && sysctl -qw net.ipv6.conf.v1.disable_ipv6=1"));
        QCOMPARE(QNetworkInterface::interfaceFromName(QStringLiteral("v0")).addressEntries().size(), 1);
        QCOMPARE(QNetworkInterface::interfaceFromName(QStringLiteral("v1")).addressEntries().size(), 1);
        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QCOMPARE(sender.getBroadcastAddresses(), QSet<QHostAddress>{Broadcast});
        QVERIFY(sender.sendPosition(QPointF(1.0, 2.0), 3.0, 4.0, 10110));
        const QByteArray sent = NmeaSenderUdp::positionNmeaRMC(QPointF(1.0, 2.0), 3.0, 4.0).toUtf8() + "\r\n";
        QCOMPARE(sender.lastSendTotal(), sent.size());
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(200));
        QCOMPARE(listener.datagrams().size(), 1);
    }

    void pointToPointInterfaceGetsNoDatagram()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QStringLiteral(
                "ip tuntap add t0 mode tun && ip addr add 198.19.0.1/24 broadcast 198.19.0.255 dev t0"));
        // Attached and up, the tunnel is running: only its lack of broadcast leaves it out.
        const int tun = ::open("/dev/net/tun", O_RDWR | O_NONBLOCK);
        QVERIFY(tun >= 0);
        struct ifreq request = {};
        qstrncpy(request.ifr_name, "t0", IFNAMSIZ);
        request.ifr_flags = IFF_TUN | IFF_NO_PI;
        QVERIFY(::ioctl(tun, TUNSETIFF, &request) == 0);
        QVERIFY(runIp({QStringLiteral("link"), QStringLiteral("set"), QStringLiteral("t0"), QStringLiteral("up")}));
        QTRY_VERIFY(QNetworkInterface::interfaceFromName(QStringLiteral("t0")).flags().testFlag(QNetworkInterface::IsRunning));
        const QNetworkInterface t0 = QNetworkInterface::interfaceFromName(QStringLiteral("t0"));
        QVERIFY(t0.flags().testFlag(QNetworkInterface::IsPointToPoint));
        QVERIFY(!t0.flags().testFlag(QNetworkInterface::CanBroadcast));

        // Everything the tunnel carries out, as the destination ports of UDP datagrams.
        QList<int> portsOut;
        auto readTunnel = [tun, &portsOut] {
            char packet[2048];
            for (ssize_t n; (n = ::read(tun, packet, sizeof packet)) > 0;) {
                const auto* p = reinterpret_cast<const unsigned char*>(packet);
                const int headerLength = (p[0] & 0x0F) * 4;
                if ((p[0] >> 4) == 4 && p[9] == 17 && n >= headerLength + 4)
                    portsOut.append(p[headerLength + 2] << 8 | p[headerLength + 3]);
            }
            return portsOut;
        };

        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QVERIFY(!sender.getBroadcastAddresses().contains(QHostAddress(QStringLiteral("198.19.0.255"))));
        QVERIFY(sender.getBroadcastAddresses().contains(Broadcast));
        QVERIFY(sender.sendPressure(1013.25, 10110));
        QVERIFY(listener.waitFor(1));
        QTest::qWait(200);
        QVERIFY(!readTunnel().contains(10110));

        // The same port sent on purpose into the tunnel's subnet does show there.
        QUdpSocket probe;
        QVERIFY(probe.writeDatagram("probe", QHostAddress(QStringLiteral("198.19.0.2")), 10110) > 0);
        QTRY_VERIFY(readTunnel().contains(10110));
        ::close(tun);
    }

    void loopbackOnlyFailsAndRestarts_data()
    {
        QTest::addColumn<bool>("pressure");
        QTest::newRow("pressure") << true;
        QTest::newRow("position") << false;
    }

    void loopbackOnlyFailsAndRestarts()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QStringLiteral("ip link del v0"));
        QFETCH(bool, pressure);
        const QString what = pressure ? QStringLiteral("pressure") : QStringLiteral("position");
        NmeaSenderUdp::setRestartDelayMs(100);
        NmeaSenderUdp sender;
        QVERIFY(sender.getBroadcastAddresses().isEmpty());
        QVERIFY(sender.getSocket());
        auto send = [&] {
            return pressure ? sender.sendPressure(1013.25, 10110) : sender.sendPosition(QPointF(1.0, 1.0), 0.0, 0.0, 10110);
        };

        MessageLog log;
        QVERIFY(!send());
        QCOMPARE(sender.lastSendTotal(), 0);
        QCOMPARE(log.count(QStringLiteral("error in send ") + what), 1);
        QCOMPARE(log.messages().last(), QStringLiteral("error in send ") + what + QStringLiteral(" Unknown error"));
        QVERIFY(!sender.getSocket());

        // Waiting: each send says so and does nothing else.
        QVERIFY(!send());
        QVERIFY(!send());
        QCOMPARE(log.count(QStringLiteral("no udp socket (") + what + QStringLiteral(")")), 2);
        QCOMPARE(log.count(QStringLiteral("error in send")), 1);

        QTRY_VERIFY(sender.getSocket());
        QVERIFY(sender.getBroadcastAddresses().isEmpty());
        QVERIFY(!send());
        QCOMPARE(log.count(QStringLiteral("error in send ") + what), 2);
    }

    void restartComesFiveSecondsAfterAFailure()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QStringLiteral("ip link del v0"));
        NmeaSenderUdp sender;
        QVERIFY(!sender.sendPressure(1013.25, 10110));
        QElapsedTimer timer;
        timer.start();
        // A single shot this long is a coarse timer, which may fire up to 5% early.
        QTest::qWait(4600);
        QVERIFY(!sender.getSocket());
        QTRY_VERIFY_WITH_TIMEOUT(sender.getSocket(), 2000);
        QVERIFY2(timer.elapsed() >= 4700 && timer.elapsed() < 5600, qPrintable(QString::number(timer.elapsed())));
    }

    void aNetworkThatComesLaterIsSeenAfterAFailure()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QStringLiteral("ip link del v0"));
        NmeaSenderUdp::setRestartDelayMs(50);
        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QVERIFY(sender.getBroadcastAddresses().isEmpty());

        QVERIFY(runIp(QStringLiteral("link add v0 type veth peer name v1").split(' ')));
        QVERIFY(runIp(QStringLiteral("addr add 198.18.0.1/24 dev v0").split(' ')));
        QVERIFY(runIp(QStringLiteral("link set v0 up").split(' ')));
        QVERIFY(runIp(QStringLiteral("link set v1 up").split(' ')));
        QTRY_VERIFY(QNetworkInterface::interfaceFromName(QStringLiteral("v0")).flags().testFlag(QNetworkInterface::IsRunning));

        // No new scan until a send fails.
        QVERIFY(!sender.sendPressure(1013.25, 10110));
        QVERIFY(listener.staysQuietFor(100));
        QTRY_VERIFY(sender.getSocket());
        QVERIFY(sender.getBroadcastAddresses().contains(Broadcast));
        QVERIFY(sender.sendPressure(1013.25, 10110));
        QVERIFY(listener.waitFor(1));
        QCOMPARE(listener.datagrams().first(), QByteArray("$GPXDR,P,1.01325,B,Barometer*34\r\n"));
    }

    // ---- MDA and ALR, for software that reads those ----

    void mdaCarriesInchesAndBarsAndNothingElse_data()
    {
        Columns::add<double, QByteArray>("hpa", "text");
        QTest::newRow("1013.25 hPa") << 1013.25 << QByteArray("$WIMDA,29.9213,I,1.01325,B,,,,,,,,,,,,,,,,");
        QTest::newRow("987.6 hPa") << 987.6 << QByteArray("$WIMDA,29.1638,I,0.98760,B,,,,,,,,,,,,,,,,");
        QTest::newRow("1000 hPa") << 1000.0 << QByteArray("$WIMDA,29.5300,I,1.00000,B,,,,,,,,,,,,,,,,");
    }

    void mdaCarriesInchesAndBarsAndNothingElse()
    {
        QFETCH(double, hpa);
        QFETCH(QByteArray, text);
        const QByteArray sentence = NmeaSenderUdp::pressureNmeaMDA(hpa).toUtf8();
        QCOMPARE(sentence, withChecksum(text));
        // Twenty fields behind the address, as the sentence has them.
        QCOMPARE(sentence.left(sentence.indexOf('*')).count(','), 20);
    }

    void alrTellsConditionAcknowledgementAndLevel_data()
    {
        Columns::add<int, bool, QByteArray>("level", "acknowledged", "text");
        QTest::newRow("warning, not acknowledged")
                << 1 << false << QByteArray("$WIALR,123519.00,001,A,V,PRESSURE FALLING QUICKLY");
        QTest::newRow("alarm, acknowledged")
                << 2 << true << QByteArray("$WIALR,123519.00,001,A,A,PRESSURE FALLING VERY RAPIDLY");
        QTest::newRow("level ended") << 0 << false << QByteArray("$WIALR,123519.00,001,V,V,PRESSURE FALL ENDED");
    }

    void alrTellsConditionAcknowledgementAndLevel()
    {
        QFETCH(int, level);
        QFETCH(bool, acknowledged);
        QFETCH(QByteArray, text);
        const qint64 changedAt = QDateTime::fromString(QStringLiteral("1994-03-23T12:35:19Z"), Qt::ISODate).toSecsSinceEpoch();
        const QByteArray sentence = NmeaSenderUdp::alarmNmeaALR(changedAt, level, acknowledged).toUtf8();
        QCOMPARE(sentence, withChecksum(text));
        QVERIFY(sentence.size() + 2 <= 82);
    }

    void mdaAndAlrGoToTheBroadcastAddresses()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        DatagramListener listener(10110);
        NmeaSenderUdp sender;
        QVERIFY(sender.sendPressureMda(1013.25, 10110));
        QVERIFY(sender.sendAlarm(0, 2, false, 10110));
        QVERIFY(listener.waitFor(2));
        const QList<QByteArray> got = listener.datagrams();
        QCOMPARE(got.size(), 2);
        QCOMPARE(got.at(0), withChecksum("$WIMDA,29.9213,I,1.01325,B,,,,,,,,,,,,,,,,") + "\r\n");
        QCOMPARE(got.at(1), withChecksum("$WIALR,000000.00,001,A,V,PRESSURE FALLING VERY RAPIDLY") + "\r\n");
    }
};

const QHostAddress TestNmeaSenderUdp::Broadcast(QStringLiteral("198.18.0.255"));

QTEST_MAIN(TestNmeaSenderUdp)
#include "tst_nmeasenderudp.moc"
