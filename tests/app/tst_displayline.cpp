// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "nmea/Nmea0183.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/LogFixture.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"
#include "util/Util.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QTranslator>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>
#include <memory>

// The four strings of each tick: date, position, course and speed, pressure.
class TestDisplayLine : public QObject
{
    Q_OBJECT

private:
    using Fixture = BackEndFixture;

    // The strings of one tick.
    static QStringList tick(BackEnd& b)
    {
        QSignalSpy updates(&b, &BackEnd::dataUpdated);
        b.slot_timerData();
        if (updates.count() != 1)
            return {};
        QStringList strings;
        for (const QVariant& value : updates.at(0))
            strings << value.toString();
        return strings;
    }

    static double factor(double h) { return std::pow(1.0 + h * -22.55687745833333 / 1000000.0, 5.2561); }
    static QString speedText(double knots) { return Util::formatSpeed(knots * 1.852 / 3.6); }

private slots:
    void init()
    {
        Clock::reset();
        Clock::setFixedSecsSinceEpoch(1793000000);
        Clock::setFixedMonotonicMs(7000000);
    }

    void cleanup() { Clock::reset(); }

    // ---- course and speed ----

    void courseAndSpeed_data()
    {
        Columns::add<double, double, QString>("cog", "sog", "cogsog");
        QTest::newRow("course 0 and speed 0 with a fix is no") << 0.0 << 0.0 << "no";
        QTest::newRow("course 0 and speed 3 is shown")
                << 0.0 << 3.0 << QStringLiteral("COG 000deg T - SOG ") + speedText(3.0);
        QTest::newRow("course 359.9 is truncated to 359, not rounded")
                << 359.9 << 1.0 << QStringLiteral("COG 359deg T - SOG ") + speedText(1.0);
        QTest::newRow("course 0.9 truncates to 000 and is still shown")
                << 0.9 << 0.0 << QStringLiteral("COG 000deg T - SOG ") + speedText(0.0);
        QTest::newRow("course and speed within 1e-12 of zero are no") << 1e-12 << -1e-12 << "no";
        QTest::newRow("a speed of 1e-11 is shown")
                << 0.0 << 1e-11 << QStringLiteral("COG 000deg T - SOG ") + speedText(1e-11);
        QTest::newRow("a course past the integers truncates to the lowest integer")
                << 1e300 << 1.0
                << QStringLiteral("COG ") + Util::formatDir3(std::numeric_limits<int>::min())
                           + QStringLiteral("deg T - SOG ") + speedText(1.0);
        QTest::newRow("a NaN course is not no")
                << std::nan("") << 0.0
                << QStringLiteral("COG ") + Util::formatDir3(std::numeric_limits<int>::min())
                           + QStringLiteral("deg T - SOG ") + speedText(0.0);
    }

    void courseAndSpeed()
    {
        QFETCH(double, cog);
        QFETCH(double, sog);
        QFETCH(QString, cogsog);
        Fixture f;
        f.b->setPositionData(QPointF(-4.5, 48.25), sog, cog, Serial);
        const QStringList strings = tick(*f.b);
        QCOMPARE(strings.value(2), cogsog);
        // The position is shown with or without course and speed.
        QCOMPARE(strings.value(1), Util::formatPosition(-4.5, 48.25));
    }

    void noFixGivesNoCourse()
    {
        Fixture f;
        f.b->setPositionData(QPointF(1.0, 1.0), 5.0, 90.0, Tcp);
        f.b->clearHasFix(Tcp);
        const QStringList strings = tick(*f.b);
        QCOMPARE(strings.value(1), QStringLiteral("No Position"));
        QCOMPARE(strings.value(2), QStringLiteral("no"));
    }

    // ---- position ----

    void position_data()
    {
        Columns::add<double, double, bool, QString>("x", "y", "hasFix", "position");
        QTest::newRow("(0, 0) with a live fix is No Position") << 0.0 << 0.0 << true << "No Position";
        QTest::newRow("no fix is No Position") << 0.0 << 0.0 << false << "No Position";
        QTest::newRow("longitude 0.000001 on the equator is a position")
                << 0.000001 << 0.0 << true << Util::formatPosition(0.000001, 0.0);
        QTest::newRow("latitude alone is a position") << 0.0 << -12.5 << true << Util::formatPosition(0.0, -12.5);
        QTest::newRow("a NaN component counts as a position")
                << std::nan("") << 0.0 << true << Util::formatPosition(std::nan(""), 0.0);
    }

