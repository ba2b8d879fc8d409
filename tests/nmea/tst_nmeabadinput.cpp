// SPDX-License-Identifier: GPL-3.0-or-later
// Bad input on every transport: nothing crashes, nothing but the codec's own rules decide,
// and a good sentence after the rubbish is read as usual.
#include "nmea/NmeaSourceSerial.h"
#include "nmea/NmeaSourceTcp.h"
#include "nmea/NmeaSourceUdp.h"
#include "tests/support/Columns.h"

#include "SourceFixture.h"
#include "tests/support/LoopbackTcpServer.h"
#include "tests/support/MessageLog.h"
#include "tests/support/PseudoTerminal.h"

#include <QtCore/QRandomGenerator>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtNetwork/QUdpSocket>
#include <QtTest/QtTest>

using namespace NmeaTestKit;

namespace {

// One transport with a source on it, fed by the test.
class Line
{
public:
    virtual ~Line() = default;
    virtual bool open(SourceFixture& fixture) = 0;
    virtual void send(const QByteArray& bytes) = 0;
};

class UdpLine : public Line
{
public:
    bool open(SourceFixture& fixture) override
    {
        port = freeUdpPort();
        auto* source = new NmeaSourceUdp(fixture.receiver.get(), QStringLiteral("0.0.0.0"), port);
        source->slot_startReceiving();
        return source->getSocket() != nullptr;
    }
    void send(const QByteArray& bytes) override
    {
        // Datagrams of at most 8000 bytes, paced so the socket's queue does not overflow.
        for (int i = 0; i < bytes.size(); i += 8000) {
            sender.writeDatagram(bytes.mid(i, 8000), QHostAddress::LocalHost, port);
            if ((i / 8000) % 8 == 7)
                QTest::qWait(2);
        }
    }
    QUdpSocket sender;
    quint16 port = 0;
};

class TcpLine : public Line
{
public:
    bool open(SourceFixture& fixture) override
    {
        if (!served.listen())
            return false;
        auto* source = new NmeaSourceTcp(fixture.receiver.get(), QStringLiteral("127.0.0.1"), served.port);
        source->slot_startReceiving();
        return served.accept();
    }
    void send(const QByteArray& bytes) override
    {
        served.peer->write(bytes);
        while (served.peer->bytesToWrite() > 0)
            QTest::qWait(2);
    }
    LoopbackTcpServer served;
};

class SerialLine : public Line
{
public:
    bool open(SourceFixture& fixture) override
    {
        if (!terminal.open())
            return false;
        source = new NmeaSourceSerial(fixture.receiver.get(), terminal.path(), 9600, 0, 0, 0, 0);
        source->slot_startReceiving();
        return SourceFixture::passSkippedBlocks(terminal, *source);
    }
    void send(const QByteArray& bytes) override
    {
        for (int i = 0; i < bytes.size(); i += 4096)
            terminal.writeAll(bytes.mid(i, 4096), 20000);
    }
    PseudoTerminal terminal;
    NmeaSourceSerial* source = nullptr;
};

std::unique_ptr<Line> makeLine(const QString& kind)
{
    if (kind == QLatin1String("udp"))
        return std::make_unique<UdpLine>();
    if (kind == QLatin1String("tcp"))
        return std::make_unique<TcpLine>();
    return std::make_unique<SerialLine>();
}

QByteArray randomBytes(int size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random.bounded(256));
    return bytes;
}

QByteArray good(double bars)
{
    return "\r\n$WIXDR,P," + QByteArray::number(bars, 'f', 4) + ",B,Barometer\r\n";
}

} // namespace

class TestNmeaBadInput : public QObject
{
    Q_OBJECT

private slots:
    void badInput_data();
    void badInput();
    void fieldsThatDoNotConvert_data();
    void fieldsThatDoNotConvert();
};

