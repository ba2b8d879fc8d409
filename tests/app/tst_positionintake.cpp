// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaSenderUdp.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/DatagramListener.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NetworkNamespace.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"
#include "util/Util.h"

#include <QtCore/QPointer>
#include <QtCore/QtPlugin>
#include <QtPositioning/QGeoPositionInfoSource>
#include <QtPositioning/QGeoPositionInfoSourceFactory>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

#include <memory>

// The host's location service, as the one position plug-in of this executable.
class FakePositionSource : public QGeoPositionInfoSource
{
public:
    explicit FakePositionSource(QObject* parent)
        : QGeoPositionInfoSource(parent)
    {
        ++made;
        current = this;
    }
    ~FakePositionSource() override { ++destroyed; }

    void setUpdateInterval(int msec) override
    {
        QGeoPositionInfoSource::setUpdateInterval(msec);
        intervals.append(msec);
    }
    void setPreferredPositioningMethods(PositioningMethods methods) override
    {
        QGeoPositionInfoSource::setPreferredPositioningMethods(methods);
        asked.append(int(methods));
    }
    QGeoPositionInfo lastKnownPosition(bool) const override { return QGeoPositionInfo(); }
    PositioningMethods supportedPositioningMethods() const override { return supported; }
    int minimumUpdateInterval() const override { return 100; }
    Error error() const override { return NoError; }
    void startUpdates() override { ++startCalls; }
    void stopUpdates() override { ++stopCalls; }
    void requestUpdate(int timeout) override { requests.append(timeout); }

    int positionConnections() const { return receivers(SIGNAL(positionUpdated(QGeoPositionInfo))); }
    void deliver(const QGeoPositionInfo& info) { emit positionUpdated(info); }

    static void reset()
    {
        made = 0;
        destroyed = 0;
        startCalls = 0;
        stopCalls = 0;
        asked.clear();
        intervals.clear();
        requests.clear();
        supported = AllPositioningMethods;
        available = true;
        current = nullptr;
    }

    static int made;
    static int destroyed;
    static int startCalls;
    static int stopCalls;
    static QList<int> asked;
    static QList<int> intervals;
    static QList<int> requests;
    static PositioningMethods supported;
    static bool available;
    static QPointer<FakePositionSource> current;
};

int FakePositionSource::made = 0;
int FakePositionSource::destroyed = 0;
int FakePositionSource::startCalls = 0;
int FakePositionSource::stopCalls = 0;
QList<int> FakePositionSource::asked;
QList<int> FakePositionSource::intervals;
QList<int> FakePositionSource::requests;
QGeoPositionInfoSource::PositioningMethods FakePositionSource::supported = QGeoPositionInfoSource::AllPositioningMethods;
bool FakePositionSource::available = true;
QPointer<FakePositionSource> FakePositionSource::current;

class FakePositionPlugin : public QObject, public QGeoPositionInfoSourceFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.position.sourcefactory/5.0" FILE "fakeposition.json")
    Q_INTERFACES(QGeoPositionInfoSourceFactory)

public:
    QGeoPositionInfoSource* positionInfoSource(QObject* parent) override
    {
        return FakePositionSource::available ? new FakePositionSource(parent) : nullptr;
    }
    QGeoSatelliteInfoSource* satelliteInfoSource(QObject*) override { return nullptr; }
    QGeoAreaMonitorSource* areaMonitor(QObject*) override { return nullptr; }
};

Q_IMPORT_PLUGIN(FakePositionPlugin)

// Position, course and speed from the host's location service and from RMC sentences.
class TestPositionIntake : public QObject
{
    Q_OBJECT

private:
    struct Fixture : BackEndFixture
    {
        explicit Fixture(const QVariantMap& extra = {})
            : BackEndFixture(extra)
        {
            nmea.reset(new Nmea0183(nullptr));
        }
        ~Fixture()
        {
            nmea.reset();
        }
        // One RMC sentence through the reading path, as if it came from `source`.
        void rmc(const QByteArray& body, NmeaSourceType source = Serial)
        {
            nmea->decode(body + '*' + Nmea0183::computeChecksum(body).toLatin1(), Rmc, source);
        }
        // The position string of one tick.
        QString tickPosition(QString* cogsog = nullptr)
        {
            QSignalSpy updates(b.get(), &BackEnd::dataUpdated);
            b->slot_timerData();
            if (cogsog)
                *cogsog = updates.value(0).value(2).toString();
            return updates.value(0).value(1).toString();
        }
        std::unique_ptr<Nmea0183> nmea;
    };

    static QGeoPositionInfo fix(double latitude, double longitude, double accuracy = 10.0)
    {
        QGeoPositionInfo info(QGeoCoordinate(latitude, longitude), QDateTime::currentDateTimeUtc());
        info.setAttribute(QGeoPositionInfo::HorizontalAccuracy, accuracy);
        return info;
    }

