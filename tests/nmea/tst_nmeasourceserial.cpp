// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaSourceSerial.h"

#include "SourceFixture.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"
#include "tests/support/PseudoTerminal.h"

#include <QtCore/QFileInfo>
#include <QtTest/QtTest>

using namespace NmeaTestKit;

class TestNmeaSourceSerial : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void firstTwoBlocksAreLostHoweverLarge();
    void afterAnErrorTheFirstBlockIsUsed();
    void noiseAheadOfASentenceIsStripped();
    void lineOfNoiseVanishesSilently();
    void okSplitOverTwoBlocksCountsOnceEnded();
    void okWithoutLineEndWaitsInTheBuffer();
    void replies_data();
    void replies();
    void calReportGoesToBackEndWhichDropsAShortOne();
    void aisSentenceIsRejected();
    void unknownSentenceIsRejectedEachTime();
    void indexMappings_data();
    void indexMappings();
    void portGetsTheMappedSettings();
    void openFailureRetriesForEver();
    void unpluggedDeviceWithdrawsPressureAtOnceAndIsFoundAgain();
    void nulCutsTheRestOfTheBuffer();
    void nulWithNothingAheadOfItIsDropped();
    void writesReachTheDevice();
    void stopClosesThePort();
    void twentyMegabytesWithoutLineEndKeepMemoryFlat();

private:
    // A source on an open terminal of its own, past its two skipped blocks.
    struct Link
    {
        // The terminal is linked as `name` in the test's folder, or left where the system
        // puts it.
        explicit Link(const QString& name = QString())
            : terminal(name.isEmpty() ? QString() : fixture.folder.filePath(name))
        {
        }
        bool open();
        // Sends the pressure in one sentence and waits until the application holds it.
        bool reads(double hPa)
        {
            const QByteArray bars = QByteArray::number(hPa / 1000.0, 'f', 4);
            return terminal.writeBlock(withSum("$WIXDR,P," + bars + ",B,Barometer") + "\r\n")
                && QTest::qWaitFor([&] { return qFuzzyCompare(fixture.b->getCurrentPressure(), hPa); }, 5000);
        }

        SourceFixture fixture;
        PseudoTerminal terminal;
        NmeaSourceSerial* source = nullptr;
    };
    static QByteArray withSum(const QByteArray& body)
    {
        return body + '*' + Nmea0183::computeChecksum(body).toLatin1();
    }
};

void TestNmeaSourceSerial::init()
{
    NmeaSource::setRetryIntervalMs(10000);
}

bool TestNmeaSourceSerial::Link::open()
{
    if (!terminal.open())
        return false;
    source = new NmeaSourceSerial(fixture.receiver.get(), terminal.path(), 9600, 0, 0, 0, 0);
    source->slot_startReceiving();
    return source->getSerial() && SourceFixture::passSkippedBlocks(terminal, *source);
}

void TestNmeaSourceSerial::firstTwoBlocksAreLostHoweverLarge()
{
    SourceFixture fixture;
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    auto* source = new NmeaSourceSerial(fixture.receiver.get(), terminal.path(), 9600, 0, 0, 0, 0);
    source->slot_startReceiving();
    QVERIFY(source->getSerial());
    QVERIFY(source->isSkipStart());

    QByteArray large;
    while (large.size() < 3000)
        large += withSum("$WIXDR,P,1.0100,B,Barometer") + "\r\n";
    QVERIFY(terminal.writeBlock(large));
    QTRY_COMPARE(source->getSkipCount(), 1);
    QVERIFY(source->isSkipStart());
    QVERIFY(terminal.writeBlock(large));
    QTRY_COMPARE(source->getSkipCount(), 2);
    QVERIFY(!source->isSkipStart());
    QCOMPARE(fixture.b->getCurrentPressure(), -2000.0);
    QCOMPARE(fixture.item(Xdr), nullptr);

    QVERIFY(terminal.writeBlock(withSum("$WIXDR,P,1.0132,B,Barometer") + "\r\n"));
    QTRY_COMPARE(fixture.b->getCurrentPressure(), 1013.2);
}

