// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDevice.h"
#include "PageDriver.h"
#include "PageHarness.h"
#include "PageInput.h"
#include "tests/support/Columns.h"
#include "tests/support/FreePort.h"
#include "tests/support/NetworkNamespace.h"
#include "tests/support/PseudoTerminal.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "nmea/NmeaReceiver.h"
#include "tools/DeviceSimulator.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAccessible>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QUdpSocket>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cmath>

using namespace PageDriver;

namespace {

constexpr qint64 T0 = 1700000040;

// A UDP port that nothing on this machine holds now.
quint16 freeUdpPort()
{
    return FreePort::find([](quint16 port) { return QUdpSocket().bind(QHostAddress::Any, port); });
}

// A TCP port on the loopback where nothing listens now.
quint16 closedTcpPort()
{
    return FreePort::find([](quint16 port) { return QTcpServer().listen(QHostAddress::LocalHost, port); });
}

// A TCP server on the loopback that never answers a new connection: its queue is full,
// so the kernel drops the next handshake and the client waits in vain.
class SilentServer
{
public:
    ~SilentServer()
    {
        for (int fd : fds)
            ::close(fd);
    }

    quint16 open()
    {
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        if (listener < 0)
            return 0;
        fds << listener;
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        port = FreePort::find([&](quint16 candidate) {
            address.sin_port = htons(candidate);
            return ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        });
        if (port == 0 || ::listen(listener, 0) != 0)
            return 0;
        // Fill the queue; nothing is ever accepted.
        for (int i = 0; i < 3; ++i) {
            const int client = ::socket(AF_INET, SOCK_STREAM, 0);
            ::fcntl(client, F_SETFL, O_NONBLOCK);
            ::connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address);
            fds << client;
        }
        QTest::qWait(200);
        return port;
    }

private:
    QList<int> fds;
    quint16 port = 0;
};

// Holds back the settings' own writing to disk, which the event loop does a moment after
// any change, so that only an explicit sync puts new values into the file.
class HeldFlush : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        return event->type() == QEvent::UpdateRequest || QObject::eventFilter(watched, event);
    }
};

// What the file itself holds. Settings objects of one process share what is not yet
// written, so the file is read through a copy under a name no other object knows.
QVariant onDisk(PageHarness& h, const QString& key)
{
    QTemporaryDir copies;
    const QString copy = copies.filePath(QStringLiteral("copy.ini"));
    if (!QFile::copy(h.folder().filePath(QStringLiteral("brinholt.ini")), copy))
        return QVariant();
    return QSettings(copy, QSettings::IniFormat).value(key);
}

} // namespace

// The connections page over the real BackEnd and the real receiver.
class TestConnectionsPage : public QObject
{
    Q_OBJECT

private:
    // Opens the page as the settings page does; with `ports` the page lists those in place
    // of the machine's, so that the rules for the list can be tried on any machine.
    static QQuickItem* open(PageHarness& h, const QStringList& ports = QStringList(), bool ownPorts = false)
    {
        QString properties;
        if (ownPorts) {
            QStringList quoted;
            for (const QString& port : ports)
                quoted << QLatin1Char('"') + port + QLatin1Char('"');
            properties = QStringLiteral(", {\"serialPorts\": [%1]}").arg(quoted.join(QLatin1Char(',')));
        }
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/settingsConnections\"%1)").arg(properties));
        QQuickItem* page = h.loadedPage();
        if (!page || page->objectName() != QLatin1String("connectionsPage"))
            return nullptr;
        return page;
    }

    static void sendPressure(quint16 port, double hPa)
    {
        QUdpSocket socket;
        const QByteArray bars = QByteArray::number(hPa / 1000.0, 'f', 5);
        socket.writeDatagram(DeviceSimulator::sentence("$WIXDR,P," + bars + ",B,Barometer") + "\r\n", QHostAddress::LocalHost,
                             port);
        socket.waitForBytesWritten(1000);
    }