    static constexpr double Knots = 3.6 / 1.852;

private slots:
    void init()
    {
        Clock::reset();
        FakePositionSource::reset();
    }

    void cleanup() { Clock::reset(); }

    // ---- the service ----

    void serviceStartsWithDefaults()
    {
        MessageLog log;
        Fixture f;
        QCOMPARE(FakePositionSource::made, 1);
        QCOMPARE(FakePositionSource::startCalls, 1);
        QCOMPARE(FakePositionSource::intervals, QList<int>{1000});
        QVERIFY(FakePositionSource::current);
        QCOMPARE(FakePositionSource::current->parent(), f.b.get());
        QCOMPARE(log.count(QStringLiteral("trying to start location services")), 1);
        QCOMPARE(log.count(QStringLiteral("location services started")), 1);
    }

    void serviceFollowsTheSettings_data()
    {
        Columns::add<int, int, bool>("posSource", "usePos", "wanted");
        QTest::newRow("NMEA as position source stops and deletes the service") << 2 << 1 << false;
        QTest::newRow("position not wanted stops it") << 1 << 0 << false;
        QTest::newRow("neither") << 2 << 0 << false;
        QTest::newRow("internal and wanted keeps it") << 1 << 1 << true;
        QTest::newRow("any value but 0 wants a position") << 1 << 3 << true;
    }

    void serviceFollowsTheSettings()
    {
        QFETCH(int, posSource);
        QFETCH(int, usePos);
        QFETCH(bool, wanted);
        Fixture f;
        QPointer<FakePositionSource> first = FakePositionSource::current;
        QVERIFY(first);
        first->deliver(fix(48.5, -4.25));
        QCOMPARE(f.b->getPosition(), QPointF(-4.25, 48.5));

        f.b->setSetting(QStringLiteral("SettingPosSource"), posSource);
        f.b->setSetting(QStringLiteral("SettingUsePos"), usePos);
        MessageLog log;
        f.b->startLocationServices();
        if (wanted) {
            QVERIFY(first);
            QCOMPARE(FakePositionSource::made, 1);
            QCOMPARE(FakePositionSource::startCalls, 2);
            QCOMPARE(FakePositionSource::stopCalls, 0);
            QCOMPARE(log.count(QStringLiteral("location services started")), 1);
        } else {
            QVERIFY(!first);
            QCOMPARE(FakePositionSource::stopCalls, 1);
            QCOMPARE(FakePositionSource::destroyed, 1);
            QVERIFY(log.messages().isEmpty());
            // The last internal position stays until something clears it.
            QCOMPARE(f.b->getPosition(), QPointF(-4.25, 48.5));
            // A second stop finds nothing to stop.
            f.b->startLocationServices();
            QCOMPARE(FakePositionSource::stopCalls, 1);
        }
    }

    void serviceComesBackWhenWantedAgain()
    {
        Fixture f({{QStringLiteral("SettingPosSource"), 2}});
        QCOMPARE(FakePositionSource::made, 0);
        f.b->setSetting(QStringLiteral("SettingPosSource"), 1);
        f.b->startLocationServices();
        QCOMPARE(FakePositionSource::made, 1);
        QCOMPARE(FakePositionSource::startCalls, 1);
    }

    void noServiceOnTheHostIsSilent()
    {
        FakePositionSource::available = false;
        MessageLog log;
        Fixture f;
        QCOMPARE(log.count(QStringLiteral("trying to start location services")), 1);
        QCOMPARE(log.count(QStringLiteral("location services started")), 0);
        f.b->startLocationServices();
        QCOMPARE(log.count(QStringLiteral("trying to start location services")), 2);
        QCOMPARE(log.count(QStringLiteral("location services started")), 0);
        QCOMPARE(FakePositionSource::made, 0);
    }

    void startingTwiceConnectsOnce()
    {
        Fixture f;
        f.b->startLocationServices();
        QCOMPARE(FakePositionSource::made, 1);
        QCOMPARE(FakePositionSource::current->positionConnections(), 1);
        QCOMPARE(FakePositionSource::intervals, (QList<int>{1000, 1000}));
        MessageLog log;
        FakePositionSource::current->deliver(QGeoPositionInfo());
        QCOMPARE(log.count(QStringLiteral("no fix")), 1);
    }

    void positioningMethods_data()
    {
        Columns::add<int, QList<int>, int>("supported", "asked", "preferred");
        const int satellite = QGeoPositionInfoSource::SatellitePositioningMethods;
        const int all = QGeoPositionInfoSource::AllPositioningMethods;
        const int other = QGeoPositionInfoSource::NonSatellitePositioningMethods;
        QTest::newRow("satellites when the host has them") << all << QList<int>{satellite} << satellite;
        QTest::newRow("everything when it has none") << other << QList<int>{satellite, all} << other;
    }

