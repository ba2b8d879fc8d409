// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemXDR.h"

#include "ItemFixture.h"
#include "tests/support/Columns.h"

#include <QtTest/QtTest>

class TestNmeaItemXDR : public QObject
{
    Q_OBJECT

private slots:
    void decode_data();
    void decode();
    void withoutPressureQuadrupleNoUpdate();
    void hasPressureIsNeverClearedAgain();
};

void TestNmeaItemXDR::decode_data()
{
    Columns::add<QByteArray, double>("sentence", "pressure");

    QTest::newRow("bars") << QByteArray("$WIXDR,P,1.0132,B,Barometer*08") << 1013.2;
    QTest::newRow("pascals above 10000") << QByteArray("$WIXDR,P,101320,P,Baro") << 1013.2;
    QTest::newRow("exactly 10000 is not pascals") << QByteArray("$WIXDR,P,10000,P,Baro") << 10000.0;
    QTest::newRow("temperature quadruple skipped") << QByteArray("$WIXDR,C,21.5,C,Air,P,1.0132,B,Baro") << 1013.2;
    QTest::newRow("misaligned loses the X from the front") << QByteArray("$WIXDR,X,P,1.0132,B,Baro") << 1013.2;
    QTest::newRow("last P quadruple wins") << QByteArray("$WIXDR,P,1.0100,B,A,P,1.0200,B,B") << 1020.0;
    QTest::newRow("P with a value that does not convert gives 0.0") << QByteArray("$WIXDR,P,abc,B,Baro") << 0.0;
}

void TestNmeaItemXDR::decode()
{
    ItemFixture::checkPressureRow<NmeaItemXDR>(Xdr, Tcp);
}

void TestNmeaItemXDR::withoutPressureQuadrupleNoUpdate()
{
    ItemFixture fixture;
    NmeaItemXDR item(Xdr);
    item.decode("$WIXDR,C,21.5,C,Air", Tcp);
    QVERIFY(!item.valid);
    QVERIFY(!item.hasPressure);
    QCOMPARE(item.pressure, -2000.0);
    // hasNewData is left alone while no pressure was ever seen.
    QVERIFY(item.hasNewData);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

void TestNmeaItemXDR::hasPressureIsNeverClearedAgain()
{
    ItemFixture fixture;
    NmeaItemXDR item(Xdr);
    item.decode("$WIXDR,P,1.0132,B,Baro", Tcp);
    fixture.b->setCurrentPressure(-2000.0, Tcp);
    item.decode("$WIXDR,C,21.5,C,Air", Tcp);
    QVERIFY(item.hasPressure);
    QVERIFY(!item.valid);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

QTEST_MAIN(TestNmeaItemXDR)
#include "tst_nmeaitemxdr.moc"
