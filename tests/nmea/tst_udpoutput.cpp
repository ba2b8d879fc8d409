// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaItemRMC.h"
#include "nmea/NmeaSenderUdp.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/DatagramListener.h"
#include "tests/support/FakePressureSensor.h"
#include "tests/support/NetworkNamespace.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>

#include <atomic>
#include <cmath>
#include <memory>

// The receiver's once-a-second output, and our own sentences read back by our own input.
// All of it broadcasts, so every test runs in a private network namespace.
class TestUdpOutput : public QObject
{
    Q_OBJECT

private:
    // A BackEnd with the given settings on top of no input, and a receiver of the test's own
    // that stays on this thread, so that its tick can be called directly.
    struct Fixture : BackEndFixture
    {
        using BackEndFixture::BackEndFixture;
        ~Fixture()
        {
            receiver.reset();
            if (b)
                NmeaTestKit::stopNmea(*b);
        }
        NmeaReceiver& ownReceiver()
        {
            if (!receiver) {
                receiver.reset(new NmeaReceiver);
                receiver->slot_startReceiving();
            }
            return *receiver;
        }
        std::unique_ptr<NmeaReceiver> receiver;
    };

    static QByteArray sentence(const QByteArray& body)
    {
        return body + '*' + NmeaSenderUdp::computeChecksum(body).toLatin1() + "\r\n";
    }
    static QByteArray xdr(double hpa)
    {
        return sentence("$GPXDR,P," + QByteArray::number(hpa / 1000.0, 'f', 5) + ",B,Barometer");
    }

    static constexpr qint64 March23rd1994 = 764426119; // 12:35:19 UTC

private slots:
    void init()
    {
        Clock::reset();
        FakePressureSensor::uninstall();
    }

    void cleanup()
    {
        FakePressureSensor::uninstall();
        Clock::reset();
    }

    // ---- the timer ----

    void timerOnlyWithOutputOn_data()
    {
        Columns::ints("udpOut", {{"output on makes the timer", 1}, {"output off makes none", 0}});
    }