void TestNmeaSourceSerial::afterAnErrorTheFirstBlockIsUsed()
{
    NmeaSource::setRetryIntervalMs(200);
    Link link(QStringLiteral("skerry"));
    QVERIFY(link.open());
    auto* source = link.source;
    QVERIFY(!source->isSkipStart());

    MessageLog log;
    link.terminal.close();
    QTRY_COMPARE(log.count(QStringLiteral("error occured on port")), 1);
    QVERIFY(link.terminal.reopen());
    QTRY_VERIFY_WITH_TIMEOUT(source->getSerial() != nullptr, 3000);
    QCOMPARE(source->getSkipCount(), 0);
    QVERIFY(link.reads(1013.2));
    QCOMPARE(source->getSkipCount(), 0);
}

void TestNmeaSourceSerial::noiseAheadOfASentenceIsStripped()
{
    Link link;
    QVERIFY(link.open());
    MessageLog log;
    QVERIFY(link.terminal.writeBlock("\x07\xfe" + withSum("$WIXDR,P,1.0132,B,Barometer") + "\r\n"));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1013.2);
    QCOMPARE(log.count(QStringLiteral("rejected")), 0);
}

void TestNmeaSourceSerial::lineOfNoiseVanishesSilently()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    MessageLog log;
    QVERIFY(link.terminal.writeBlock("\x01garbage with neither start\r\n"));
    QTRY_VERIFY(source->getBuffer().isEmpty());
    QTest::qWait(100);
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.messages().join(QLatin1Char('|'))));
}

void TestNmeaSourceSerial::okSplitOverTwoBlocksCountsOnceEnded()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QSignalSpy status(source, &NmeaSourceSerial::calibrationStatus);
    QVERIFY(link.terminal.writeBlock("$PWEGB,"));
    QTRY_COMPARE(source->getBuffer(), QByteArray("$PWEGB,"));
    QCOMPARE(status.count(), 0);
    QVERIFY(link.terminal.writeBlock("OK*6F\r\n"));
    QTRY_COMPARE(status.count(), 1);
    QCOMPARE(status.at(0).at(0).toBool(), true);
}

void TestNmeaSourceSerial::okWithoutLineEndWaitsInTheBuffer()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QSignalSpy status(source, &NmeaSourceSerial::calibrationStatus);
    QVERIFY(link.terminal.writeBlock("$PWEGB,OK"));
    QTRY_COMPARE(source->getBuffer(), QByteArray("$PWEGB,OK"));
    QTest::qWait(100);
    QCOMPARE(status.count(), 0);
    QVERIFY(link.terminal.writeBlock("\r\n"));
    QTRY_COMPARE(status.count(), 1);
    QVERIFY(source->getBuffer().isEmpty());
}

void TestNmeaSourceSerial::replies_data()
{
    Columns::add<QByteArray, int, QString>("line", "status", "values");

    QTest::newRow("OK is success") << QByteArray("$PWEGB,OK*6F") << 1 << QString();
    QTest::newRow("OK with a wrong checksum is still taken") << QByteArray("$PWEGB,OK*00") << 1 << QString();
    QTest::newRow("ERR is failure") << QByteArray("$PWEGB,ERR*2E") << 0 << QString();
    QTest::newRow("ERR,7 is failure") << QByteArray("$PWEGB,ERR,7") << 0 << QString();
    QTest::newRow("CAL report goes on whole") << QByteArray("$PWEGB,CAL,1.25,10,1013.40,1012.15*3D") << -1
                                              << QStringLiteral("$PWEGB,CAL,1.25,10,1013.40,1012.15*3D");
    QTest::newRow("CAL,1 is a report") << QByteArray("$PWEGB,CAL,1") << -1 << QStringLiteral("$PWEGB,CAL,1");
    QTest::newRow("noise ahead of a reply is stripped") << QByteArray("~~$PWEGB,OK") << 1 << QString();
}

