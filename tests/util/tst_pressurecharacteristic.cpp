// SPDX-License-Identifier: GPL-3.0-or-later
#include "Halves.h"

#include "util/PressureCharacteristic.h"

#include <QtCore/QTranslator>
#include <QtTest/QtTest>

Q_DECLARE_METATYPE(PressureCharacteristic::Shape)

// The WMO characteristic read off three points of the trace: every code, each bound pinned
// to the tenth of a hPa.
class TestPressureCharacteristic : public QObject
{
    Q_OBJECT

private slots:
    void eachCodeFromItsShape_data()
    {
        QTest::addColumn<double>("firstHalf");
        QTest::addColumn<double>("secondHalf");
        QTest::addColumn<int>("code");
        QTest::addColumn<PressureCharacteristic::Shape>("shape");
        using C = PressureCharacteristic;

        QTest::newRow("0: rose 1.0, fell 0.5, higher") << 1.0 << -0.5 << 0 << C::RisingThenFalling;
        QTest::newRow("0: rose 1.0, fell 1.0, the same") << 1.0 << -1.0 << 0 << C::RisingThenFalling;
        QTest::newRow("8: rose 1.0, fell 1.1, lower") << 1.0 << -1.1 << 8 << C::RisingThenFalling;
        QTest::newRow("0: rose 0.1, fell 0.1") << 0.1 << -0.1 << 0 << C::RisingThenFalling;

        QTest::newRow("1: rose, then steady") << 1.0 << 0.0 << 1 << C::RisingThenSteady;
        QTest::newRow("1: rose, then 0.04, steady once rounded") << 1.0 << 0.04 << 1 << C::RisingThenSteady;
        QTest::newRow("1: rose 1.0, then 0.5 more slowly") << 1.0 << 0.5 << 1 << C::RisingMoreSlowly;
        QTest::newRow("2: rose 1.0, then 0.6 at about the rate") << 1.0 << 0.6 << 2 << C::Rising;
        QTest::newRow("2: rose 1.0 and 1.0") << 1.0 << 1.0 << 2 << C::Rising;
        QTest::newRow("2: rose 1.0, then 1.4 at about the rate") << 1.0 << 1.4 << 2 << C::Rising;
        QTest::newRow("3: rose 1.0, then 1.5 more quickly") << 1.0 << 1.5 << 3 << C::RisingMoreQuickly;
        QTest::newRow("2: steady halves adding up to 0.1") << 0.04 << 0.04 << 2 << C::Rising;

        QTest::newRow("3: fell 0.5, then rose 1.0, higher") << -0.5 << 1.0 << 3 << C::FallingThenRising;
        QTest::newRow("3: steady, then rose 0.1") << 0.0 << 0.1 << 3 << C::SteadyThenRising;
        QTest::newRow("2: rose 0.1, then 0.3") << 0.1 << 0.3 << 2 << C::Rising;

        QTest::newRow("4: no change at all") << 0.0 << 0.0 << 4 << C::Steady;
        QTest::newRow("4: steady, then 0.04") << 0.0 << 0.04 << 4 << C::Steady;
        QTest::newRow("4: 0.06 up, then 0.04 down, nothing in all") << 0.06 << -0.04 << 4 << C::Steady;

        QTest::newRow("5: fell 1.0, rose 0.5, lower") << -1.0 << 0.5 << 5 << C::FallingThenRising;
        QTest::newRow("5: fell 1.0, rose 1.0, the same") << -1.0 << 1.0 << 5 << C::FallingThenRising;
        QTest::newRow("3: fell 1.0, rose 1.1, higher") << -1.0 << 1.1 << 3 << C::FallingThenRising;

        QTest::newRow("6: fell, then steady") << -1.0 << 0.0 << 6 << C::FallingThenSteady;
        QTest::newRow("6: fell 1.0, then 0.5 more slowly") << -1.0 << -0.5 << 6 << C::FallingMoreSlowly;
        QTest::newRow("7: fell 1.0, then 0.6 at about the rate") << -1.0 << -0.6 << 7 << C::Falling;
        QTest::newRow("7: fell 1.0 and 1.0") << -1.0 << -1.0 << 7 << C::Falling;
        QTest::newRow("7: fell 1.0, then 1.4 at about the rate") << -1.0 << -1.4 << 7 << C::Falling;
        QTest::newRow("8: fell 1.0, then 1.5 more quickly") << -1.0 << -1.5 << 8 << C::FallingMoreQuickly;
        QTest::newRow("7: steady halves adding up to -0.1") << -0.04 << -0.04 << 7 << C::Falling;

        QTest::newRow("8: steady, then fell 0.1") << 0.0 << -0.1 << 8 << C::SteadyThenFalling;
        QTest::newRow("8: rose 0.5, then fell 1.0") << 0.5 << -1.0 << 8 << C::RisingThenFalling;
        QTest::newRow("7: fell 0.1, then 0.3") << -0.1 << -0.3 << 7 << C::Falling;
        QTest::newRow("6: fell 5.0, then 2.0: a storm easing") << -5.0 << -2.0 << 6 << C::FallingMoreSlowly;
    }

    void eachCodeFromItsShape()
    {
        QFETCH(double, firstHalf);
        QFETCH(double, secondHalf);
        QFETCH(int, code);
        QFETCH(PressureCharacteristic::Shape, shape);
        const auto reading = PressureCharacteristic::read(halves(firstHalf, secondHalf));
        QVERIFY(reading);
        QCOMPARE(reading->shape, shape);
        QCOMPARE(reading->code, code);
    }

    void noMiddlePointNoCharacteristic()
    {
        ThreeHourPoints points = halves(-1.0, -1.5);
        points.middle.reset();
        QVERIFY(!PressureCharacteristic::read(points));
    }

    void theLineInBothLanguages()
    {
        const PressureCharacteristic::Reading reading = *PressureCharacteristic::read(halves(-1.0, -1.5));
        QCOMPARE(PressureCharacteristic::text(reading), QStringLiteral("characteristic 8: falling, then falling more quickly"));
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&translator);
        const QString french = PressureCharacteristic::text(reading);
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(french, QString::fromUtf8("caractéristique 8 : en baisse, puis baisse plus rapide"));
    }
};

QTEST_GUILESS_MAIN(TestPressureCharacteristic)
#include "tst_pressurecharacteristic.moc"
