// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/NmeaReceiver.h"

#include "nmea/Nmea0183.h"
#include "nmea/NmeaSourceSerial.h"
#include "nmea/NmeaSourceTcp.h"
#include "nmea/NmeaSourceUdp.h"
#include "nmea/ReceiverHost.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NmeaTestKit.h"
#include "tests/support/PseudoTerminal.h"
#include "tests/support/TestDataFolder.h"

#include <QtNetwork/QTcpServer>
#include <QtTest/QtTest>

using namespace NmeaTestKit;

class TestNmeaReceiver : public QObject
{
    Q_OBJECT

private slots:
    void allOffMakesNoThread();
    void wantedReceiver_data();
    void wantedReceiver();
    void portNamedButSerialOffMakesNoSources();
    void firstStartWithoutSettingsFileMakesAnEmptyReceiver();
    void portSettingKeepsOnlyTheFirstWord();
    void portSettingOfBlanksIsAPortThatCannotOpen();
    void serialSpeedComesFromThePortSpeedKey();
    void sourcesAreMadeInOrderOnTheWorkerThread();
    void tcpStartsFiveSecondsBehindASerialSource();
    void tcpAloneStartsAtOnce();
    void keysApplyOnlyOnTheNextStart();
    void quitThreadStopsSourcesAndEndsTheThread();
    void checkMessageNeedsTypeAndChecksum_data();
    void checkMessageNeedsTypeAndChecksum();
    void readingsCrossFromTheWorkerThread();
    void withoutHostNothingIsMadeOrSent();

private:
    static QList<NmeaSource*> sourcesOf(BackEnd& b)
    {
        return onReceiverThread(b.getReceiver(), [&] { return b.getReceiver()->getSources(); });
    }
};

void TestNmeaReceiver::allOffMakesNoThread()
{
    TestDataFolder folder;
    writeIni(quietSettings());
    BackEnd b;
    QCOMPARE(b.getReceiver(), nullptr);
    b.startNmea();
    QCOMPARE(b.getReceiver(), nullptr);
}

void TestNmeaReceiver::wantedReceiver_data()
{
    Columns::add<QString, QVariant, bool>("key", "value", "wanted");

    QTest::newRow("a port name wants one") << "SettingSerialPort" << QVariant("ttyUSB0") << true;
    QTest::newRow("TCP on wants one") << "SettingUseTcp" << QVariant(1) << true;
    QTest::newRow("UDP on wants one") << "SettingUseUdp" << QVariant(1) << true;
    QTest::newRow("UDP output on wants one") << "SettingUseUdpOut" << QVariant(1) << true;
    QTest::newRow("serial switch alone wants none") << "SettingUseSerial" << QVariant(1) << false;
    QTest::newRow("TCP 2 is not 0 and wants one") << "SettingUseTcp" << QVariant(2) << true;
}

