// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/Nmea0183.h"
#include "nmea/NmeaItem.h"
#include "tests/support/Columns.h"

#include "tests/support/MessageLog.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/TestDataFolder.h"

#include <QtTest/QtTest>

Q_DECLARE_METATYPE(NmeaMessageType)

namespace {

unsigned sumOf(const QByteArray& body)
{
    unsigned sum = 0;
    for (int i = 1; i < body.size(); ++i)
        sum ^= static_cast<unsigned char>(body.at(i));
    return sum;
}

// `prefix` with two more characters that bring its checksum to `target`.
QByteArray bodyWithSum(const QByteArray& prefix, unsigned target)
{
    const QByteArray alphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz.-";
    for (char a : alphabet)
        for (char b : alphabet) {
            const QByteArray body = prefix + a + b;
            if (sumOf(body) == target)
                return body;
        }
    return QByteArray();
}

} // namespace

class TestNmea0183 : public QObject
{
    Q_OBJECT

private slots:
    void isMessageImplemented_data();
    void isMessageImplemented();
    void refusedSentenceLeavesTypeAlone();
    void validateChecksum_data();
    void validateChecksum();
    void longSentenceIsSummedOverItsFirst99Bytes();
    void computeChecksum_data();
    void computeChecksum();
    void commandBuilders_data();
    void commandBuilders();
    void itemIsMadeOnceAndKept();
    void decodeOutsideTheRangeWarns();
    void clearItemsEmptiesTheMap();
};

void TestNmea0183::isMessageImplemented_data()
{
    Columns::add<QByteArray, bool, int>("sentence", "implemented", "type");

    QTest::newRow("six bytes $IIMDA alone is implemented") << QByteArray("$IIMDA") << true << int(Mda);
    QTest::newRow("five bytes $IIMD is not") << QByteArray("$IIMD") << false << -1;
    QTest::newRow("no dollar IIMDA,1 is not") << QByteArray("IIMDA,1") << false << -1;
    QTest::newRow("AIS !AIVDM is not") << QByteArray("!AIVDM,1,1,,A,13aEOK?P00PD2wVMdLDRhgvL289?,0*26") << false << -1;
    QTest::newRow("talker xx RMC is type 3") << QByteArray("$xxRMC,1,2") << true << int(Rmc);
    QTest::newRow("talker ?? MDA is type 0") << QByteArray("$??MDA,29.9") << true << int(Mda);
    QTest::newRow("XDR is type 1") << QByteArray("$WIXDR,P,1.0,B,B") << true << int(Xdr);
    QTest::newRow("MMB is type 2") << QByteArray("$WIMMB,29.92,I,1.0132,B") << true << int(Mmb);
    QTest::newRow("lower case rmc is not") << QByteArray("$GPrmc,1") << false << -1;
    QTest::newRow("unknown GGA is not") << QByteArray("$GPGGA,1") << false << -1;
    QTest::newRow("empty is not") << QByteArray() << false << -1;
}

void TestNmea0183::isMessageImplemented()
{
    QFETCH(QByteArray, sentence);
    QFETCH(bool, implemented);
    QFETCH(int, type);
    Nmea0183 codec(nullptr);
    NmeaMessageType found = static_cast<NmeaMessageType>(-7);
    QCOMPARE(codec.isMessageImplemented(sentence, &found), implemented);
    if (implemented)
        QCOMPARE(int(found), type);
}

void TestNmea0183::refusedSentenceLeavesTypeAlone()
{
    Nmea0183 codec(nullptr);
    NmeaMessageType found = Rmc;
    QVERIFY(!codec.isMessageImplemented("$GPGGA,1,2,3", &found));
    QCOMPARE(found, Rmc);
}

