// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemRMC.h"

#include "ItemFixture.h"
#include "tests/support/Columns.h"

#include <QtTest/QtTest>

class TestNmeaItemRMC : public QObject
{
    Q_OBJECT

private slots:
    void fix_data();
    void fix();
    void voidWithPositionClearsTheFix();
    void voidWithEmptyPositionLeavesTheFix();
    void tooFewFieldsGivesNothing();
    void otherSourcesKeepTheirFix();
};

namespace {
const QByteArray Good = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W";
}

void TestNmeaItemRMC::fix_data()
{
    Columns::add<QByteArray, bool>("sentence", "hasFix");

    QTest::newRow("status A without mode field is a fix") << Good << true;
    QTest::newRow("mode A is a fix") << Good + ",A" << true;
    QTest::newRow("empty mode field counts as autonomous") << Good + "," << true;
    QTest::newRow("mode N clears the fix") << Good + ",N" << false;
    QTest::newRow("mode D is a fix") << Good + ",D" << true;
    QTest::newRow("empty status counts as good")
            << QByteArray("$GPRMC,123519,,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W") << true;
    QTest::newRow("status V clears the fix")
            << QByteArray("$GPRMC,123519,V,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W") << false;
}

void TestNmeaItemRMC::fix()
{
    QFETCH(QByteArray, sentence);
    QFETCH(bool, hasFix);
    ItemFixture fixture;
    // A fix from before, so that a clearing sentence shows.
    fixture.b->setPositionData(QPointF(1.0, 2.0), 3.0, 4.0, Serial);
    NmeaItemRMC item(Rmc);
    item.decode(sentence, Serial);
    QVERIFY(item.valid);
    if (hasFix) {
        const QPointF p = fixture.b->getPosition();
        QVERIFY(qAbs(p.x() - 11.516666666666667) < 1e-9);
        QVERIFY(qAbs(p.y() - 48.1173) < 1e-9);
        // Course then speed, as the sentence gives them.
        QCOMPARE(fixture.b->getCogSog().first, 84.4);
        QCOMPARE(fixture.b->getCogSog().second, 22.4);
    } else {
        QCOMPARE(fixture.b->getPosition(), QPointF(0.0, 0.0));
        QCOMPARE(fixture.b->getCogSog(), std::make_pair(0.0, 0.0));
    }
}

void TestNmeaItemRMC::voidWithPositionClearsTheFix()
{
    ItemFixture fixture;
    NmeaItemRMC item(Rmc);
    item.decode(Good, Tcp);
    QVERIFY(fixture.b->getPosition() != QPointF(0.0, 0.0));
    item.decode("$GPRMC,123520,V,4807.038,N,01131.000,E,0.0,0.0,230394,,", Tcp);
    QCOMPARE(item.status, QStringLiteral("V"));
    QCOMPARE(fixture.b->getPosition(), QPointF(0.0, 0.0));
}

void TestNmeaItemRMC::voidWithEmptyPositionLeavesTheFix()
{
    ItemFixture fixture;
    NmeaItemRMC item(Rmc);
    item.decode(Good, Tcp);
    const QPointF before = fixture.b->getPosition();
    item.decode("$GPRMC,123520,V,,,,,,,230394,,", Tcp);
    QVERIFY(!item.valid);
    QCOMPARE(fixture.b->getPosition(), before);
}

void TestNmeaItemRMC::tooFewFieldsGivesNothing()
{
    ItemFixture fixture;
    NmeaItemRMC item(Rmc);
    item.decode("$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1", Tcp);
    QVERIFY(!item.valid);
    QCOMPARE(fixture.b->getPosition(), QPointF(0.0, 0.0));
    QCOMPARE(item.mode, QStringLiteral("A"));
}

void TestNmeaItemRMC::otherSourcesKeepTheirFix()
{
    ItemFixture fixture;
    fixture.b->setPositionData(QPointF(5.0, 6.0), 1.0, 2.0, Udp);
    NmeaItemRMC item(Rmc);
    item.decode(Good + ",N", Tcp);
    QCOMPARE(fixture.b->getPosition(), QPointF(5.0, 6.0));
}

QTEST_MAIN(TestNmeaItemRMC)
#include "tst_nmeaitemrmc.moc"
