// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaItem.h"
#include "tests/support/Columns.h"

#include <QtTest/QtTest>

class TestNmeaItem : public QObject
{
    Q_OBJECT

private slots:
    void decodePosition_data();
    void decodePosition();
    void decodeIntAndDouble_data();
    void decodeIntAndDouble();
    void barRule_data();
    void barRule();
    void baseDoesNothing();
    void fieldsKeepEmptiesAndStopAtStarAndNul();
};

void TestNmeaItem::decodePosition_data()
{
    Columns::add<QString, QString, QString, QString, bool, double, double>("lat", "ns", "lon", "ew", "ok", "x", "y");

    QTest::newRow("Munich example north east") << "4807.038" << "N" << "01131.000" << "E" << true
                                               << 11.516666666666667 << 48.1173;
    QTest::newRow("south and west negate") << "3315.000" << "S" << "00030.000" << "W" << true << -0.5 << -33.25;
    QTest::newRow("zero zero is no position") << "0000.000" << "N" << "00000.000" << "E" << false << 0.0 << 0.0;
    QTest::newRow("empty latitude") << "" << "N" << "01131.000" << "E" << false << 0.0 << 0.0;
    QTest::newRow("empty hemisphere") << "4807.038" << "" << "01131.000" << "E" << false << 0.0 << 0.0;
    QTest::newRow("lower case e fails") << "4807.038" << "N" << "01131.000" << "e" << false << 0.0 << 0.0;
    QTest::newRow("lower case n fails") << "4807.038" << "n" << "01131.000" << "E" << false << 0.0 << 0.0;
    QTest::newRow("longitude that does not convert") << "4807.038" << "N" << "011x1.000" << "E" << false << 0.0
                                                     << 0.0;
    QTest::newRow("latitude that does not convert") << "48o7.038" << "N" << "01131.000" << "E" << false << 0.0
                                                    << 0.0;
    QTest::newRow("only the longitude zero is still a position") << "4807.038" << "N" << "00000.000" << "E" << true
                                                                  << 0.0 << 48.1173;
}

void TestNmeaItem::decodePosition()
{
    QFETCH(QString, lat);
    QFETCH(QString, ns);
    QFETCH(QString, lon);
    QFETCH(QString, ew);
    QFETCH(bool, ok);
    QFETCH(double, x);
    QFETCH(double, y);
    QPointF position(-99.0, -99.0);
    QCOMPARE(NmeaItem::decode_Position(lat, ns, lon, ew, &position), ok);
    if (ok) {
        QVERIFY(qAbs(position.x() - x) < 1e-9);
        QVERIFY(qAbs(position.y() - y) < 1e-9);
    }
}

void TestNmeaItem::decodeIntAndDouble_data()
{
    Columns::add<QString, bool, int, bool, double>("text", "intOk", "intValue", "doubleOk", "doubleValue");

    QTest::newRow("whole number") << "42" << true << 42 << true << 42.0;
    QTest::newRow("decimal is no int") << "1.5" << false << 0 << true << 1.5;
    QTest::newRow("empty converts to nothing") << "" << false << 0 << false << 0.0;
    QTest::newRow("letters convert to nothing") << "abc" << false << 0 << false << 0.0;
    QTest::newRow("negative") << "-7" << true << -7 << true << -7.0;
}

void TestNmeaItem::decodeIntAndDouble()
{
    QFETCH(QString, text);
    QFETCH(bool, intOk);
    QFETCH(int, intValue);
    QFETCH(bool, doubleOk);
    QFETCH(double, doubleValue);
    int i = 99;
    double d = 99.0;
    QCOMPARE(NmeaItem::decode_Int(text, &i), intOk);
    QCOMPARE(i, intValue);
    QCOMPARE(NmeaItem::decode_Double(text, &d), doubleOk);
    QCOMPARE(d, doubleValue);
}

void TestNmeaItem::barRule_data()
{
    Columns::add<double, double>("value", "result");

    QTest::newRow("exactly 3.0 stays 3.0") << 3.0 << 3.0;
    QTest::newRow("exactly 0.0 stays 0.0") << 0.0 << 0.0;
    QTest::newRow("1.0132 bars are 1013.2 hPa") << 1.0132 << 1013.2;
    QTest::newRow("2.999 is still bars") << 2.999 << 2999.0;
    QTest::newRow("1013.2 is hectopascals") << 1013.2 << 1013.2;
    QTest::newRow("negative stays") << -2000.0 << -2000.0;
}

void TestNmeaItem::barRule()
{
    QFETCH(double, value);
    QFETCH(double, result);
    QCOMPARE(NmeaItem::applyBarRule(value), result);
}

void TestNmeaItem::baseDoesNothing()
{
    NmeaItem item(Rmc);
    item.decode("$GPRMC,1,A", Tcp);
    QVERIFY(!item.updateData(Tcp));
    QVERIFY(!item.valid);
    QVERIFY(!item.hasNewData);
}

void TestNmeaItem::fieldsKeepEmptiesAndStopAtStarAndNul()
{
    QCOMPARE(NmeaItem::splitFields("$IIMDA,1,,3*72,9"), QStringList({"$IIMDA", "1", "", "3"}));
    QCOMPARE(NmeaItem::splitFields(QByteArray("$IIMDA,1\0,5,6", 13)), QStringList({"$IIMDA", "1"}));
    QCOMPARE(NmeaItem::splitFields(""), QStringList({""}));
}

QTEST_MAIN(TestNmeaItem)
#include "tst_nmeaitem.moc"