void TestNmeaBadInput::badInput_data()
{
    // "untouched": whether nothing in the rubbish may change the pressure.
    Columns::add<QString, QByteArray, bool>("kind", "rubbish", "untouched");

    QByteArray longSentence = "$WIXDR";
    while (longSentence.size() < 10000)
        longSentence += ",C,21.5,C,Air";
    const QByteArray longWithSum = longSentence + "*" + Nmea0183::computeChecksum(longSentence).toLatin1();
    QByteArray longWithPressure = longSentence + ",P,1.0303,B,Baro";

    QByteArray unfinished(1024 * 1024, 'A');
    unfinished.prepend("$WIMDA,");

    const QByteArray empties = "$WIMDA,,,,,,,,\r\n$WIMMB,,,,\r\n$WIXDR,P,,B,Baro\r\n$GPRMC,,,,,,,,,,,,\r\n$IIMDA\r\n"
                               "$WIXDR\r\n$GPRMC\r\n,,,,\r\n";
    const QByteArray unknown = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n"
                               "$PWEGB,CAL?*1A\r\n!AIVDM,1,1,,A,13aEOK?P00PD2wVMdLDRhgvL289?,0*26\r\n$\r\n$$$$$$\r\n";
    const QByteArray wrongSums = "$WIXDR,P,1.0999,B,Barometer*00\r\n$WIMDA,29.92,I,1.0999,B*ZZ\r\n"
                                 "$WIMMB,29.92,I,1.0999,B*\r\n$WIXDR,P,1.0999,B,Barometer*4\r\n";

    for (const QString& kind : {QStringLiteral("udp"), QStringLiteral("tcp"), QStringLiteral("serial")}) {
        const QByteArray k = kind.toLatin1();
        QTest::newRow(k + ": random bytes") << kind << randomBytes(256 * 1024, 42) << false;
        QTest::newRow(k + ": NUL bytes") << kind << QByteArray(5000, '\0') + "$WIXDR,P,1.0999,B,X\r\n" << false;
        QTest::newRow(k + ": a megabyte without a line end") << kind << unfinished << false;
        QTest::newRow(k + ": 10000 characters with the true sum fail the 99-byte sum") << kind << longWithSum + "\r\n"
                                                                                      << true;
        QTest::newRow(k + ": 10000 characters without a sum decode") << kind << longWithPressure + "\r\n" << false;
        QTest::newRow(k + ": unknown sentences") << kind << unknown << true;
        QTest::newRow(k + ": wrong checksums") << kind << wrongSums << true;
        QTest::newRow(k + ": empty fields") << kind << empties << true;
    }
}

void TestNmeaBadInput::badInput()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, rubbish);
    QFETCH(bool, untouched);
    SourceFixture fixture;
    auto line = makeLine(kind);
    QVERIFY(line->open(fixture));
    line->send(good(1.0101));
    QTRY_COMPARE_WITH_TIMEOUT(fixture.b->getCurrentPressure(), 1010.1, 5000);

    line->send(rubbish);
    if (untouched) {
        // A position behind the rubbish shows it has been read through.
        line->send("\r\n$GPRMC,1,A,4807.038,N,01131.000,E,1.0,2.0,230394,,\r\n");
        QTRY_VERIFY_WITH_TIMEOUT(fixture.b->getPosition() != QPointF(0.0, 0.0), 10000);
        QCOMPARE(fixture.b->getCurrentPressure(), 1010.1);
    }
    if (QByteArray(QTest::currentDataTag()).contains("without a sum")) {
        QTRY_COMPARE_WITH_TIMEOUT(fixture.b->getCurrentPressure(), 1030.3, 10000);
    }

    // A NUL cuts off the rest of the block it came in, so a sentence that shares a block
    // with the tail of the rubbish may be lost; the next one is read on every transport,
    // the serial one included, which drops a NUL that has no line ahead of it.
    int sends = 0;
    while (sends < 3 && fixture.b->getCurrentPressure() != 1020.2) {
        line->send(good(1.0202));
        ++sends;
        QTest::qWait(150);
    }
    QTRY_COMPARE_WITH_TIMEOUT(fixture.b->getCurrentPressure(), 1020.2, 5000);
    QVERIFY2(sends <= 2, qPrintable(QString::number(sends)));
}

void TestNmeaBadInput::fieldsThatDoNotConvert_data()
{
    Columns::add<QString, QByteArray, double>("kind", "sentence", "pressure");

    for (const QString& kind : {QStringLiteral("udp"), QStringLiteral("tcp"), QStringLiteral("serial")}) {
        const QByteArray k = kind.toLatin1();
        // A pressure that does not convert is 0.0, which never counts as a reading.
        QTest::newRow(k + ": XDR value 1.0x32") << kind << QByteArray("$WIXDR,P,1.0x32,B,Baro") << -2000.0;
        // MDA drops a value that does not convert and leaves the last reading standing.
        QTest::newRow(k + ": MDA fields of letters") << kind << QByteArray("$WIMDA,abc,I,xyz,B") << 1010.1;
        QTest::newRow(k + ": MMB field 3 of letters") << kind << QByteArray("$WIMMB,29.92,I,abc,B") << -2000.0;
        QTest::newRow(k + ": MDA inches of letters") << kind << QByteArray("$WIMDA,abc") << 1010.1;
        QTest::newRow(k + ": XDR in pascals") << kind << QByteArray("$WIXDR,P,101500,P,Baro") << 1015.0;
    }
}

void TestNmeaBadInput::fieldsThatDoNotConvert()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, sentence);
    QFETCH(double, pressure);
    SourceFixture fixture;
    auto line = makeLine(kind);
    QVERIFY(line->open(fixture));
    line->send(good(1.0101));
    QTRY_COMPARE_WITH_TIMEOUT(fixture.b->getCurrentPressure(), 1010.1, 5000);
    // A position ahead of it shows the line was read through.
    line->send(sentence + "\r\n$GPRMC,1,A,4807.038,N,01131.000,E,1.0,2.0,230394,,\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(fixture.b->getPosition() != QPointF(0.0, 0.0), 5000);
    QCOMPARE(fixture.b->getCurrentPressure(), pressure);
}

QTEST_MAIN(TestNmeaBadInput)
#include "tst_nmeabadinput.moc"