    void positioningMethods()
    {
        QFETCH(int, supported);
        QFETCH(QList<int>, asked);
        QFETCH(int, preferred);
        FakePositionSource::supported = QGeoPositionInfoSource::PositioningMethods(supported);
        Fixture f;
        QCOMPARE(FakePositionSource::asked, asked);
        QCOMPARE(int(FakePositionSource::current->preferredPositioningMethods()), preferred);
    }

    // ---- updates ----

    void updateGivesPositionCourseAndSpeed()
    {
        Fixture f;
        QGeoPositionInfo info = fix(-33.25, 151.5);
        info.setAttribute(QGeoPositionInfo::Direction, 123.4);
        info.setAttribute(QGeoPositionInfo::GroundSpeed, 5.0);
        FakePositionSource::current->deliver(info);
        QCOMPARE(f.b->getPosition(), QPointF(151.5, -33.25));
        QCOMPARE(f.b->getCogSog().first, 123.4);
        QCOMPARE(f.b->getCogSog().second, 5.0 * Knots);
    }

    void accuracyLimit_data()
    {
        Columns::add<double, bool>("accuracy", "accepted");
        QTest::newRow("exactly 200 m is accepted") << 200.0 << true;
        QTest::newRow("199.9 m is accepted") << 199.9 << true;
        QTest::newRow("200.01 m is not") << 200.01 << false;
        QTest::newRow("5 km is not") << 5000.0 << false;
    }

    void accuracyLimit()
    {
        QFETCH(double, accuracy);
        QFETCH(bool, accepted);
        Fixture f;
        FakePositionSource::current->deliver(fix(10.0, 20.0));
        MessageLog log;
        FakePositionSource::current->deliver(fix(11.0, 21.0, accuracy));
        QCOMPARE(f.b->getPosition(), accepted ? QPointF(21.0, 11.0) : QPointF(0.0, 0.0));
        QCOMPARE(FakePositionSource::requests, accepted ? QList<int>{} : QList<int>{0});
        QVERIFY(log.messages().isEmpty());
    }

    void updateWithoutAFix_data()
    {
        QTest::addColumn<QGeoPositionInfo>("info");
        QTest::newRow("an invalid update") << QGeoPositionInfo();
        QTest::newRow("a position without accuracy")
                << QGeoPositionInfo(QGeoCoordinate(1.0, 2.0), QDateTime::currentDateTimeUtc());
    }

    void updateWithoutAFix()
    {
        QFETCH(QGeoPositionInfo, info);
        Fixture f;
        FakePositionSource::current->deliver(fix(10.0, 20.0));
        MessageLog log;
        FakePositionSource::current->deliver(info);
        QCOMPARE(log.messages(), QStringList{QStringLiteral("no fix")});
        QCOMPARE(f.b->getPosition(), QPointF(0.0, 0.0));
        QCOMPARE(f.tickPosition(), QStringLiteral("No Position"));
        QVERIFY(FakePositionSource::requests.isEmpty());
    }

    void internalFixWinsWhileRmcIsKeptUpToDate()
    {
        Fixture f;
        FakePositionSource::current->deliver(fix(50.0, -1.0));
        f.rmc("$GPRMC,120000,A,4807.038,N,01131.000,E,5.0,90.0,230394,,,A");
        QCOMPARE(f.b->getPosition(), QPointF(-1.0, 50.0));
        QCOMPARE(f.tickPosition(), Util::formatPosition(-1.0, 50.0));
        f.rmc("$GPRMC,120001,A,4900.000,N,00200.000,W,6.0,91.0,230394,,,A");
        QCOMPARE(f.b->getPosition(), QPointF(-1.0, 50.0));

        // The internal fix lost: the next tick falls back on the latest RMC.
        FakePositionSource::current->deliver(fix(50.0, -1.0, 250.0));
        QString cogsog;
        QCOMPARE(f.tickPosition(&cogsog), Util::formatPosition(-2.0, 49.0));
        QCOMPARE(f.b->getPosition(), QPointF(-2.0, 49.0));
        QCOMPARE(f.b->getCogSog().first, 91.0);
        QCOMPARE(f.b->getCogSog().second, 6.0);
        QVERIFY(cogsog.startsWith(QStringLiteral("COG 091")));
    }