private slots:
    void controlsStartAtTheirDefaults()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        QCOMPARE(page->property("ready").toBool(), true);
        QCOMPARE(prop(page, "title", "text").toString(), QStringLiteral("Connections"));
        QCOMPARE(prop(page, "swPos", "checked").toBool(), true);
        QCOMPARE(prop(page, "swSerial", "checked").toBool(), false);
        QCOMPARE(prop(page, "swTcp", "checked").toBool(), false);
        QCOMPARE(prop(page, "swUdp", "checked").toBool(), false);
        QCOMPARE(prop(page, "swUdpOut", "checked").toBool(), false);
        QCOMPARE(prop(page, "posInternal", "checked").toBool(), true);
        QCOMPARE(prop(page, "posNmea", "checked").toBool(), false);
        QCOMPARE(prop(page, "serialPort", "currentIndex").toInt(), -1);
        // With no port listed, only the entry for a typed path is there, and not chosen.
        QCOMPARE(prop(page, "serialPort", "count").toInt(), 1);
        QCOMPARE(prop(page, "serialDevicePath", "visible").toBool(), false);
        QCOMPARE(prop(page, "serialSpeed", "currentText").toString(), QStringLiteral("9600"));
        QCOMPARE(prop(page, "serialParity", "currentText").toString(), QStringLiteral("No Parity"));
        QCOMPARE(prop(page, "serialNbBits", "currentText").toString(), QStringLiteral("8 Bits"));
        QCOMPARE(prop(page, "serialStopBit", "currentText").toString(), QStringLiteral("1 Bit"));
        QCOMPARE(prop(page, "serialControl", "currentText").toString(), QStringLiteral("No Control"));
        QCOMPARE(prop(page, "tcpIpAddress", "text").toString(), QStringLiteral("127.000.000.001"));
        QCOMPARE(prop(page, "tcpIpPort", "value").toInt(), 10110);
        QCOMPARE(prop(page, "udpInputPort", "value").toInt(), 10110);
        QCOMPARE(prop(page, "sp_udpPort", "value").toInt(), 10110);
        QCOMPARE(prop(page, "swUpdPos", "checked").toBool(), false);
        QCOMPARE(prop(page, "swUdpMda", "checked").toBool(), false);
        // Each group follows its switch.
        QCOMPARE(prop(page, "udpInputPort", "enabled").toBool(), false);
        QCOMPARE(prop(page, "serialPort", "enabled").toBool(), false);
        QCOMPARE(prop(page, "posInternal", "enabled").toBool(), true);
        set(page, "swUdp", "checked", true);
        QCOMPARE(prop(page, "udpInputPort", "enabled").toBool(), true);
        set(page, "swSerial", "checked", true);
        QCOMPARE(prop(page, "serialPort", "enabled").toBool(), true);
        set(page, "swPos", "checked", false);
        QCOMPARE(prop(page, "posInternal", "enabled").toBool(), false);
        checkClean(h);
    }

    void comboBoxesAreAsWideAsTheirWidestEntry()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        const QString longPort = QStringLiteral("ttyUSB0 A serial adapter with a very long description indeed");
        QQuickItem* page = open(h, {QStringLiteral("ttyS0 Short"), longPort}, true);
        QVERIFY(page);
        BackEnd* b = h.backEnd();
        auto extra = [&](const char* id) {
            QObject* combo = control(page, id);
            auto* indicator = combo->property("indicator").value<QQuickItem*>();
            return (indicator ? indicator->width() : 0.0) + combo->property("leftPadding").toReal()
                   + combo->property("rightPadding").toReal();
        };
        auto minimum = [&](const char* id) {
            return PageHarness::evaluate(control(page, id), QStringLiteral("Layout.minimumWidth")).toReal();
        };
        // A long description is held to the sample's width.
        QCOMPARE(minimum("serialPort"), b->getHorizontalAdvance(longPort) + extra("serialPort"));
        QCOMPARE(minimum("serialSpeed"), b->getHorizontalAdvance(QStringLiteral("115200")) + extra("serialSpeed"));
        const int parity = std::max({b->getHorizontalAdvance(QStringLiteral("No Parity")),
                                     b->getHorizontalAdvance(QStringLiteral("Even Parity")),
                                     b->getHorizontalAdvance(QStringLiteral("Odd Parity")),
                                     b->getHorizontalAdvance(QStringLiteral("Space Parity")),
                                     b->getHorizontalAdvance(QStringLiteral("Mark Parity"))});
        QCOMPARE(minimum("serialParity"), parity + extra("serialParity"));
        QCOMPARE(minimum("serialNbBits"), minimum("serialParity"));
        QCOMPARE(minimum("serialStopBit"), minimum("serialControl"));
        QVERIFY(minimum("serialControl") > extra("serialControl"));
        checkClean(h);
    }

    void connectionsRoundTrip()
    {
        // UDP output broadcasts: only where nothing can leave.
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        PageHarness h;
        QVERIFY(startMain(h));
        const QStringList ports = {QStringLiteral("ttyFAKE0 First"), QStringLiteral("ttyFAKE1 Second")};
        QQuickItem* page = open(h, ports, true);
        QVERIFY(page);
        set(page, "swPos", "checked", false);
        set(page, "posNmea", "checked", true);
        QCOMPARE(prop(page, "posInternal", "checked").toBool(), false);
        set(page, "swSerial", "checked", true);
        set(page, "serialPort", "currentIndex", 1);
        set(page, "serialSpeed", "currentIndex", 5);
        set(page, "serialParity", "currentIndex", 2);
        set(page, "serialNbBits", "currentIndex", 1);
        set(page, "serialStopBit", "currentIndex", 2);
        set(page, "serialControl", "currentIndex", 1);
        set(page, "swTcp", "checked", true);
        set(page, "tcpIpAddress", "text", QStringLiteral("127.000.000.002"));
        set(page, "tcpIpPort", "value", 20001);
        set(page, "swUdp", "checked", true);
        set(page, "udpInputPort", "value", 20002);
        set(page, "swUdpOut", "checked", true);
        set(page, "sp_udpPort", "value", 20003);
        set(page, "swUpdPos", "checked", true);
        set(page, "swUdpMda", "checked", true);
        QVERIFY(leave(h));

        QCOMPARE(stored(h, "SettingSerialPort").toString(), QStringLiteral("ttyFAKE1 Second"));
        checkStored(h, {{"SettingUsePos", 0}, {"SettingUseSerial", 1}, {"SettingPosSource", 2}});
        QCOMPARE(stored(h, "SettingSerialSpeed").toString(), QStringLiteral("38400"));
        checkStored(h, {{"SettingSerialParity", 2}, {"SettingSerialNbBits", 1}, {"SettingSerialStopBit", 2},
                        {"SettingSerialControl", 1}});
        QCOMPARE(stored(h, "SettingTcpIpAddress").toString(), QStringLiteral("127.000.000.002"));
        checkStored(h, {{"SettingTcpIpPort", 20001}, {"SettingUseTcp", 1}, {"SettingUseUdp", 1},
                        {"SettingUdpPort", 20002}, {"SettingUseUdpOut", 1}, {"updPort", 20003}, {"sendUdpPos", 1},
                        {"sendUdpMda", 1}});
        // The speed the serial source really uses is another key, which the page leaves alone.
        QVERIFY(!stored(h, "SettingSerialPortSpeed").isValid());
        QVERIFY(h.backEnd()->getReceiver());

        page = open(h, ports, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "swPos", "checked").toBool(), false);
        QCOMPARE(prop(page, "posNmea", "checked").toBool(), true);
        QCOMPARE(prop(page, "posInternal", "checked").toBool(), false);
        QCOMPARE(prop(page, "swSerial", "checked").toBool(), true);
        QCOMPARE(prop(page, "serialPort", "currentText").toString(), QStringLiteral("ttyFAKE1 Second"));
        QCOMPARE(prop(page, "serialSpeed", "currentText").toString(), QStringLiteral("38400"));
        QCOMPARE(prop(page, "serialParity", "currentIndex").toInt(), 2);
        QCOMPARE(prop(page, "serialNbBits", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "serialStopBit", "currentIndex").toInt(), 2);
        QCOMPARE(prop(page, "serialControl", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "swTcp", "checked").toBool(), true);
        QCOMPARE(prop(page, "tcpIpAddress", "text").toString(), QStringLiteral("127.000.000.002"));
        QCOMPARE(prop(page, "tcpIpPort", "value").toInt(), 20001);
        QCOMPARE(prop(page, "swUdp", "checked").toBool(), true);
        QCOMPARE(prop(page, "udpInputPort", "value").toInt(), 20002);
        QCOMPARE(prop(page, "swUdpOut", "checked").toBool(), true);
        QCOMPARE(prop(page, "sp_udpPort", "value").toInt(), 20003);
        QCOMPARE(prop(page, "swUpdPos", "checked").toBool(), true);
        QCOMPARE(prop(page, "swUdpMda", "checked").toBool(), true);
        // Off again, so that the end of the test broadcasts nothing more.
        set(page, "swUdpOut", "checked", false);
        set(page, "swSerial", "checked", false);
        set(page, "swTcp", "checked", false);
        set(page, "swUdp", "checked", false);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingUseUdpOut").toInt(), 0);
    }

    void portListRules_data()
    {
        Columns::add<QVariant, QStringList, int, QString>("storedPort", "ports", "index", "saved");
        const QStringList two = {QStringLiteral("ttyFAKE0 First"), QStringLiteral("ttyFAKE1 Second")};
        QTest::newRow("no ports on the machine") << QVariant(QStringLiteral("ttyFAKE1 Second")) << QStringList() << -1
                                                 << "None";
        QTest::newRow("None stays None without ports") << QVariant(QStringLiteral("None")) << QStringList() << -1
                                                       << "None";
        // A list with entries starts at its first, which merely visiting the page stores.
        QTest::newRow("no key, ports present") << QVariant() << two << 0 << "ttyFAKE0 First";
        QTest::newRow("None with ports: the first is shown and stored")
                << QVariant(QStringLiteral("None")) << two << 0 << "ttyFAKE0 First";
        QTest::newRow("stored port found") << QVariant(QStringLiteral("ttyFAKE1 Second")) << two << 1 << "ttyFAKE1 Second";
        QTest::newRow("stored port gone: entry 0 in its place")
                << QVariant(QStringLiteral("ttyGONE Old")) << two << 0 << "ttyFAKE0 First";
    }

    void portListRules()
    {
        QFETCH(QVariant, storedPort);
        QFETCH(QStringList, ports);
        QFETCH(int, index);
        QFETCH(QString, saved);
        PageHarness h;
        if (storedPort.isValid())
            h.writeSetting("SettingSerialPort", storedPort);
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, ports, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "serialPort", "currentIndex").toInt(), index);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), saved);
        checkClean(h);
    }

    // A device the system does not list, but which is there, stays as it was stored.
    void unlistedDeviceIsKept_data()
    {
        Columns::add<QString, QString, QStringList>("what", "description", "ports");
        const QStringList two = {QStringLiteral("ttyFAKE0 First"), QStringLiteral("ttyFAKE1 Second")};
        QTest::newRow("a pseudo-terminal, no port listed") << "pty" << "" << QStringList();
        QTest::newRow("a pseudo-terminal after two listed ports") << "pty" << "" << two;
        QTest::newRow("a link to a pseudo-terminal, with a description") << "link" << " Simulated Skerry" << two;
        QTest::newRow("the null device") << "/dev/null" << "" << two;
    }

    void unlistedDeviceIsKept()
    {
        QFETCH(QString, what);
        QFETCH(QString, description);
        QFETCH(QStringList, ports);
        PageHarness h;
        PseudoTerminal pty(h.folder().filePath(QStringLiteral("skerry")));
        QVERIFY(pty.open());
        const QString path = what == QLatin1String("pty") ? pty.terminalPath()
                : what == QLatin1String("link")           ? pty.path()
                                                           : what;
        const QString entry = path + description;
        h.writeSetting("SettingSerialPort", entry);
        QVERIFY(startMain(h));
        for (int visit = 0; visit < 2; ++visit) {
            QQuickItem* page = open(h, ports, true);
            QVERIFY(page);
            // After the listed ports, before the entry for a typed path.
            QCOMPARE(prop(page, "serialPort", "count").toInt(), ports.size() + 2);
            QCOMPARE(prop(page, "serialPort", "currentIndex").toInt(), ports.size());
            QCOMPARE(prop(page, "serialPort", "currentText").toString(), entry);
            QCOMPARE(prop(page, "serialDevicePath", "visible").toBool(), false);
            QVERIFY(leave(h));
            QCOMPARE(stored(h, "SettingSerialPort").toString(), entry);
        }
        checkClean(h);
    }

    // Not a device, or not there: the stored text falls back as a vanished port does.
    void storedPathThatIsNoDeviceFallsBack_data()
    {
        Columns::add<QString, QStringList, int, QString>("what", "ports", "index", "saved");
        const QStringList two = {QStringLiteral("ttyFAKE0 First"), QStringLiteral("ttyFAKE1 Second")};
        QTest::newRow("a regular file, ports listed") << "file" << two << 0 << "ttyFAKE0 First";
        QTest::newRow("a regular file, no port listed") << "file" << QStringList() << -1 << "None";
        QTest::newRow("a folder") << "folder" << two << 0 << "ttyFAKE0 First";
        QTest::newRow("a link whose terminal is gone") << "dangling link" << two << 0 << "ttyFAKE0 First";
        QTest::newRow("a path that is nowhere") << "missing" << QStringList() << -1 << "None";
    }

    void storedPathThatIsNoDeviceFallsBack()
    {
        QFETCH(QString, what);
        QFETCH(QStringList, ports);
        QFETCH(int, index);
        QFETCH(QString, saved);
        PageHarness h;
        // A link left behind by a device that has gone, as the simulator's link can be.
        QVERIFY(QFile::link(h.folder().filePath(QStringLiteral("gone")), h.folder().filePath(QStringLiteral("dangling link"))));
        QVERIFY(QDir(h.folder().path()).mkdir(QStringLiteral("folder")));
        QFile file(h.folder().filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        h.writeSetting("SettingSerialPort", h.folder().filePath(what));
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, ports, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "serialPort", "currentIndex").toInt(), index);
        QCOMPARE(prop(page, "serialPort", "count").toInt(), ports.size() + 1);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), saved);
        checkClean(h);
    }

    // A path typed beside the list is stored as typed, present or not yet.
    void typedPathIsStored_data()
    {
        Columns::add<QString, QString>("typed", "saved");
        QTest::newRow("a pseudo-terminal") << "pty" << "pty";
        QTest::newRow("a path that is not there yet") << "/tmp/brinholt-no-such-skerry"
                                                      << "/tmp/brinholt-no-such-skerry";
        QTest::newRow("blanks around are dropped") << "  /dev/ttyUSB9 " << "/dev/ttyUSB9";
        QTest::newRow("nothing typed: no port") << "" << "None";
    }

    void typedPathIsStored()
    {
        QFETCH(QString, typed);
        QFETCH(QString, saved);
        PageHarness h;
        PseudoTerminal pty;
        QVERIFY(pty.open());
        if (typed == QLatin1String("pty"))
            typed = saved = pty.terminalPath();
        QVERIFY(startMain(h));
        const QStringList two = {QStringLiteral("ttyFAKE0 First"), QStringLiteral("ttyFAKE1 Second")};
        QQuickItem* page = open(h, two, true);
        QVERIFY(page);
        set(page, "swSerial", "checked", true);
        QCOMPARE(prop(page, "serialDevicePath", "visible").toBool(), false);
        // The last entry of the list opens the field.
        set(page, "serialPort", "currentIndex", two.size());
        QCOMPARE(prop(page, "serialPort", "currentText").toString(), QStringLiteral("Other device…"));
        QCOMPARE(prop(page, "serialDevicePath", "visible").toBool(), true);
        auto* field = qobject_cast<QQuickItem*>(control(page, "serialDevicePath"));
        QVERIFY(field);
        QVERIFY(PageInput::click(h.window(), page, field));
        QTRY_VERIFY(field->hasActiveFocus());
        for (const QChar c : typed)
            QTest::keyClick(h.window(), c.toLatin1());
        QCOMPARE(field->property("text").toString(), typed);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), saved);
        QCOMPARE(stored(h, "SettingUseSerial").toInt(), 1);
        QVERIFY2(pageWarnings(h).isEmpty(), qPrintable(pageWarnings(h).join('\n')));
    }

    void calibrationButtonFollowsTheStoredPort()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("ttyFAKE1 Second"));
        QVERIFY(startMain(h));
        // No ports: leaving stores "None", and the calibration button goes grey.
        QVERIFY(open(h, {}, true));
        press(h, "settingsButton");
        QCOMPARE(h.loadedPage()->objectName(), QStringLiteral("settingsPage"));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), QStringLiteral("None"));
        QCOMPARE(PageHarness::byId(h.loadedPage(), "buttonCalibration")->property("enabled").toBool(), false);
        checkClean(h);
    }

    void portsBelowSixThousandAreHeldAtSixThousand()
    {
        PageHarness h;
        h.writeSetting("SettingTcpIpPort", 80);
        h.writeSetting("SettingUdpPort", 5999);
        h.writeSetting("updPort", 1);
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "tcpIpPort", "value").toInt(), 6000);
        QCOMPARE(prop(page, "udpInputPort", "value").toInt(), 6000);
        QCOMPARE(prop(page, "sp_udpPort", "value").toInt(), 6000);
        // Typed: held back as well.
        set(page, "swTcp", "checked", true);
        auto* box = qobject_cast<QQuickItem*>(control(page, "tcpIpPort"));
        box->forceActiveFocus();
        QTest::keyClick(h.window(), Qt::Key_A, Qt::ControlModifier);
        for (char c : QByteArray("5000"))
            QTest::keyClick(h.window(), c);
        QTest::keyClick(h.window(), Qt::Key_Return);
        QCOMPARE(prop(page, "tcpIpPort", "value").toInt(), 6000);
        QCOMPARE(prop(page, "tcpIpPort", "displayText").toString(), QStringLiteral("6000"));
        set(page, "swTcp", "checked", false);
        QVERIFY(leave(h));
        checkStored(h, {{"SettingTcpIpPort", 6000}, {"SettingUdpPort", 6000}, {"updPort", 6000}});
        checkClean(h);
    }

    void unknownSpeedIsStoredEmpty()
    {
        PageHarness h;
        h.writeSetting("SettingSerialSpeed", QStringLiteral("14400"));
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "serialSpeed", "currentIndex").toInt(), -1);
        QCOMPARE(prop(page, "serialSpeed", "currentText").toString(), QString());
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingSerialSpeed").toString(), QString());
        checkClean(h);
    }

    void leavingWithoutChangeStillClearsAndRestarts()
    {
        const quint16 port = freeUdpPort();
        QVERIFY(port);
        PageHarness h;
        h.writeSetting("SettingUseUdp", 1);
        h.writeSetting("SettingUdpPort", port);
        QVERIFY(startMain(h));
        QPointer<NmeaReceiver> first = h.backEnd()->getReceiver();
        QVERIFY(first);
        h.backEnd()->setPositionData(QPointF(-4.5, 48.4), 5.0, 90.0, Udp);
        QCOMPARE(h.backEnd()->getPosition(), QPointF(-4.5, 48.4));
        QVERIFY(open(h, {}, true));
        // Only an explicit sync may bring the page's values to the file from here on.
        HeldFlush held;
        h.backEnd()->getSettings()->installEventFilter(&held);
        QVERIFY(!onDisk(h, "SettingSerialSpeed").isValid());
        QVERIFY(!onDisk(h, "SettingUsePos").isValid());
        const auto locationStarts = [&h] {
            return h.messages().filter(QStringLiteral("trying to start location services")).size();
        };
        const int startsBefore = locationStarts();
        QVERIFY(leave(h));
        // The file holds what the page wrote, before anything else could have written it.
        QCOMPARE(onDisk(h, "SettingSerialSpeed").toString(), QStringLiteral("9600"));
        QCOMPARE(onDisk(h, "SettingUsePos").toInt(), 1);
        QCOMPARE(onDisk(h, "SettingUdpPort").toInt(), int(port));
        // Position is wanted from the host's service by default: leaving asks for it anew.
        QCOMPARE(locationStarts(), startsBefore + 1);
        // Every fix is gone and a new receiver runs; the old one ends by itself.
        QCOMPARE(h.backEnd()->getPosition(), QPointF(0.0, 0.0));
        QVERIFY(h.backEnd()->getReceiver());
        QVERIFY(h.backEnd()->getReceiver() != first.data());
        QTRY_VERIFY_WITH_TIMEOUT(first.isNull(), 5000);
        QVERIFY2(pageWarnings(h).isEmpty(), qPrintable(pageWarnings(h).join('\n')));
    }

    void udpInputSwitchedOnAndOffFromThePage()
    {
        const quint16 port = freeUdpPort();
        QVERIFY(port);
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(startMain(h));
        QCOMPARE(h.backEnd()->getReceiver(), nullptr);
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        set(page, "swUdp", "checked", true);
        set(page, "udpInputPort", "value", port);
        QVERIFY(leave(h));
        QVERIFY(h.backEnd()->getReceiver());

        // The graph page shows it at the next tick.
        QObject* text = h.find("textPressure", h.item("baroH"));
        QVERIFY(text);
        QTRY_VERIFY_WITH_TIMEOUT((sendPressure(port, 1021.5), h.backEnd()->getPressureSource() == "From UDP connection"),
                                 5000);
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        h.backEnd()->slot_timerData();
        QCOMPARE(updates.count(), 1);
        QVERIFY2(updates.at(0).at(3).toString().contains(QStringLiteral("1021.5")),
                 qPrintable(updates.at(0).at(3).toString()));
        QVERIFY2(text->property("text").toString().contains(QStringLiteral("1021.5")),
                 qPrintable(text->property("text").toString()));

        // Off: the reading goes away and nothing more comes in.
        page = open(h, {}, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "swUdp", "checked").toBool(), true);
        QCOMPARE(prop(page, "udpInputPort", "value").toInt(), int(port));
        set(page, "swUdp", "checked", false);
        QVERIFY(leave(h));
        QCOMPARE(h.backEnd()->getReceiver(), nullptr);
        QTRY_COMPARE(h.backEnd()->getPressureSource(), QStringLiteral("No pressure available"));
        for (int i = 0; i < 5; ++i) {
            sendPressure(port, 1030.0);
            QTest::qWait(50);
        }
        QCOMPARE(h.backEnd()->getPressureSource(), QStringLiteral("No pressure available"));
        updates.clear();
        h.backEnd()->slot_timerData();
        QCOMPARE(updates.count(), 1);
        QCOMPARE(updates.at(0).at(3).toString(), QStringLiteral("NONE"));
        QVERIFY2(pageWarnings(h).isEmpty(), qPrintable(pageWarnings(h).join('\n')));
    }

    void statusLinesFollowTheRunningReceiver()
    {
        QAccessible::setActive(true);
        const quint16 port = freeUdpPort();
        const quint16 tcpPort = closedTcpPort();
        QVERIFY(port && tcpPort);
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        h.writeSetting("SettingUseUdp", 1);
        h.writeSetting("SettingUdpPort", port);
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        auto text = [&](const char* id) { return prop(h.loadedPage(), id, "text").toString(); };
        const QString listening = QStringLiteral("listening on port %1").arg(port);
        QTRY_VERIFY2(text("udpStatus").startsWith(listening + QStringLiteral(", but no sentence for ")),
                     qPrintable(text("udpStatus")));
        QCOMPARE(text("serialStatus"), QStringLiteral("off"));
        QCOMPARE(text("tcpStatus"), QStringLiteral("off"));
        QCOMPARE(text("udpOutStatus"), QStringLiteral("off"));

        // A sentence comes in while the page is open: the line tells it within a second.
        sendPressure(port, 1012.0);
        QTRY_VERIFY_WITH_TIMEOUT(text("udpStatus").startsWith(listening + QStringLiteral(", last sentence ")), 3000);
        QVERIFY2(QRegularExpression(QStringLiteral(", last sentence \\d+ s ago$")).match(text("udpStatus")).hasMatch(),
                 qPrintable(text("udpStatus")));
        auto* line = qobject_cast<QQuickItem*>(control(page, "udpStatus"));
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(line);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::StaticText);
        QCOMPARE(accessible->text(QAccessible::Name), text("udpStatus"));
        QVERIFY(line->property("wrapMode").toInt() != 0);

        // What the page shows edited is not running yet: the line waits for the page to be left.
        set(page, "swTcp", "checked", true);
        set(page, "tcpIpPort", "value", tcpPort);
        QTest::qWait(1500);
        QCOMPARE(text("tcpStatus"), QStringLiteral("off"));
        QVERIFY(leave(h));
        page = open(h, {}, true);
        QVERIFY(page);
        QTRY_COMPARE(text("tcpStatus"), QStringLiteral("cannot connect to 127.000.000.001:%1: connection refused, not "
                                                       "retried; leave this page to try again")
                                                .arg(tcpPort));
        QVERIFY(text("udpStatus").startsWith(listening));
        QVERIFY2(pageWarnings(h).isEmpty(), qPrintable(pageWarnings(h).join('\n')));
        set(page, "swTcp", "checked", false);
        set(page, "swUdp", "checked", false);
        QVERIFY(leave(h));
        QAccessible::setActive(false);
    }

    void statusLinesSpeakFrench()
    {
        const quint16 port = freeUdpPort();
        QVERIFY(port);
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        h.writeSetting("language", 1);
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        h.writeSetting("SettingUseUdp", 1);
        h.writeSetting("SettingUdpPort", port);
        QVERIFY(startMain(h, QSize(800, 600), QStringLiteral("fr")));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        QTRY_VERIFY2(prop(page, "udpStatus", "text")
                             .toString()
                             .startsWith(QStringLiteral("à l'écoute sur le port %1, mais aucune phrase depuis").arg(port)),
                     qPrintable(prop(page, "udpStatus", "text").toString()));
        QCOMPARE(prop(page, "serialStatus", "text").toString(), QStringLiteral("désactivée"));
        set(page, "swUdp", "checked", false);
        QVERIFY(leave(h));
        h.translations().selectLanguage("en");
    }

    void addressWithEmptyPlacesIsStoredAsTyped()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        set(page, "swTcp", "checked", true);
        auto* input = qobject_cast<QQuickItem*>(control(page, "tcpIpAddress"));
        QVERIFY(input);
        input->forceActiveFocus();
        QTRY_VERIFY(input->hasActiveFocus());
        // The cursor stands at the start when the field gets the focus.
        QCOMPARE(input->property("cursorPosition").toInt(), 0);
        QTest::keyClick(h.window(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(h.window(), Qt::Key_Delete);
        for (char c : QByteArray("127.0.0.1"))
            QTest::keyClick(h.window(), c);
        const QString typed = input->property("text").toString();
        QVERIFY2(typed != QStringLiteral("127.000.000.001"), qPrintable(typed));
        QCOMPARE(input->property("acceptableInput").toBool(), false);
        QTest::keyClick(h.window(), Qt::Key_Return);
        // Return hands the focus on.
        QVERIFY(!input->hasActiveFocus());
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingTcpIpAddress").toString(), typed);
        // The receiver runs with it; the address is the TCP source's business.
        QVERIFY(h.backEnd()->getReceiver());
        QTest::qWait(300);
        QVERIFY(h.window()->isVisible());
        QVERIFY(open(h, {}, true));
        QCOMPARE(prop(h.loadedPage(), "tcpIpAddress", "text").toString(), typed);
        set(h.loadedPage(), "swTcp", "checked", false);
        QVERIFY(leave(h));
    }

    void samePortForInputAndOutput()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        const quint16 port = freeUdpPort();
        QVERIFY(port);
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        set(page, "swUdp", "checked", true);
        set(page, "udpInputPort", "value", port);
        set(page, "swUdpOut", "checked", true);
        set(page, "sp_udpPort", "value", port);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingUdpPort").toInt(), int(port));
        QCOMPARE(stored(h, "updPort").toInt(), int(port));
        // Both run; input still takes what comes to the port.
        QTRY_VERIFY_WITH_TIMEOUT((sendPressure(port, 1011.0), h.backEnd()->getPressureSource() == "From UDP connection"),
                                 5000);
        QTest::qWait(1500);
        QVERIFY(h.window()->isVisible());
        page = open(h, {}, true);
        set(page, "swUdpOut", "checked", false);
        set(page, "swUdp", "checked", false);
        QVERIFY(leave(h));
    }

    void serialPortVanishingWhileThePageIsOpen()
    {
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));
        const QString entry = PageDevice::entry(device);
        QQuickItem* page = open(h, {entry}, true);
        QVERIFY(page);
        QCOMPARE(prop(page, "serialPort", "currentText").toString(), entry);
        device.vanish();
        QTest::qWait(300);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), entry);
        QVERIFY(h.backEnd()->getReceiver());
        // The device returns under the same name; the source finds it again by itself.
        QVERIFY(device.comeBack());
        h.backEnd()->setCurrentPressure(-2000.0, Serial);
        QTRY_VERIFY_WITH_TIMEOUT(h.backEnd()->getPressureSource() == "From serial connection", 15000);
    }

    void leavingWhileATcpServerDoesNotAnswer()
    {
        SilentServer server;
        const quint16 port = server.open();
        QVERIFY(port);
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, {}, true);
        QVERIFY(page);
        set(page, "swTcp", "checked", true);
        set(page, "tcpIpPort", "value", port);
        QVERIFY(leave(h));
        QVERIFY(h.backEnd()->getReceiver());
        // The source is now waiting for the handshake on the receiver's thread.
        QTest::qWait(300);
        QVERIFY(open(h, {}, true));
        QPointer<QQuickItem> again = h.loadedPage();
        QElapsedTimer clock;
        clock.start();
        press(h, "baroButton");
        while (!again.isNull() && clock.elapsed() < 20000)
            QTest::qWait(1);
        const qint64 blocked = clock.elapsed();
        QVERIFY(again.isNull());
        qInfo().noquote() << "leaving the connections page blocked the window for" << blocked << "ms";
        // No longer than the source's own wait for a connection.
        QVERIFY2(blocked < 5000 + 1000, qPrintable(QString::number(blocked)));
        QVERIFY(h.window()->isVisible());
        QTest::qWait(100);
        page = open(h, {}, true);
        set(page, "swTcp", "checked", false);
        QVERIFY(leave(h));
    }
};

QTEST_MAIN(TestConnectionsPage)
#include "tst_connectionspage.moc"
