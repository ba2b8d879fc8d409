// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemMDA.h"

#include "ItemFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"

#include <QtTest/QtTest>

class TestNmeaItemMDA : public QObject
{
    Q_OBJECT

private slots:
    void decode_data();
    void decode();
    void tooFewFieldsWarns();
    void negativeReadingInvalidatesTheSourcesTimer();
    void updateDataWithoutNewDataClearsValid();
};

void TestNmeaItemMDA::decode_data()
{
    Columns::add<QByteArray, bool, double>("sentence", "reading", "pressure");

    QTest::newRow("field 3 wins, field 1 ignored") << QByteArray("$IIMDA,29.92,I,1.0132,B,,,,,,,,,,,,,,,,*72") << true
                                                  << 1013.2;
    QTest::newRow("two fields: inches over 29.53") << QByteArray("$IIMDA,29.53") << true << 1000.0;
    QTest::newRow("three fields: inches over 29.53") << QByteArray("$IIMDA,29.53,I") << true << 1000.0;
    QTest::newRow("empty field 3 gives no reading, no fall-back") << QByteArray("$IIMDA,29.92,I,,B") << false << 0.0;
    QTest::newRow("unit letters ignored, 1013.2 unscaled") << QByteArray("$IIMDA,1013.2,X,1013.2,Y") << true << 1013.2;
    QTest::newRow("field 3 that does not convert") << QByteArray("$IIMDA,29.92,I,abc,B") << false << 0.0;
    QTest::newRow("field 1 that does not convert") << QByteArray("$IIMDA,x") << false << 0.0;
    QTest::newRow("text behind the star plays no part") << QByteArray("$IIMDA,29.92,I,1.0132,B*72,,5,9") << true
                                                        << 1013.2;
}

void TestNmeaItemMDA::decode()
{
    QFETCH(QByteArray, sentence);
    QFETCH(bool, reading);
    QFETCH(double, pressure);
    ItemFixture fixture;
    NmeaItemMDA item(Mda);
    item.decode(sentence, Tcp);
    QCOMPARE(item.valid, reading);
    QCOMPARE(item.hasNewData, false);
    if (reading) {
        QCOMPARE(item.pressure, pressure);
        QCOMPARE(fixture.b->getCurrentPressure(), pressure);
    } else {
        QCOMPARE(item.pressure, 0.0);
        QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
    }
}

void TestNmeaItemMDA::tooFewFieldsWarns()
{
    ItemFixture fixture;
    MessageLog log;
    NmeaItemMDA item(Mda);
    item.valid = true;
    item.decode("$IIMDA*00", Tcp);
    QCOMPARE(log.count(QStringLiteral("MDA wrong message size 1")), 1);
    QVERIFY(!item.valid);
    // updateData was not called: the flag stays up until the next sentence.
    QVERIFY(item.hasNewData);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

void TestNmeaItemMDA::negativeReadingInvalidatesTheSourcesTimer()
{
    ItemFixture fixture;
    NmeaItemMDA item(Mda);
    item.decode("$IIMDA,29.92,I,1.0132,B", Serial);
    QCOMPARE(fixture.b->getCurrentPressure(), 1013.2);
    item.decode("$IIMDA,29.92,I,-5.0,B", Serial);
    QCOMPARE(fixture.b->getSerialPressure(), -5.0);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

void TestNmeaItemMDA::updateDataWithoutNewDataClearsValid()
{
    ItemFixture fixture;
    NmeaItemMDA item(Mda);
    item.decode("$IIMDA,29.53", Tcp);
    QVERIFY(item.valid);
    QVERIFY(!item.updateData(Tcp));
    QVERIFY(!item.valid);
}

QTEST_MAIN(TestNmeaItemMDA)
#include "tst_nmeaitemmda.moc"
