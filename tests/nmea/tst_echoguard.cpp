// SPDX-License-Identifier: GPL-3.0-or-later
// Our own pressure, sent to a Signal K server, never comes back through the network inputs
// as a reading: the sentences that server sends for a pressure, on each input.
#include "nmea/EchoGuard.h"
#include "nmea/Nmea0183.h"

#include "ItemFixture.h"
#include "util/Clock.h"

#include <QtTest/QtTest>

class TestEchoGuard : public QObject
{
    Q_OBJECT

private:
    static void decode(const QByteArray& sentence, NmeaSourceType source)
    {
        Nmea0183 codec(nullptr);
        NmeaMessageType type;
        QVERIFY(codec.isMessageImplemented(sentence, &type));
        QVERIFY(Nmea0183::validateChecksum(sentence));
        codec.decode(sentence, type, source);
    }

private slots:
    void init()
    {
        Clock::setFixedMonotonicMs(1000000);
        EchoGuard::reset();
    }

    void cleanup()
    {
        EchoGuard::reset();
        Clock::reset();
    }

    void filterHoldsBackTheNetworkForAWhile_data()
    {
        QTest::addColumn<int>("source");
        QTest::addColumn<qint64>("after");
        QTest::addColumn<double>("expected");
        QTest::newRow("TCP at once") << int(Tcp) << qint64(0) << -2000.0;
        QTest::newRow("UDP at once") << int(Udp) << qint64(0) << -2000.0;
        QTest::newRow("TCP just within the hold") << int(Tcp) << EchoGuard::HoldMs - 1 << -2000.0;
        QTest::newRow("TCP once the hold is over") << int(Tcp) << EchoGuard::HoldMs << 1012.3;
        QTest::newRow("the device is never held") << int(Serial) << qint64(0) << 1012.3;
        QTest::newRow("the sensor is never held") << int(Internal) << qint64(0) << 1012.3;
    }

    void filterHoldsBackTheNetworkForAWhile()
    {
        QFETCH(int, source);
        QFETCH(qint64, after);
        QFETCH(double, expected);
        QCOMPARE(EchoGuard::filter(1012.3, NmeaSourceType(source)), 1012.3);
        EchoGuard::noteSent();
        Clock::advanceMonotonicMs(after);
        QCOMPARE(EchoGuard::filter(1012.3, NmeaSourceType(source)), expected);
    }

    // What the server's "Convert Signal K to NMEA0183" plug-in makes of 101230 Pa: both are
    // sentences we read, and both are held back while our own pressure goes out.
    void serversSentencesAreReadAndHeldBack_data()
    {
        QTest::addColumn<QByteArray>("sentence");
        QTest::newRow("XDR barometer") << QByteArray("$IIXDR,P,1.0123,B,Barometer*16");
        QTest::newRow("MMB") << QByteArray("$IIMMB,29.8932,I,1.0123,B*73");
    }

    void serversSentencesAreReadAndHeldBack()
    {
        QFETCH(QByteArray, sentence);
        ItemFixture fixture;
        BackEnd& b = *fixture.b;
        decode(sentence, Tcp);
        QVERIFY(qAbs(b.getCurrentPressure() - 1012.3) < 1e-9);

        // Our pressure goes out: the echo takes the place of the reading it would renew.
        EchoGuard::noteSent();
        decode(sentence, Tcp);
        QCOMPARE(b.getCurrentPressure(), -2000.0);
        decode(sentence, Udp);
        QCOMPARE(b.getCurrentPressure(), -2000.0);
        // The device's own reading is untouched.
        decode(sentence, Serial);
        QVERIFY(qAbs(b.getCurrentPressure() - 1012.3) < 1e-9);

        b.setCurrentPressure(-2000.0, Serial);
        Clock::advanceMonotonicMs(EchoGuard::HoldMs);
        decode(sentence, Tcp);
        QVERIFY(qAbs(b.getCurrentPressure() - 1012.3) < 1e-9);
    }
};

QTEST_MAIN(TestEchoGuard)
#include "tst_echoguard.moc"