void TestNmea0183::validateChecksum_data()
{
    Columns::add<QByteArray, bool>("sentence", "valid");

    QTest::newRow("no star passes whatever it holds") << QByteArray("$IIMDA,garbage,\x01\x02") << true;
    QTest::newRow("star and nothing behind fails") << QByteArray("$IIMDA,1*") << false;
    QTest::newRow("sum 4A written 4a passes") << bodyWithSum("$IIMDA,29.92,I,1.0132,B", 0x4A) + "*4a" << true;
    QTest::newRow("sum 4A written 4A then CR LF passes") << bodyWithSum("$IIMDA,29.92,I,1.0132,B", 0x4A) + "*4A\r\n"
                                                        << true;
    QTest::newRow("sum 0A written as one digit A fails") << bodyWithSum("$IIMDA,29.92,I,1.0132,B", 0x0A) + "*A"
                                                        << false;
    QTest::newRow("sum 0A written 0A passes") << bodyWithSum("$IIMDA,29.92,I,1.0132,B", 0x0A) + "*0A" << true;
    QTest::newRow("UCAL example passes") << QByteArray("$PWEGB,UCAL,1.25,10.0,1013.40*72") << true;
    QTest::newRow("line end behind the digits is ignored") << QByteArray("$PWEGB,CAL?*1A\r\n") << true;
    QTest::newRow("lower case digits of CAL? pass") << QByteArray("$PWEGB,CAL?*1a") << true;
    QTest::newRow("one digit fails") << QByteArray("$PWEGB,CAL?*A") << false;
    QTest::newRow("wrong sum fails") << QByteArray("$PWEGB,CAL?*1B") << false;
    QTest::newRow("digits from behind the last star") << QByteArray("$PWEGB,CAL?*00*1A") << true;
    QTest::newRow("NUL right after the star fails") << QByteArray("$PWEGB,CAL?*\0" "1A", 15) << false;
}

void TestNmea0183::validateChecksum()
{
    QFETCH(QByteArray, sentence);
    QFETCH(bool, valid);
    QCOMPARE(Nmea0183::validateChecksum(sentence), valid);
}

void TestNmea0183::longSentenceIsSummedOverItsFirst99Bytes()
{
    // 120 bytes ahead of the star with the true sum over all of them: the bytes from the
    // hundredth on are left out of the computed sum.
    QByteArray body = "$IIMDA,";
    while (body.size() < 120)
        body.append('7');
    unsigned trueSum = 0;
    for (int i = 1; i < body.size(); ++i)
        trueSum ^= static_cast<unsigned char>(body.at(i));
    const QByteArray digits = QByteArray::number(trueSum, 16).rightJustified(2, '0').toUpper();
    QVERIFY2(QString::fromLatin1(digits) != Nmea0183::computeChecksum(body), "the tail must not XOR to zero here");
    QVERIFY(!Nmea0183::validateChecksum(body + '*' + digits));

    // With a tail that XORs to zero the same construction passes.
    QByteArray evenTail = "$IIMDA,";
    while (evenTail.size() < 99)
        evenTail.append('5');
    evenTail.append("77");
    unsigned sum = 0;
    for (int i = 1; i < evenTail.size(); ++i)
        sum ^= static_cast<unsigned char>(evenTail.at(i));
    QVERIFY(Nmea0183::validateChecksum(evenTail + '*' + QByteArray::number(sum, 16).rightJustified(2, '0')));
}

void TestNmea0183::computeChecksum_data()
{
    Columns::add<QByteArray, QString>("sentence", "sum");

    QTest::newRow("dollar alone gives 00") << QByteArray("$") << QStringLiteral("00");
    QTest::newRow("empty gives 00") << QByteArray() << QStringLiteral("00");
    QTest::newRow("CAL? gives 1A") << QByteArray("$PWEGB,CAL?") << QStringLiteral("1A");
    QTest::newRow("FRST gives 78") << QByteArray("$PWEGB,FRST") << QStringLiteral("78");
    QTest::newRow("sum stops at the star") << QByteArray("$PWEGB,CAL?*99") << QStringLiteral("1A");
    QTest::newRow("sum stops at CR") << QByteArray("$PWEGB,CAL?\rXYZ") << QStringLiteral("1A");
    QTest::newRow("sum stops at LF") << QByteArray("$PWEGB,CAL?\nXYZ") << QStringLiteral("1A");
    QTest::newRow("sum stops at NUL") << QByteArray("$PWEGB,CAL?\0XYZ", 15) << QStringLiteral("1A");
    QTest::newRow("first byte is skipped whatever it is") << QByteArray("XPWEGB,CAL?") << QStringLiteral("1A");
    QTest::newRow("small sum is zero filled") << QByteArray("$\x05") << QStringLiteral("05");
}

