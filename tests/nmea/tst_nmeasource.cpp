// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSource.h"

#include "SourceFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"

#include <QtTest/QtTest>

namespace {

// Records what the base hands to the transport.
class RecordingSource : public NmeaSource
{
public:
    explicit RecordingSource(NmeaReceiver* receiver, NmeaSourceType type)
        : NmeaSource(receiver)
    {
        sourceType = type;
    }
    bool myWrite(const QString& message) override
    {
        written.append(message);
        return true;
    }
    void slot_startReceiving() override { ++starts; }
    QStringList written;
    int starts = 0;
};

} // namespace

class TestNmeaSource : public QObject
{
    Q_OBJECT

private slots:
    void splitLines_data();
    void splitLines();
    void takeCompleteLines_data();
    void takeCompleteLines();
    void checkMessage_data();
    void checkMessage();
    void sendMessageAddsCrLf();
    void emptyMessageIsIgnored();
    void baseCannotWrite();
    void reconnectSetsReconnectingAndStarts();
    void destructorWithdrawsPressureAndWarns();
};

void TestNmeaSource::splitLines_data()
{
    Columns::add<QString, QStringList>("text", "lines");

    QTest::newRow("LF") << "a\nb" << QStringList{"a", "b"};
    QTest::newRow("CR LF") << "a\r\nb" << QStringList{"a", "b"};
    QTest::newRow("CR") << "a\rb" << QStringList{"a", "b"};
    QTest::newRow("backslash ends a line") << "a\\b" << QStringList{"a", "b"};
    QTest::newRow("LF CR gives no empty line") << "a\n\rb" << QStringList{"a", "b"};
    QTest::newRow("line ends alone give nothing") << "\r\n\r\n\\" << QStringList{};
    QTest::newRow("empty text gives nothing") << "" << QStringList{};
    QTest::newRow("no line end gives the text") << "$IIMDA,1" << QStringList{"$IIMDA,1"};
    QTest::newRow("leading and trailing ends") << "\r\n$A\r\n$B\r\n" << QStringList{"$A", "$B"};
}

void TestNmeaSource::splitLines()
{
    QFETCH(QString, text);
    QFETCH(QStringList, lines);
    QCOMPARE(NmeaSource::splitLines(text), lines);
}

void TestNmeaSource::takeCompleteLines_data()
{
    Columns::add<QString, QStringList, QString>("buffer", "lines", "rest");

    QTest::newRow("finished lines empty the buffer") << "$A\r\n$B\r\n" << QStringList{"$A", "$B"} << "";
    QTest::newRow("unfinished last line stays") << "$A\r\n$B,1" << QStringList{"$A"} << "$B,1";
    QTest::newRow("only an unfinished line stays whole") << "$B,1" << QStringList{} << "$B,1";
    QTest::newRow("CR LF alone stays as it was") << "\r\n" << QStringList{} << "\r\n";
    QTest::newRow("backslash at the end finishes") << "$A\\" << QStringList{"$A"} << "";
    QTest::newRow("CR at the end finishes") << "$A\r" << QStringList{"$A"} << "";
}

void TestNmeaSource::takeCompleteLines()
{
    QFETCH(QString, buffer);
    QFETCH(QStringList, lines);
    QFETCH(QString, rest);
    QCOMPARE(NmeaSource::takeCompleteLines(buffer), lines);
    QCOMPARE(buffer, rest);
}

void TestNmeaSource::checkMessage_data()
{
    Columns::add<QString, bool, QString>("message", "found", "after");

    QTest::newRow("dollar at the front") << "$IIMDA,1" << true << "$IIMDA,1";
    QTest::newRow("rubbish ahead of the dollar is cut") << "xy$IIMDA,1" << true << "$IIMDA,1";
    QTest::newRow("bang when there is no dollar") << "zz!AIVDM,1" << true << "!AIVDM,1";
    QTest::newRow("dollar wins over an earlier bang") << "!a$b" << true << "$b";
    QTest::newRow("neither") << "noise" << false << "noise";
}

void TestNmeaSource::checkMessage()
{
    QFETCH(QString, message);
    QFETCH(bool, found);
    QFETCH(QString, after);
    SourceFixture fixture;
    RecordingSource source(fixture.receiver.get(), Udp);
    QCOMPARE(source.checkMessage(message), found);
    QCOMPARE(message, after);
}

void TestNmeaSource::sendMessageAddsCrLf()
{
    SourceFixture fixture;
    RecordingSource source(fixture.receiver.get(), Serial);
    source.slot_sendMessage(QStringLiteral("$PWEGB,CAL?*1A"));
    QCOMPARE(source.written, QStringList{QStringLiteral("$PWEGB,CAL?*1A\r\n")});
}

void TestNmeaSource::emptyMessageIsIgnored()
{
    SourceFixture fixture;
    RecordingSource source(fixture.receiver.get(), Serial);
    source.slot_sendMessage(QString());
    QVERIFY(source.written.isEmpty());
}

void TestNmeaSource::baseCannotWrite()
{
    SourceFixture fixture;
    NmeaSource source(fixture.receiver.get());
    QVERIFY(!source.myWrite(QStringLiteral("$X\r\n")));
    QVERIFY(!source.isConnected());
    QVERIFY(!source.isReconnecting());
    QVERIFY(!source.isReadWrite());
}

void TestNmeaSource::reconnectSetsReconnectingAndStarts()
{
    SourceFixture fixture;
    RecordingSource source(fixture.receiver.get(), Tcp);
    source.reconnect();
    QVERIFY(source.isReconnecting());
    QCOMPARE(source.starts, 1);
}

void TestNmeaSource::destructorWithdrawsPressureAndWarns()
{
    SourceFixture fixture;
    MessageLog log;
    fixture.b->setCurrentPressure(1010.0, Tcp);
    QCOMPARE(fixture.b->getCurrentPressure(), 1010.0);
    delete new RecordingSource(fixture.receiver.get(), Tcp);
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
    QCOMPARE(log.count(QStringLiteral("nmea source deleted: 2")), 1);
}

QTEST_MAIN(TestNmeaSource)
#include "tst_nmeasource.moc"