    void position()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(bool, hasFix);
        QFETCH(QString, position);
        Fixture f;
        if (hasFix)
            f.b->setPositionData(QPointF(x, y), 0.0, 0.0, Udp);
        QCOMPARE(tick(*f.b).value(1), position);
    }

    // ---- pressure ----

    void pressure_data()
    {
        Columns::add<double, int, double, double, int, double>(
                "reading", "preDisplay", "elevation", "offset", "unit", "shown");
        QTest::newRow("station level at 300 m: no reduction") << 1000.0 << 1 << 300.0 << 0.0 << 0 << 1000.0;
        QTest::newRow("station level keeps the offset") << 1000.0 << 1 << 300.0 << 2.5 << 1 << 1002.5;
        QTest::newRow("sea level at 0 m is the reading") << 1013.25 << 0 << 0.0 << 0.0 << 1 << 1013.25;
        QTest::newRow("the offset comes before the reduction")
                << 1000.0 << 0 << 10.0 << 1.5 << 0 << 1001.5 / factor(10.0);
        // Added after the reduction the offset would show 1137.4 instead of 1138.7.
        QTest::newRow("an offset of 10 hPa is reduced from 1000 m with the reading")
                << 1000.0 << 0 << 1000.0 << 10.0 << 1 << 1010.0 / factor(1000.0);
        QTest::newRow("below sea level raises nothing, it lowers")
                << 1000.0 << 0 << -20.0 << 0.0 << 1 << 1000.0 / factor(-20.0);
        QTest::newRow("inHg at 100 m") << 990.0 << 0 << 100.0 << -1.0 << 3 << 989.0 / factor(100.0);
        QTest::newRow("any other level value reduces") << 990.0 << 7 << 100.0 << 0.0 << 4 << 990.0 / factor(100.0);
    }

    void pressure()
    {
        QFETCH(double, reading);
        QFETCH(int, preDisplay);
        QFETCH(double, elevation);
        QFETCH(double, offset);
        QFETCH(int, unit);
        QFETCH(double, shown);
        LogFixture f;
        f.backEnd().setSetting(QStringLiteral("preDisplay"), preDisplay);
        f.backEnd().setSetting(QStringLiteral("elevation"), elevation);
        f.backEnd().setSetting(QStringLiteral("offset"), offset);
        f.backEnd().setSetting(QStringLiteral("unitPre"), unit);
        f.backEnd().setCurrentPressure(reading, Serial);
        const QStringList strings = tick(f.backEnd());
        QCOMPARE(strings.value(3), Util::formatPressure(shown, true));
        // The log keeps the raw reading.
        QCOMPARE(f.column(QStringLiteral("BARO30M"), 5).value(0).toDouble(), reading);
    }

    void noPressureKeepsTheOtherStrings()
    {
        Fixture f;
        f.b->setPositionData(QPointF(3.0, 4.0), 2.0, 45.0, Serial);
        QSignalSpy missing(f.b.get(), &BackEnd::noPressureAvailable);
        const QStringList strings = tick(*f.b);
        QCOMPARE(missing.count(), 1);
        QVERIFY(!strings.value(0).isEmpty());
        QCOMPARE(strings.value(1), Util::formatPosition(3.0, 4.0));
        QCOMPARE(strings.value(2), QStringLiteral("COG 045deg T - SOG ") + speedText(2.0));
        QCOMPARE(strings.value(3), QStringLiteral("NONE"));
    }

    // ---- language ----

    void degreesFollowTheLanguageAtTheNextTick()
    {
        Fixture f;
        f.b->setPositionData(QPointF(3.0, 4.0), 2.0, 45.0, Serial);
        QCOMPARE(tick(*f.b).value(2), QStringLiteral("COG 045deg T - SOG ") + speedText(2.0));

        QTranslator french;
        QVERIFY(french.load(QDir(QStringLiteral(BRINHOLT_BINARY_DIR)).filePath(QStringLiteral("Brinholt_fr_FR.qm"))));
        QVERIFY(QCoreApplication::installTranslator(&french));
        const QString translated = QCoreApplication::translate("BackEnd", "deg");
        QVERIFY(translated != QLatin1String("deg"));
        const QString line = tick(*f.b).value(2);
        const QString frenchSpeed = speedText(2.0);
        QCoreApplication::removeTranslator(&french);
        QCOMPARE(line, QStringLiteral("COG 045") + translated + QStringLiteral(" T - SOG ") + frenchSpeed);
        QCOMPARE(tick(*f.b).value(2), QStringLiteral("COG 045deg T - SOG ") + speedText(2.0));
    }

    // ---- end to end over UDP input ----

    void readingByUdpShowsAtTheNextTickAndIsLoggedRaw()
    {
        LogFixture f;
        BackEnd& b = f.backEnd();
        const quint16 port = NmeaTestKit::freeUdpPort();
        NmeaTestKit::applySettings(b, NmeaTestKit::quietSettings());
        b.setSetting(QStringLiteral("SettingUseUdp"), 1);
        b.setSetting(QStringLiteral("SettingUdpPort"), port);
        b.setSetting(QStringLiteral("unitPre"), 3);
        b.setSetting(QStringLiteral("preDisplay"), 0);
        b.setSetting(QStringLiteral("offset"), 2.0);
        b.setSetting(QStringLiteral("elevation"), 50.0);
        b.startNmea();
        QVERIFY(b.getReceiver());

        const QByteArray body = "$WIXDR,P,1.0090,B,Barometer";
        const QByteArray sentence = body + '*' + Nmea0183::computeChecksum(body).toLatin1() + "\r\n";
        // The source binds a moment after the start, on its own thread.
        QTRY_VERIFY_WITH_TIMEOUT((NmeaTestKit::sendDatagram(sentence, port), b.getCurrentPressure() > 0.0), 5000);
        // Bars times 1000, as the reader turns them into hectopascals.
        const double reading = b.getCurrentPressure();
        QVERIFY(std::fabs(reading - 1009.0) < 1e-9);
        QCOMPARE(b.getPressureSource(), QStringLiteral("From UDP connection"));

        QSignalSpy updates(&b, &BackEnd::dataUpdated);
        b.slot_timerData();
        QCOMPARE(updates.count(), 1);
        const QString shown = updates.at(0).at(3).toString();
        QCOMPARE(shown, Util::formatPressure((reading + 2.0) / factor(50.0), true));
        QVERIFY2(shown.endsWith(QLatin1String(" inHg")), qPrintable(shown));
        QCOMPARE(f.column(QStringLiteral("BARO30M"), 5), QVariantList{reading});
        QCOMPARE(f.column(QStringLiteral("BARO30M"), 6), QVariantList{50.0});
        QCOMPARE(f.column(QStringLiteral("BARO30M"), 7), QVariantList{2.0});
        QVERIFY(NmeaTestKit::stopNmea(b));
    }
};

QTEST_MAIN(TestDisplayLine)
#include "tst_displayline.moc"