void TestNmeaSourceSerial::replies()
{
    QFETCH(QByteArray, line);
    QFETCH(int, status);
    QFETCH(QString, values);
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QSignalSpy statusSpy(source, &NmeaSourceSerial::calibrationStatus);
    QSignalSpy valuesSpy(source, &NmeaSourceSerial::calibrationValues);
    MessageLog log;
    QVERIFY(link.terminal.writeBlock(line + "\r\n" + withSum("$WIXDR,P,1.0132,B,Barometer") + "\r\n"));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1013.2);
    if (status >= 0) {
        QCOMPARE(statusSpy.count(), 1);
        QCOMPARE(statusSpy.at(0).at(0).toBool(), status == 1);
        QCOMPARE(valuesSpy.count(), 0);
    } else {
        QCOMPARE(statusSpy.count(), 0);
        QCOMPARE(valuesSpy.count(), 1);
        QCOMPARE(valuesSpy.at(0).at(0).toString(), values);
        QCOMPARE(log.count(QStringLiteral("Calibration value %1").arg(values)), 1);
    }
    QCOMPARE(log.count(QStringLiteral("message rejected by NMEA module")), 0);
}

void TestNmeaSourceSerial::calReportGoesToBackEndWhichDropsAShortOne()
{
    Link link;
    QVERIFY(link.open());
    QSignalSpy received(link.fixture.b.get(), &BackEnd::calibrationValuesReceived);
    QSignalSpy status(link.fixture.b.get(), &BackEnd::calibrationStatus);
    QVERIFY(link.terminal.writeBlock("$PWEGB,CAL,1\r\n$PWEGB,ERR*2E\r\n$PWEGB,CAL,1.25,10,1013.40,1012.15*3D\r\n"));
    QTRY_COMPARE(received.count(), 1);
    QCOMPARE(received.at(0).at(0).toDouble(), 1.25);
    QCOMPARE(received.at(0).at(3).toDouble(), 1012.15);
    QCOMPARE(status.count(), 1);
    QCOMPARE(status.at(0).at(0).toBool(), false);
}

void TestNmeaSourceSerial::aisSentenceIsRejected()
{
    Link link;
    QVERIFY(link.open());
    MessageLog log;
    QVERIFY(link.terminal.writeBlock("!AIVDM,1,1,,A,13aEOK?P00PD2wVMdLDRhgvL289?,0*26\r\n$PWEGB,CAL?*1A\r\n"));
    QTRY_COMPARE(log.count(QStringLiteral("message rejected by NMEA module")), 2);
}

void TestNmeaSourceSerial::unknownSentenceIsRejectedEachTime()
{
    Link link;
    QVERIFY(link.open());
    MessageLog log;
    QVERIFY(link.terminal.writeBlock("$GPGGA,1\r\n$GPGGA,2\r\n$IIMDA,29.92,I,1.0132,B*00\r\n"));
    QTRY_COMPARE(log.count(QStringLiteral("message rejected by NMEA module")), 3);
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
}

void TestNmeaSourceSerial::indexMappings_data()
{
    Columns::add<int, int, int, int, int>("index", "flow", "parity", "bits", "stop");

    QTest::newRow("index 0 is 8N1 without flow control")
            << 0 << int(QSerialPort::NoFlowControl) << int(QSerialPort::NoParity) << int(QSerialPort::Data8)
            << int(QSerialPort::OneStop);
    QTest::newRow("index 1") << 1 << int(QSerialPort::HardwareControl) << int(QSerialPort::EvenParity)
                             << int(QSerialPort::Data7) << int(QSerialPort::OneAndHalfStop);
    QTest::newRow("index 2") << 2 << int(QSerialPort::SoftwareControl) << int(QSerialPort::OddParity)
                             << int(QSerialPort::Data6) << int(QSerialPort::TwoStop);
    QTest::newRow("index 3") << 3 << int(QSerialPort::NoFlowControl) << int(QSerialPort::SpaceParity)
                             << int(QSerialPort::Data5) << int(QSerialPort::OneStop);
    QTest::newRow("index 4 gives Data8 and mark parity")
            << 4 << int(QSerialPort::NoFlowControl) << int(QSerialPort::MarkParity) << int(QSerialPort::Data8)
            << int(QSerialPort::OneStop);
    QTest::newRow("index 5 gives no parity") << 5 << int(QSerialPort::NoFlowControl) << int(QSerialPort::NoParity)
                                             << int(QSerialPort::Data8) << int(QSerialPort::OneStop);
    QTest::newRow("index 7 gives no flow control")
            << 7 << int(QSerialPort::NoFlowControl) << int(QSerialPort::NoParity) << int(QSerialPort::Data8)
            << int(QSerialPort::OneStop);
    QTest::newRow("negative index falls back") << -1 << int(QSerialPort::NoFlowControl) << int(QSerialPort::NoParity)
                                               << int(QSerialPort::Data8) << int(QSerialPort::OneStop);
}