    void missingSpeedAndCourseReadAsZero()
    {
        Fixture f;
        QGeoPositionInfo info = fix(45.0, 5.0);
        info.setAttribute(QGeoPositionInfo::Direction, 270.0);
        FakePositionSource::current->deliver(info);
        QCOMPARE(f.b->getCogSog(), std::make_pair(270.0, 0.0));
        QString cogsog;
        f.tickPosition(&cogsog);
        QVERIFY(cogsog.startsWith(QStringLiteral("COG 270")));

        // Neither attribute: course and speed are both zero, and the line shows none.
        FakePositionSource::current->deliver(fix(45.0, 5.0));
        QCOMPARE(f.b->getCogSog(), std::make_pair(0.0, 0.0));
        QCOMPARE(f.tickPosition(&cogsog), Util::formatPosition(5.0, 45.0));
        QCOMPARE(cogsog, QStringLiteral("no"));
    }

    void phoneEntry_data()
    {
        Columns::add<double, double, double, double>("course", "speed", "cog", "sog");
        QTest::newRow("course and speed taken, speed in knots") << 45.5 << 2.0 << 45.5 << 2.0 * Knots;
        QTest::newRow("a negative course is 0") << -1.0 << 2.0 << 0.0 << 2.0 * Knots;
        QTest::newRow("a negative speed is 0") << 10.0 << -1.0 << 10.0 << 0.0;
    }

    void phoneEntry()
    {
        QFETCH(double, course);
        QFETCH(double, speed);
        QFETCH(double, cog);
        QFETCH(double, sog);
        Fixture f;
        f.b->setIosGpsData(7.25, 43.5, course, speed);
        QCOMPARE(f.b->getPosition(), QPointF(7.25, 43.5));
        QCOMPARE(f.b->getCogSog().first, cog);
        QCOMPARE(f.b->getCogSog().second, sog);
    }

    // ---- the position's broadcast, in a private network ----

    void internalPositionIsBroadcast_data()
    {
        Columns::ints("port", {{"default port 10110", -1}, {"port from updPort", 20600}});
    }

    void internalPositionIsBroadcast()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, port);
        Clock::setFixedSecsSinceEpoch(764426119); // 1994-03-23 12:35:19 UTC
        DatagramListener listener(port > 0 ? port : 10110);
        Fixture f;
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 1);
        f.b->setSetting(QStringLiteral("sendUdpPos"), 1);
        if (port > 0)
            f.b->setSetting(QStringLiteral("updPort"), port);
        QGeoPositionInfo info = fix(48.1173, 11.516667);
        info.setAttribute(QGeoPositionInfo::Direction, 84.4);
        info.setAttribute(QGeoPositionInfo::GroundSpeed, 22.4 / Knots);
        FakePositionSource::current->deliver(info);
        QVERIFY(listener.waitFor(1));
        QVERIFY(listener.staysQuietFor(100));
        // Speed in its own field and course in its own: this path keeps the declared order.
        QCOMPARE(listener.datagrams(),
                 QList<QByteArray>{"$ECRMC,123519.00,A,4807.038,N,01131.000,E,22.40,84.40,230394,,,*02\r\n"});
        QVERIFY(f.b->getSenderUdp());
    }

    void positionNotBroadcastUnlessBothSwitchesAreOn_data()
    {
        Columns::add<int, int>("udpOut", "sendPos");
        QTest::newRow("output on, position off") << 1 << 0;
        QTest::newRow("output off, position on") << 0 << 1;
    }

    void positionNotBroadcastUnlessBothSwitchesAreOn()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, udpOut);
        QFETCH(int, sendPos);
        DatagramListener listener(10110);
        Fixture f;
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 1);
        f.b->setSetting(QStringLiteral("sendUdpPos"), 1);
        FakePositionSource::current->deliver(fix(1.0, 1.0));
        QVERIFY(listener.waitFor(1));
        QVERIFY(f.b->getSenderUdp());

        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), udpOut);
        f.b->setSetting(QStringLiteral("sendUdpPos"), sendPos);
        listener.clear();
        FakePositionSource::current->deliver(fix(2.0, 2.0));
        QVERIFY(!f.b->getSenderUdp());
        QVERIFY(listener.staysQuietFor(300));
        QCOMPARE(f.b->getPosition(), QPointF(2.0, 2.0));
    }

    void phoneEntryBroadcastsToo()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        Clock::setFixedSecsSinceEpoch(764426119);
        DatagramListener listener(10110);
        Fixture f({{QStringLiteral("SettingUseUdpOut"), 0}});
        f.b->setSetting(QStringLiteral("SettingUseUdpOut"), 1);
        f.b->setSetting(QStringLiteral("sendUdpPos"), 1);
        f.b->setIosGpsData(-0.5, -33.25, -5.0, -1.0);
        QVERIFY(listener.waitFor(1));
        const QByteArray body = "$ECRMC,123519.00,A,3315.000,S,00030.000,W,0.00,0.00,230394,,,";
        QCOMPARE(listener.datagrams().first(), body + '*' + NmeaSenderUdp::computeChecksum(body).toLatin1() + "\r\n");
    }
};

QTEST_MAIN(TestPositionIntake)
#include "tst_positionintake.moc"