void TestNmea0183::computeChecksum()
{
    QFETCH(QByteArray, sentence);
    QFETCH(QString, sum);
    QCOMPARE(Nmea0183::computeChecksum(sentence), sum);
}

void TestNmea0183::commandBuilders_data()
{
    Columns::add<QString, QString>("built", "expected");

    QTest::newRow("calibration 1.25 10 1013.4") << Nmea0183::createMessageCalibration(1.25, 10.0, 1013.4)
                                                << QStringLiteral("$PWEGB,UCAL,1.25,10.0,1013.40*72");
    const QString negative = QStringLiteral("$PWEGB,UCAL,-0.50,-3.5,998.00");
    QTest::newRow("negative values keep their sign") << Nmea0183::createMessageCalibration(-0.5, -3.5, 998.0)
                                                     << negative + QLatin1Char('*')
                    + Nmea0183::computeChecksum(negative.toUtf8());
    QTest::newRow("get calibration") << Nmea0183::createMessageGetCalibration() << QStringLiteral("$PWEGB,CAL?*1A");
    QTest::newRow("factory reset") << Nmea0183::createMessageResetBarometer() << QStringLiteral("$PWEGB,FRST*78");
}

void TestNmea0183::commandBuilders()
{
    QFETCH(QString, built);
    QFETCH(QString, expected);
    QCOMPARE(built, expected);
    QVERIFY(!built.endsWith(QLatin1Char('\n')));
}

void TestNmea0183::itemIsMadeOnceAndKept()
{
    TestDataFolder folder;
    NmeaTestKit::writeIni(NmeaTestKit::quietSettings());
    BackEnd b;
    Nmea0183 codec(nullptr);
    QCOMPARE(codec.item(Xdr), nullptr);
    codec.decode("$WIXDR,P,1.0132,B,Barometer*08", Xdr, Udp);
    NmeaItem* first = codec.item(Xdr);
    QVERIFY(first != nullptr);
    QCOMPARE(first->messageType, Xdr);
    codec.decode("$WIXDR,P,1.0140,B,Barometer", Xdr, Udp);
    QCOMPARE(codec.item(Xdr), first);
    QCOMPARE(codec.item(Mda), nullptr);
    QCOMPARE(b.getCurrentPressure(), 1014.0);
}

void TestNmea0183::decodeOutsideTheRangeWarns()
{
    MessageLog log;
    Nmea0183 codec(nullptr);
    codec.decode("$IIMDA,1", static_cast<NmeaMessageType>(4), Udp);
    QCOMPARE(log.count(QStringLiteral("message not implemented?? 4")), 1);
    QCOMPARE(codec.item(static_cast<NmeaMessageType>(4)), nullptr);
}

void TestNmea0183::clearItemsEmptiesTheMap()
{
    TestDataFolder folder;
    NmeaTestKit::writeIni(NmeaTestKit::quietSettings());
    BackEnd b;
    Nmea0183 codec(nullptr);
    codec.decode("$IIMDA,29.53", Mda, Tcp);
    codec.decode("$WIMMB,29.92,I,1.0132,B", Mmb, Tcp);
    QVERIFY(codec.item(Mda) && codec.item(Mmb));
    codec.clearItems();
    QCOMPARE(codec.item(Mda), nullptr);
    QCOMPARE(codec.item(Mmb), nullptr);
}

QTEST_MAIN(TestNmea0183)
#include "tst_nmea0183.moc"