void TestNmeaSourceSerial::indexMappings()
{
    QFETCH(int, index);
    QFETCH(int, flow);
    QFETCH(int, parity);
    QFETCH(int, bits);
    QFETCH(int, stop);
    QCOMPARE(int(NmeaSourceSerial::flowControlFor(index)), flow);
    QCOMPARE(int(NmeaSourceSerial::parityFor(index)), parity);
    QCOMPARE(int(NmeaSourceSerial::dataBitsFor(index)), bits);
    QCOMPARE(int(NmeaSourceSerial::stopBitsFor(index)), stop);
}

void TestNmeaSourceSerial::portGetsTheMappedSettings()
{
    SourceFixture fixture;
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    auto* source = new NmeaSourceSerial(fixture.receiver.get(), terminal.path(), 4800, 7, 1, 4, 2);
    source->slot_startReceiving();
    QVERIFY(source->getSerial());
    QVERIFY(source->getSerial()->isOpen());
    QVERIFY(source->getSerial()->openMode() & QIODevice::WriteOnly);
    QCOMPARE(source->getSerial()->baudRate(QSerialPort::Input), 4800);
    QCOMPARE(source->getSerial()->baudRate(QSerialPort::Output), 4800);
    QCOMPARE(source->getSerial()->flowControl(), QSerialPort::NoFlowControl);
    QCOMPARE(source->getSerial()->parity(), QSerialPort::EvenParity);
    QCOMPARE(source->getSerial()->dataBits(), QSerialPort::Data8);
    QCOMPARE(source->getSerial()->stopBits(), QSerialPort::TwoStop);
    QVERIFY(source->isReadWrite());
    QVERIFY(source->isConnected());
}

void TestNmeaSourceSerial::openFailureRetriesForEver()
{
    NmeaSource::setRetryIntervalMs(100);
    SourceFixture fixture;
    MessageLog log;
    const QString path = fixture.folder.filePath(QStringLiteral("nothing-here"));
    auto* source = new NmeaSourceSerial(fixture.receiver.get(), path, 9600, 0, 0, 0, 0);
    source->slot_startReceiving();
    QCOMPARE(source->getSerial(), nullptr);
    QVERIFY(!source->isConnected());
    // The first failure is retried too, unlike on the network sources.
    QTRY_VERIFY_WITH_TIMEOUT(log.count(QStringLiteral("error opening serial port")) >= 4, 3000);

    // A device that turns up later is found.
    PseudoTerminal terminal(path);
    QVERIFY(terminal.open());
    QTRY_VERIFY_WITH_TIMEOUT(source->getSerial() != nullptr, 3000);
    QCOMPARE(log.count(QStringLiteral("opened successfully")), 1);
}

void TestNmeaSourceSerial::unpluggedDeviceWithdrawsPressureAtOnceAndIsFoundAgain()
{
    NmeaSource::setRetryIntervalMs(300);
    Link link(QStringLiteral("skerry"));
    QVERIFY(link.open());
    auto* source = link.source;
    QVERIFY(link.reads(1013.2));

    MessageLog log;
    link.terminal.close();
    // Unplugged, the device has no name: the retries cannot find another terminal there.
    QVERIFY(!QFileInfo(link.terminal.path()).isSymLink());
    QTRY_COMPARE_WITH_TIMEOUT(link.fixture.b->getCurrentPressure(), -2000.0, 1000);
    QVERIFY(!source->isConnected());
    QTRY_VERIFY_WITH_TIMEOUT(log.count(QStringLiteral("error opening serial port")) >= 2, 3000);

    QVERIFY(link.terminal.reopen());
    QTRY_VERIFY_WITH_TIMEOUT(source->isConnected(), 1000);
    QVERIFY(link.reads(1020.0));
}

