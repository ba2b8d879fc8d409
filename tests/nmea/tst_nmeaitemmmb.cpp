// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItemMMB.h"

#include "ItemFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"

#include <QtTest/QtTest>

class TestNmeaItemMMB : public QObject
{
    Q_OBJECT

private slots:
    void decode_data();
    void decode();
    void bothFieldsEmptyClearsHasPressure();
    void wrongSizeWarns_data();
    void wrongSizeWarns();
};

void TestNmeaItemMMB::decode_data()
{
    Columns::add<QByteArray, double>("sentence", "pressure");

    QTest::newRow("bars in field 3") << QByteArray("$WIMMB,29.92,I,1.0132,B*66") << 1013.2;
    QTest::newRow("inches in field 1 with its own factor") << QByteArray("$WIMMB,29.92,I,,B")
                                                          << 29.92 * 0.033863886866999995 * 1000.0;
    QTest::newRow("field 3 that does not convert passes 0.0") << QByteArray("$WIMMB,29.92,I,abc,B") << 0.0;
    QTest::newRow("hectopascals in field 3 unscaled") << QByteArray("$WIMMB,,I,1013.5,B") << 1013.5;
}

void TestNmeaItemMMB::decode()
{
    ItemFixture::checkPressureRow<NmeaItemMMB>(Mmb, Udp);
}

void TestNmeaItemMMB::bothFieldsEmptyClearsHasPressure()
{
    ItemFixture fixture;
    NmeaItemMMB item(Mmb);
    item.decode("$WIMMB,29.92,I,1.0132,B", Udp);
    QVERIFY(item.hasPressure);
    fixture.b->setCurrentPressure(-2000.0, Udp);
    item.decode("$WIMMB,,I,,B", Udp);
    QVERIFY(!item.hasPressure);
    QVERIFY(!item.valid);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

void TestNmeaItemMMB::wrongSizeWarns_data()
{
    Columns::add<QByteArray, int>("sentence", "count");
    QTest::newRow("a sixth field") << QByteArray("$WIMMB,29.92,I,1.0132,B,X") << 6;
    QTest::newRow("four fields") << QByteArray("$WIMMB,29.92,I,1.0132") << 4;
}

void TestNmeaItemMMB::wrongSizeWarns()
{
    QFETCH(QByteArray, sentence);
    QFETCH(int, count);
    ItemFixture fixture;
    MessageLog log;
    NmeaItemMMB item(Mmb);
    item.decode(sentence, Udp);
    QCOMPARE(log.count(QStringLiteral("MMB wrong message size %1").arg(count)), 1);
    QVERIFY(!item.valid);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
}

QTEST_MAIN(TestNmeaItemMMB)
#include "tst_nmeaitemmmb.moc"