void TestNmeaReceiver::wantedReceiver()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(bool, wanted);
    TestDataFolder folder;
    QVariantMap settings = quietSettings();
    settings.insert(key, value);
    // Keep the sources from reaching anything real.
    settings.insert(QStringLiteral("SettingUseSerial"), key == QLatin1String("SettingUseSerial") ? 1 : 0);
    settings.insert(QStringLiteral("SettingTcpIpPort"), freeTcpPort());
    settings.insert(QStringLiteral("SettingUdpPort"), freeUdpPort());
    writeIni(settings);
    BackEnd b;
    QCOMPARE(b.getReceiver() != nullptr, wanted);
    if (wanted)
        QVERIFY(b.getReceiver()->thread() != QThread::currentThread());
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::portNamedButSerialOffMakesNoSources()
{
    TestDataFolder folder;
    writeIni(quietSettingsWith({{QStringLiteral("SettingSerialPort"), QStringLiteral("ttyUSB0 Some Device")}}));
    BackEnd b;
    NmeaReceiver* receiver = b.getReceiver();
    QVERIFY(receiver);
    QVERIFY(receiver->thread()->isRunning());
    QVERIFY(sourcesOf(b).isEmpty());
    QCOMPARE(onReceiverThread(receiver, [&] { return receiver->getTimerSend(); }), nullptr);
    QVERIFY(onReceiverThread(receiver, [&] { return receiver->getNmea(); }) != nullptr);
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::firstStartWithoutSettingsFileMakesAnEmptyReceiver()
{
    TestDataFolder folder;
    QVERIFY(!QFile::exists(QStringLiteral("brinholt.ini")));
    BackEnd b;
    QVERIFY(b.getReceiver());
    QVERIFY(sourcesOf(b).isEmpty());
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::portSettingKeepsOnlyTheFirstWord()
{
    TestDataFolder folder;
    writeIni(quietSettingsWith({{QStringLiteral("SettingSerialPort"), QStringLiteral("usbserial-1 Some Device")},
                                {QStringLiteral("SettingUseSerial"), 1}}));
    MessageLog log;
    BackEnd b;
    const QList<NmeaSource*> sources = sourcesOf(b);
    QCOMPARE(sources.size(), 1);
    auto* serial = qobject_cast<NmeaSourceSerial*>(sources.first());
    QVERIFY(serial);
    QCOMPARE(serial->getPortName(), QStringLiteral("usbserial-1"));
    QTRY_COMPARE(log.count(QStringLiteral("error opening serial port")), 1);
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::portSettingOfBlanksIsAPortThatCannotOpen()
{
    TestDataFolder folder;
    QVariantMap settings = quietSettings();
    settings.remove(QStringLiteral("SettingSerialPort"));
    settings.insert(QStringLiteral("SettingUseSerial"), 1);
    writeIni(settings);
    {
        // As a hand-edited file may hold it: quoted, so that the blanks survive the reading.
        QFile ini(QStringLiteral("brinholt.ini"));
        QVERIFY(ini.open(QIODevice::Append | QIODevice::Text));
        ini.write("SettingSerialPort=\"   \"\n");
    }
    MessageLog log;
    BackEnd b;
    QCOMPARE(b.getSetting(QStringLiteral("SettingSerialPort"), QVariant()).toString(), QStringLiteral("   "));
    const QList<NmeaSource*> sources = sourcesOf(b);
    QCOMPARE(sources.size(), 1);
    auto* serial = qobject_cast<NmeaSourceSerial*>(sources.first());
    QVERIFY(serial);
    QCOMPARE(serial->getPortName(), QString());
    QTRY_COMPARE(log.count(QStringLiteral("error opening serial port")), 1);
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::serialSpeedComesFromThePortSpeedKey()
{
    TestDataFolder folder;
    writeIni(quietSettingsWith({{QStringLiteral("SettingSerialPort"), QStringLiteral("ttyNothing")},
                                {QStringLiteral("SettingUseSerial"), 1},
                                {QStringLiteral("SettingSerialSpeed"), QStringLiteral("4800")}}));
    BackEnd b;
    auto* serial = qobject_cast<NmeaSourceSerial*>(sourcesOf(b).value(0));
    QVERIFY(serial);
    // The page's key is not read: the port runs at 9600.
    QCOMPARE(serial->getBaudRate(), 9600);
    b.setSetting(QStringLiteral("SettingSerialPortSpeed"), 19200);
    b.startNmea();
    serial = qobject_cast<NmeaSourceSerial*>(sourcesOf(b).value(0));
    QVERIFY(serial);
    QCOMPARE(serial->getBaudRate(), 19200);
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::sourcesAreMadeInOrderOnTheWorkerThread()
{
    FastTimers fast(10000, 100);
    TestDataFolder folder;
    writeIni(quietSettingsWith({{QStringLiteral("SettingSerialPort"), QStringLiteral("ttyNothing")},
                                {QStringLiteral("SettingUseSerial"), 1}, {QStringLiteral("SettingUseTcp"), 1},
                                {QStringLiteral("SettingTcpIpPort"), freeTcpPort()},
                                {QStringLiteral("SettingUseUdp"), 1},
                                {QStringLiteral("SettingUdpPort"), freeUdpPort()}}));
    BackEnd b;
    const QList<NmeaSource*> sources = sourcesOf(b);
    QCOMPARE(sources.size(), 3);
    QCOMPARE(sources.at(0)->getSourceType(), Serial);
    QCOMPARE(sources.at(1)->getSourceType(), Tcp);
    QCOMPARE(sources.at(2)->getSourceType(), Udp);
    for (NmeaSource* source : sources)
        QCOMPARE(source->thread(), b.getReceiver()->thread());
    // No address set: the zero-padded default goes to the TCP source as it is.
    QCOMPARE(qobject_cast<NmeaSourceTcp*>(sources.at(1))->getHost(), QStringLiteral("127.000.000.001"));
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::tcpStartsFiveSecondsBehindASerialSource()
{
    // On the real delay of 5000 ms.
    TestDataFolder folder;
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    writeIni(quietSettingsWith({{QStringLiteral("SettingSerialPort"), terminal.path()},
                                {QStringLiteral("SettingUseSerial"), 1}, {QStringLiteral("SettingUseTcp"), 1},
                                {QStringLiteral("SettingTcpIpAddress"), QStringLiteral("127.0.0.1")},
                                {QStringLiteral("SettingTcpIpPort"), server.serverPort()}}));
    QElapsedTimer sinceStart;
    sinceStart.start();
    BackEnd b;
    QTRY_VERIFY_WITH_TIMEOUT(server.hasPendingConnections(), 8000);
    const qint64 elapsed = sinceStart.elapsed();
    // A coarse timer may fire up to 5 % early.
    QVERIFY2(elapsed >= 4700 && elapsed < 6500, qPrintable(QString::number(elapsed)));
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::tcpAloneStartsAtOnce()
{
    TestDataFolder folder;
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    writeIni(quietSettingsWith({{QStringLiteral("SettingUseTcp"), 1},
                                {QStringLiteral("SettingTcpIpAddress"), QStringLiteral("127.0.0.1")},
                                {QStringLiteral("SettingTcpIpPort"), server.serverPort()}}));
    QElapsedTimer sinceStart;
    sinceStart.start();
    BackEnd b;
    QTRY_VERIFY_WITH_TIMEOUT(server.hasPendingConnections(), 3000);
    // "At once" against the 5000 ms a serial source would put ahead: half of that still
    // tells the two apart on a loaded machine.
    QVERIFY2(sinceStart.elapsed() < 2500, qPrintable(QString::number(sinceStart.elapsed())));
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::keysApplyOnlyOnTheNextStart()
{
    TestDataFolder folder;
    const quint16 first = freeUdpPort();
    writeIni(quietSettingsWith({{QStringLiteral("SettingUseUdp"), 1}, {QStringLiteral("SettingUdpPort"), first}}));
    BackEnd b;
    // The source binds on the worker thread a moment after the start.
    QTRY_VERIFY((sendDatagram("$IIMDA,29.53\r\n", first), b.getCurrentPressure() == 1000.0));

    quint16 second = freeUdpPort();
    while (second == first)
        second = freeUdpPort();
    b.setSetting(QStringLiteral("SettingUdpPort"), second);
    sendDatagram("$IIMDA,29.92,I,1.0100,B\r\n", second);
    QTest::qWait(200);
    QVERIFY(b.getCurrentPressure() != 1010.0);
    sendDatagram("$IIMDA,29.92,I,1.0100,B\r\n", first);
    QTRY_COMPARE(b.getCurrentPressure(), 1010.0);

    NmeaReceiver* old = b.getReceiver();
    b.startNmea();
    QVERIFY(b.getReceiver() != old);
    QTRY_VERIFY((sendDatagram("$IIMDA,29.92,I,1.0200,B\r\n", second), b.getCurrentPressure() == 1020.0));
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::quitThreadStopsSourcesAndEndsTheThread()
{
    TestDataFolder folder;
    const quint16 port = freeUdpPort();
    QVariantMap settings = quietSettings();
    writeIni(settings);
    MessageLog log;
    BackEnd b;
    b.setSetting(QStringLiteral("SettingUseUdp"), 1);
    b.setSetting(QStringLiteral("SettingUdpPort"), port);
    // Made and wired as BackEnd::startNmea does, but owned by the test.
    auto* receiver = new NmeaReceiver;
    auto* thread = new QThread;
    receiver->moveToThread(thread);
    connect(receiver, &NmeaReceiver::finished, thread, &QThread::quit);
    connect(thread, &QThread::finished, receiver, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
    receiver->startReceiving();
    QTRY_VERIFY((sendDatagram("$IIMDA,29.53\r\n", port), b.getCurrentPressure() == 1000.0));

    QPointer<NmeaReceiver> alive(receiver);
    QPointer<QThread> threadAlive(thread);
    int finished = 0;
    connect(receiver, &NmeaReceiver::finished, this, [&finished] { ++finished; }, Qt::DirectConnection);
    log.clear();
    receiver->quitThread();
    QCOMPARE(finished, 1);
    // The stop has run when quitThread returns: the pressure is withdrawn.
    QCOMPARE(b.getCurrentPressure(), -2000.0);
    QCOMPARE(log.count(QStringLiteral("nmea source deleted: 3")), 1);
    QTRY_VERIFY(threadAlive.isNull());
    QVERIFY(alive.isNull());
}

void TestNmeaReceiver::checkMessageNeedsTypeAndChecksum_data()
{
    Columns::add<QByteArray, bool, int>("sentence", "accepted", "type");

    QTest::newRow("implemented with a good sum") << QByteArray("$WIXDR,P,1.0132,B,Barometer*08") << true << int(Xdr);
    QTest::newRow("implemented without a sum") << QByteArray("$WIMMB,29.92,I,1.0132,B") << true << int(Mmb);
    QTest::newRow("implemented with a bad sum") << QByteArray("$WIXDR,P,1.0132,B,Barometer*09") << false << -1;
    QTest::newRow("not implemented with a good sum") << QByteArray("$PWEGB,CAL?*1A") << false << -1;
}

void TestNmeaReceiver::checkMessageNeedsTypeAndChecksum()
{
    QFETCH(QByteArray, sentence);
    QFETCH(bool, accepted);
    QFETCH(int, type);
    TestDataFolder folder;
    writeIni(quietSettings());
    BackEnd b;
    NmeaReceiver receiver;
    receiver.slot_startReceiving();
    NmeaMessageType found = static_cast<NmeaMessageType>(-1);
    QCOMPARE(receiver.checkMessage(sentence, &found), accepted);
    if (accepted)
        QCOMPARE(int(found), type);
}

void TestNmeaReceiver::readingsCrossFromTheWorkerThread()
{
    TestDataFolder folder;
    const quint16 port = freeUdpPort();
    writeIni(quietSettingsWith({{QStringLiteral("SettingUseUdp"), 1}, {QStringLiteral("SettingUdpPort"), port}}));
    BackEnd b;
    QTRY_VERIFY((sendDatagram("$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W\r\n"
                              "$IIMDA,29.53\r\n",
                              port),
                 b.getCurrentPressure() == 1000.0));
    QVERIFY(qAbs(b.getPosition().y() - 48.1173) < 1e-9);
    QCOMPARE(b.getCogSog().first, 84.4);
    QVERIFY(stopNmea(b));
}

void TestNmeaReceiver::withoutHostNothingIsMadeOrSent()
{
    // Every setting that would make a source or the output, and no application to read
    // them from.
    TestDataFolder folder;
    writeIni(quietSettingsWith({{QStringLiteral("SettingUseUdp"), 1},
                                {QStringLiteral("SettingUdpPort"), freeUdpPort()},
                                {QStringLiteral("SettingUseUdpOut"), 1}}));
    QCOMPARE(ReceiverHost::installed(), nullptr);
    NmeaReceiver receiver;
    receiver.slot_startReceiving();
    QVERIFY(receiver.getNmea());
    QVERIFY(receiver.getSources().isEmpty());
    QCOMPARE(receiver.getTimerSend(), nullptr);
    receiver.slot_sendUdp();
    QCOMPARE(receiver.getSender(), nullptr);
}

QTEST_MAIN(TestNmeaReceiver)
#include "tst_nmeareceiver.moc"