void TestNmeaSourceSerial::nulCutsTheRestOfTheBuffer()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QVERIFY(link.terminal.writeBlock(withSum("$WIXDR,P,1.0132,B,Barometer")
                                     + QByteArray("\r\n\0$WIXDR,P,1.0500,B,B\r\n", 23)));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1013.2);
    QTRY_VERIFY(source->getBuffer().isEmpty());
    QTest::qWait(50);
    QCOMPARE(link.fixture.b->getCurrentPressure(), 1013.2);
    QVERIFY(link.reads(1020.0));
}

void TestNmeaSourceSerial::nulWithNothingAheadOfItIsDropped()
{
    // A UART reports a break, as when the device is plugged in, as a NUL byte. With
    // nothing ahead of it, it must not hold back the sentences that follow.
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QVERIFY(link.reads(1013.2));
    QVERIFY(link.terminal.writeBlock(QByteArray(1, '\0')));
    QTRY_VERIFY(source->getBuffer().isEmpty());
    QVERIFY(link.reads(1020.0));
    QVERIFY(link.terminal.writeBlock(QByteArray(2, '\0') + withSum("$WIXDR,P,1.0300,B,Barometer") + "\r\n"));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1030.0);
    QVERIFY(source->getBuffer().isEmpty());
    QVERIFY(source->isConnected());
}

void TestNmeaSourceSerial::writesReachTheDevice()
{
    SourceFixture fixture;
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    auto* source = new NmeaSourceSerial(fixture.receiver.get(), terminal.path(), 9600, 0, 0, 0, 0);
    QVERIFY(!source->myWrite(QStringLiteral("$X")));
    source->slot_startReceiving();
    QVERIFY(!source->myWrite(QString()));
    // Through the queued connection from BackEnd, as the calibration page does it.
    emit fixture.b->sendCalibration(QStringLiteral("$PWEGB,CAL?*1A"));
    QCOMPARE(terminal.readUntil("\r\n", 3000), QByteArray("$PWEGB,CAL?*1A\r\n"));
}

void TestNmeaSourceSerial::stopClosesThePort()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QVERIFY(link.reads(1013.2));
    MessageLog log;
    delete source;
    QCOMPARE(link.fixture.b->getCurrentPressure(), -2000.0);
    QCOMPARE(log.count(QStringLiteral("serial port closed")), 1);
    QCOMPARE(log.count(QStringLiteral("NmeaSourceSerial deleted")), 1);
    QCOMPARE(log.count(QStringLiteral("nmea source deleted: 1")), 1);
    QCOMPARE(log.count(QStringLiteral("error occured")), 0);
    // With the source gone a command reaches nobody.
    emit link.fixture.b->sendCalibration(QStringLiteral("$PWEGB,CAL?*1A"));
    QCOMPARE(link.terminal.readUntil("\r\n", 300), QByteArray());
}

void TestNmeaSourceSerial::twentyMegabytesWithoutLineEndKeepMemoryFlat()
{
    Link link;
    QVERIFY(link.open());
    auto* source = link.source;
    QVERIFY(link.reads(1013.2));

    MessageLog log;
    sendTwentyMegabytesWithoutLineEnd([&link](const QByteArray& block) { return link.terminal.writeAll(block, 10000); },
                                      [source] { return source->getBuffer().size(); });
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(log.count(QStringLiteral("unfinished line too long, oldest bytes dropped, source 1")), 1);

    QVERIFY(link.terminal.writeAll("\r\n" + withSum("$WIXDR,P,1.0050,B,Barometer") + "\r\n", 5000));
    QTRY_COMPARE(link.fixture.b->getCurrentPressure(), 1005.0);
    QVERIFY(source->getBuffer().isEmpty());
}

QTEST_MAIN(TestNmeaSourceSerial)
#include "tst_nmeasourceserial.moc"