    void timerOnlyWithOutputOn()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, udpOut);
        // A port name alone makes a receiver with no source, whatever the output says.
        Fixture f({{QStringLiteral("SettingUseUdpOut"), udpOut}, {QStringLiteral("SettingSerialPort"), "ttyX0"}});
        NmeaReceiver* receiver = f.b->getReceiver();
        QVERIFY(receiver);
        QTRY_VERIFY(NmeaTestKit::onReceiverThread(receiver, [&] { return receiver->getNmea() != nullptr; }));
        const QList<int> timer = NmeaTestKit::onReceiverThread(receiver, [&] {
            QTimer* t = receiver->getTimerSend();
            return t ? QList<int>{t->interval(), t->isActive() ? 1 : 0, t->parent() == receiver ? 1 : 0}
                     : QList<int>{};
        });
        QCOMPARE(timer, udpOut == 1 ? (QList<int>{1000, 1, 1}) : QList<int>{});
    }

    void realTimerSendsTheSensorsRawPressureEverySecond()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        FakePressureSensor::install();
        FakePressureSensor::pascals = 101325.0;
        DatagramListener listener(10110);
        // The receiver has no source at all; the offset is not the receiver's business.
        Fixture f({{QStringLiteral("SettingUseUdpOut"), 1},
                   {QStringLiteral("offset"), 3.0},
                   {QStringLiteral("elevation"), 100.0}});
        QVERIFY(f.b->getReceiver());
        QVERIFY(listener.waitFor(4, 6000));
        const QList<QByteArray> got = listener.datagrams();
        for (const QByteArray& datagram : got)
            QCOMPARE(datagram, xdr(1013.25));
        const QList<qint64> times = listener.arrivals();
        for (int i = 1; i < 4; ++i) {
            const qint64 gap = times.at(i) - times.at(i - 1);
            QVERIFY2(gap >= 850 && gap <= 1150, qPrintable(QString::number(gap)));
        }
    }

    void eachSenderBelongsToTheThreadThatMadeIt()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        FakePressureSensor::install();
        DatagramListener tick(10110);
        DatagramListener sensor(5999);
        Fixture f({{QStringLiteral("SettingUseUdpOut"), 1}});
        NmeaReceiver* receiver = f.b->getReceiver();
        QVERIFY(receiver);
        QVERIFY(tick.waitFor(1, 3000));
        QVERIFY(sensor.waitFor(1, 3000));
        // Two senders that know nothing of each other, each used only where it was made.
        QVERIFY(f.b->getSenderUdp());
        QCOMPARE(f.b->getSenderUdp()->thread(), QThread::currentThread());
        QThread* senderThread = NmeaTestKit::onReceiverThread(receiver, [&] {
            return receiver->getSender() ? receiver->getSender()->thread() : nullptr;
        });
        QCOMPARE(senderThread, receiver->thread());
        QVERIFY(senderThread != QThread::currentThread());
        QVERIFY(NmeaTestKit::onReceiverThread(receiver, [&] { return receiver->getSender() != f.b->getSenderUdp(); }));
    }

    // ---- one tick ----

    void tickSendsTheRawPressureOnUpdPort_data()
    {
        Columns::ints("port", {{"default port 10110", -1}, {"port from updPort", 20800}});
    }

    void tickSendsTheRawPressureOnUpdPort()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, port);
        DatagramListener listener(port > 0 ? port : 10110);
        Fixture f({{QStringLiteral("offset"), 5.0}, {QStringLiteral("elevation"), 100.0}});
        if (port > 0)
            f.b->setSetting(QStringLiteral("updPort"), port);
        NmeaReceiver& receiver = f.ownReceiver();
        QVERIFY(!receiver.getTimerSend());
        QVERIFY(!receiver.getSender());
        f.b->setCurrentPressure(1013.25, Serial);
        receiver.slot_sendUdp();
        QVERIFY(receiver.getSender());
        NmeaSenderUdp* first = receiver.getSender();
        QVERIFY(listener.waitFor(1));
        QCOMPARE(listener.datagrams(), QList<QByteArray>{xdr(1013.25)});
        receiver.slot_sendUdp();
        QCOMPARE(receiver.getSender(), first);
        QVERIFY(listener.waitFor(2));
    }

    void portChangeAppliesAtTheNextTick()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        DatagramListener before(20901);
        DatagramListener after(20902);
        Fixture f({{QStringLiteral("updPort"), 20901}});
        NmeaReceiver& receiver = f.ownReceiver();
        f.b->setCurrentPressure(987.6, Tcp);
        receiver.slot_sendUdp();
        QVERIFY(before.waitFor(1));
        f.b->setSetting(QStringLiteral("updPort"), 20902);
        receiver.slot_sendUdp();
        QVERIFY(after.waitFor(1));
        QVERIFY(before.staysQuietFor(100));
        QCOMPARE(before.datagrams(), QList<QByteArray>{xdr(987.6)});
        QCOMPARE(after.datagrams(), QList<QByteArray>{sentence("$GPXDR,P,0.98760,B,Barometer")});
    }

    void pressureOnlyAboveZero_data()
    {
        Columns::add<double, bool>("reading", "sent");
        QTest::newRow("no reading sends nothing") << -2000.0 << false;
        QTest::newRow("a live 500 hPa is sent") << 500.0 << true;
    }

    void pressureOnlyAboveZero()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(double, reading);
        QFETCH(bool, sent);
        DatagramListener listener(10110);
        Fixture f;
        NmeaReceiver& receiver = f.ownReceiver();
        f.b->setCurrentPressure(reading, Udp);
        receiver.slot_sendUdp();
        if (sent) {
            QVERIFY(listener.waitFor(1));
            QCOMPARE(listener.datagrams(), QList<QByteArray>{xdr(reading)});
        } else {
            QVERIFY(listener.staysQuietFor(300));
        }
    }

    void positionIsNotSent_data()
    {
        Columns::add<int, QPointF>("sendUdpPos", "position");
        QTest::newRow("at exactly zero") << 1 << QPointF(0.0, 0.0);
        QTest::newRow("without the switch") << 0 << QPointF(1.0, 2.0);
    }

    void positionIsNotSent()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, sendUdpPos);
        QFETCH(QPointF, position);
        DatagramListener listener(10110);
        Fixture f({{QStringLiteral("sendUdpPos"), sendUdpPos}});
        NmeaReceiver& receiver = f.ownReceiver();
        f.b->setCurrentPressure(1000.0, Serial);
        f.b->setPositionData(position, 5.0, 90.0, Serial);
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(300));
        QCOMPARE(listener.datagrams(), QList<QByteArray>{xdr(1000.0)});
    }

    void positionIsSentWithCourseAndSpeedSwapped()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        Clock::setFixedSecsSinceEpoch(March23rd1994);
        DatagramListener listener(10110);
        Fixture f({{QStringLiteral("sendUdpPos"), 1}});
        NmeaReceiver& receiver = f.ownReceiver();
        f.b->setPositionData(QPointF(11.516667, 48.1173), 22.4, 84.4, Tcp);
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(300));
        // No pressure: the position alone, course in the speed's field and speed in the course's.
        QCOMPARE(listener.datagrams(),
                 QList<QByteArray>{sentence("$ECRMC,123519.00,A,4807.038,N,01131.000,E,84.40,22.40,230394,,,")});
    }

    // ---- settings across threads ----

    // The pages write settings on the main thread whenever they like, while the worker's
    // output tick reads "updPort" and "sendUdpPos" each second. A thread sanitizer build
    // watches both sides here; the port written last, not yet synced, is the one used next.
    void settingsWrittenOnTheMainThreadWhileTheOutputTicks()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        DatagramListener first(20911);
        DatagramListener last(20912);
        Fixture f({{QStringLiteral("SettingUseUdpOut"), 1}, {QStringLiteral("updPort"), 20911}});
        NmeaReceiver* receiver = f.b->getReceiver();
        QVERIFY(receiver);
        f.b->setCurrentPressure(1002.5, Tcp);
        QVERIFY(first.waitFor(1, 3000));

        // Besides its timer, the worker reads as fast as it can for the whole time.
        std::atomic<bool> writing{true};
        std::atomic<int> reads{0};
        QMetaObject::invokeMethod(
                receiver,
                [&] {
                    while (writing.load()) {
                        if (backend->getSetting(QStringLiteral("updPort"), 10110).toInt() == 20911)
                            ++reads;
                        backend->getSetting(QStringLiteral("sendUdpPos"), 0);
                        // The worker's own timer goes on ticking in between.
                        QCoreApplication::processEvents();
                    }
                },
                Qt::QueuedConnection);
        QElapsedTimer timer;
        timer.start();
        int writes = 0;
        while (timer.elapsed() < 2200) {
            f.b->setSetting(QStringLiteral("updPort"), 20911);
            f.b->setSetting(QStringLiteral("sendUdpPos"), 0);
            f.b->setSetting(QStringLiteral("unitPre"), writes % 5);
            f.b->setSetting(QStringLiteral("scratch%1").arg(writes % 64), QString::number(writes));
            if (writes % 100 == 0)
                f.b->syncSettings();
            ++writes;
            if (writes % 50 == 0)
                QCoreApplication::processEvents();
        }
        writing = false;
        // The tick kept its second meanwhile.
        QVERIFY(first.waitFor(3, 3000));
        QVERIFY(reads.load() > 0);
        QVERIFY(writes > 100);

        f.b->setSetting(QStringLiteral("updPort"), 20912);
        QVERIFY(last.waitFor(1, 2500));
        QCOMPARE(last.datagrams().first(), xdr(1002.5));
        // Every write reached the page's own reader on the main thread as well.
        QCOMPARE(f.b->getSetting(QStringLiteral("updPort"), 10110).toInt(), 20912);
    }

    // ---- round trip ----

    void ourSentencesReadBackByOurInput()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        Fixture f({{QStringLiteral("SettingUseUdp"), 1}, {QStringLiteral("SettingUdpPort"), 21000}});
        NmeaReceiver* receiver = f.b->getReceiver();
        QVERIFY(receiver);
        NmeaSenderUdp sender;
        // The input binds a moment after its thread starts.
        QTRY_VERIFY_WITH_TIMEOUT((sender.sendPressure(1013.25, 21000), f.b->getCurrentPressure() > 0.0), 5000);
        // The bar rule turns 1.01325 back into hectopascals.
        QVERIFY(std::fabs(f.b->getCurrentPressure() - 1013.25) < 1e-9);
        QCOMPARE(f.b->getPressureSource(), QStringLiteral("From UDP connection"));

        QVERIFY(sender.sendPosition(QPointF(-0.5, -33.25), 22.4, 84.4, 21000));
        QTRY_VERIFY(f.b->getPosition() != QPointF(0.0, 0.0));
        QCOMPARE(f.b->getPosition(), QPointF(-0.5, -33.25));
        QCOMPARE(f.b->getCogSog(), std::make_pair(84.4, 22.4));
        // An empty mode field reads as "A": a valid fix.
        const QStringList item = NmeaTestKit::onReceiverThread(receiver, [&] {
            auto* rmc = static_cast<NmeaItemRMC*>(receiver->getNmea()->item(Rmc));
            return rmc ? QStringList{rmc->status, rmc->mode} : QStringList{};
        });
        QCOMPARE(item, (QStringList{QStringLiteral("A"), QStringLiteral("A")}));

        // Thousandths of a minute are what the sentence carries.
        QVERIFY(sender.sendPosition(QPointF(11.516667, 48.1173), 0.0, 0.0, 21000));
        QTRY_VERIFY(f.b->getPosition().x() > 0.0);
        QVERIFY(std::fabs(f.b->getPosition().x() - 11.516667) < 1e-5);
        QVERIFY(std::fabs(f.b->getPosition().y() - 48.1173) < 1e-5);
    }

    // ---- MDA and the pressure-fall ALR ----

    void mdaOnlyWhenSwitchedOn_data()
    {
        Columns::ints("mda", {{"MDA off sends the XDR alone", 0}, {"MDA on sends both", 1}});
    }

    void mdaOnlyWhenSwitchedOn()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, mda);
        DatagramListener listener(10110);
        Fixture f({{QStringLiteral("sendUdpMda"), mda}});
        NmeaReceiver& receiver = f.ownReceiver();
        f.b->setCurrentPressure(1013.25, Tcp);
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(1 + mda));
        QVERIFY(listener.staysQuietFor(200));
        QList<QByteArray> expected{xdr(1013.25)};
        if (mda == 1)
            expected << sentence("$WIMDA,29.9213,I,1.01325,B,,,,,,,,,,,,,,,,");
        QCOMPARE(listener.datagrams(), expected);
    }

    void ourMdaReadsBackAsTheXdrDoes()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        Fixture f({{QStringLiteral("SettingUseUdp"), 1}, {QStringLiteral("SettingUdpPort"), 21001}});
        QVERIFY(f.b->getReceiver());
        NmeaSenderUdp sender;
        QTRY_VERIFY_WITH_TIMEOUT((sender.sendPressure(1002.37, 21001), f.b->getCurrentPressure() > 0.0), 5000);
        const double fromXdr = f.b->getCurrentPressure();
        f.b->setCurrentPressure(-2000.0, Udp);
        QVERIFY(sender.sendPressureMda(1002.37, 21001));
        QTRY_VERIFY(f.b->getCurrentPressure() > 0.0);
        QCOMPARE(f.b->getCurrentPressure(), fromXdr);
    }

    void alrAtEachChangeAndEveryMinuteWhileALevelHolds()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        DatagramListener listener(10110);
        Fixture f;
        NmeaReceiver& receiver = f.ownReceiver();
        const auto alrs = [&] {
            QList<QByteArray> found;
            for (const QByteArray& d : listener.datagrams())
                if (d.startsWith("$WIALR"))
                    found << d;
            return found;
        };
        // No level: nothing, however long.
        for (int i = 0; i < 70; ++i)
            receiver.slot_sendUdp();
        QVERIFY(listener.staysQuietFor(100));
        QCOMPARE(alrs().size(), 0);

        f.b->publishWarning(WarningState{1, false, March23rd1994});
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(1));
        QCOMPARE(alrs(), QList<QByteArray>{sentence("$WIALR,123519.00,001,A,V,PRESSURE FALLING QUICKLY")});
        for (int i = 0; i < 59; ++i)
            receiver.slot_sendUdp();
        QVERIFY(listener.staysQuietFor(100));
        QCOMPARE(alrs().size(), 1);
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(2));
        QCOMPARE(alrs().size(), 2);

        f.b->publishWarning(WarningState{1, true, March23rd1994});
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(3));
        QCOMPARE(alrs().last(), sentence("$WIALR,123519.00,001,A,A,PRESSURE FALLING QUICKLY"));

        f.b->publishWarning(WarningState{0, false, March23rd1994 + 60});
        receiver.slot_sendUdp();
        QVERIFY(listener.waitFor(4));
        QCOMPARE(alrs().last(), sentence("$WIALR,123619.00,001,V,V,PRESSURE FALL ENDED"));
        for (int i = 0; i < 70; ++i)
            receiver.slot_sendUdp();
        QVERIFY(listener.staysQuietFor(100));
        QCOMPARE(alrs().size(), 4);
    }
};

QTEST_MAIN(TestUdpOutput)
#include "tst_udpoutput.moc"
