// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ConnectionStatusText.h"
#include "tests/support/Columns.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

Q_DECLARE_METATYPE(ConnectionStatus::Channel)
Q_DECLARE_METATYPE(ConnectionStatus::Phase)
Q_DECLARE_METATYPE(ConnectionStatus::Reason)

// The line beside each connection, for every state its source can be in.
class TestConnectionStatusText : public QObject
{
    Q_OBJECT

private:
    // The phase began at 100 s on the monotonic clock.
    static constexpr qint64 Since = 100000;

    static void columns()
    {
        Columns::add<ConnectionStatus::Channel, ConnectionStatus::Phase, ConnectionStatus::Reason, QString, int, int,
                QString, qint64, qint64, QString>(
                "channel", "phase", "reason", "where", "number", "milliseconds", "errorText", "lastSentence", "now",
                "expected");
    }

    static QString describeRow()
    {
        QFETCH(ConnectionStatus::Channel, channel);
        QFETCH(ConnectionStatus::Phase, phase);
        QFETCH(ConnectionStatus::Reason, reason);
        QFETCH(QString, where);
        QFETCH(int, number);
        QFETCH(int, milliseconds);
        QFETCH(QString, errorText);
        QFETCH(qint64, lastSentence);
        QFETCH(qint64, now);
        const ConnectionStatus status{channel, phase, reason, where, number, milliseconds, errorText, Since};
        return ConnectionStatusText::describe(status, lastSentence, now);
    }

private slots:
    void english_data()
    {
        columns();
        using S = ConnectionStatus;
        const QString tty = QStringLiteral("/dev/ttyUSB0");
        const QString host = QStringLiteral("192.168.1.10");

        QTest::newRow("serial off") << S::SerialInput << S::Off << S::NoReason << QString() << 0 << 0 << QString() << qint64(-1)
                          << Since << "off";
        QTest::newRow("output off") << S::UdpOutput << S::Off << S::NoReason << QString() << 0 << 0 << QString() << qint64(-1)
                          << Since << "off";
        QTest::newRow("serial on without a port") << S::SerialInput << S::NoPort << S::NoReason << QString() << 0 << 0
                                        << QString() << qint64(-1) << Since << "on, but no port chosen";
        QTest::newRow("serial opening") << S::SerialInput << S::Opening << S::NoReason << tty << 9600 << 0 << QString()
                              << qint64(-1) << Since << "opening /dev/ttyUSB0";
        QTest::newRow("serial reading, last sentence 2 s ago")
                << S::SerialInput << S::Open << S::NoReason << tty << 9600 << 0 << QString() << Since + 5000
                << Since + 7999 << "reading /dev/ttyUSB0 at 9600 baud, last sentence 2 s ago";
        QTest::newRow("serial open 30 s with no sentence at all")
                << S::SerialInput << S::Open << S::NoReason << tty << 9600 << 0 << QString() << qint64(-1)
                << Since + 30000 << "/dev/ttyUSB0 open at 9600 baud, but no sentence for 30 s";
        QTest::newRow("serial sentence of an earlier opening does not count as this one's")
                << S::SerialInput << S::Open << S::NoReason << tty << 4800 << 0 << QString() << Since - 70000
                << Since + 12000 << "/dev/ttyUSB0 open at 4800 baud, but no sentence for 12 s";
        QTest::newRow("serial sentence 59.999 s old still reads")
                << S::SerialInput << S::Open << S::NoReason << tty << 9600 << 0 << QString() << Since
                << Since + 59999 << "reading /dev/ttyUSB0 at 9600 baud, last sentence 59 s ago";
        QTest::newRow("serial sentence 60 s old is silence")
                << S::SerialInput << S::Open << S::NoReason << tty << 9600 << 0 << QString() << Since
                << Since + 60000 << "/dev/ttyUSB0 open at 9600 baud, but no sentence for 60 s";
        QTest::newRow("serial permission denied")
                << S::SerialInput << S::Retrying << S::PermissionDenied << tty << 9600 << 10000
                << QStringLiteral("Permission denied") << qint64(-1) << Since
                << "cannot open /dev/ttyUSB0: permission denied (add your user to the dialout group, then log in "
                   "again); retrying every 10 s";
        QTest::newRow("serial no such device") << S::SerialInput << S::Retrying << S::NoSuchDevice << tty << 9600 << 10000
                                     << QStringLiteral("No such file or directory") << qint64(-1) << Since
                                     << "cannot open /dev/ttyUSB0: no such device; retrying every 10 s";
        QTest::newRow("serial other error in the system's words")
                << S::SerialInput << S::Retrying << S::Other << tty << 9600 << 10000
                << QStringLiteral("Device or resource busy") << qint64(-1) << Since
                << "cannot open /dev/ttyUSB0: Device or resource busy; retrying every 10 s";
        QTest::newRow("serial lost") << S::SerialInput << S::Retrying << S::Lost << tty << 9600 << 10000
                           << QStringLiteral("Input/output error") << Since << Since + 1000
                           << "/dev/ttyUSB0 lost (Input/output error); retrying every 10 s";
        QTest::newRow("tcp waiting behind the serial source, 3 s left")
                << S::TcpInput << S::Delayed << S::NoReason << host << 10110 << 5000 << QString() << qint64(-1)
                << Since + 2000 << "starts in 3 s, after the serial input";
        QTest::newRow("tcp connecting") << S::TcpInput << S::Opening << S::NoReason << host << 10110 << 0 << QString()
                              << qint64(-1) << Since << "connecting to 192.168.1.10:10110";
        QTest::newRow("tcp connected, last sentence 2 s ago")
                << S::TcpInput << S::Open << S::NoReason << host << 10110 << 0 << QString() << Since + 1000
                << Since + 3500 << "connected to 192.168.1.10:10110, last sentence 2 s ago";
        QTest::newRow("tcp connected but silent") << S::TcpInput << S::Open << S::NoReason << host << 10110 << 0 << QString()
                                        << qint64(-1) << Since + 4000
                                        << "connected to 192.168.1.10:10110, but no sentence for 4 s";
        QTest::newRow("tcp refused at the first attempt")
                << S::TcpInput << S::GivenUp << S::Refused << host << 10110 << 0 << QStringLiteral("Connection refused")
                << qint64(-1) << Since
                << "cannot connect to 192.168.1.10:10110: connection refused, not retried; leave this page to try "
                   "again";
        QTest::newRow("tcp host not found at the first attempt")
                << S::TcpInput << S::GivenUp << S::HostNotFound << QStringLiteral("nowhere.invalid") << 10110 << 0
                << QStringLiteral("Host not found") << qint64(-1) << Since
                << "cannot connect to nowhere.invalid:10110: host not found, not retried; leave this page to try "
                   "again";
        QTest::newRow("tcp lost") << S::TcpInput << S::Retrying << S::Lost << host << 10110 << 10000
                        << QStringLiteral("The remote host closed the connection") << Since << Since + 1
                        << "connection to 192.168.1.10:10110 lost, retrying every 10 s";
        QTest::newRow("tcp retry timed out") << S::TcpInput << S::Retrying << S::TimedOut << host << 10110 << 10000
                                   << QStringLiteral("Socket operation timed out") << qint64(-1) << Since
                                   << "cannot connect to 192.168.1.10:10110: no answer within 5 s; retrying every "
                                      "10 s";
        QTest::newRow("udp waiting behind the serial source")
                << S::UdpInput << S::Delayed << S::NoReason << QString() << 10110 << 5000 << QString() << qint64(-1)
                << Since << "starts in 5 s, after the serial input";
        QTest::newRow("udp listening, last sentence 0 s ago")
                << S::UdpInput << S::Open << S::NoReason << QString() << 10110 << 0 << QString() << Since + 10
                << Since + 900 << "listening on port 10110, last sentence 0 s ago";
        QTest::newRow("udp listening, nothing yet") << S::UdpInput << S::Open << S::NoReason << QString() << 10110 << 0
                                          << QString() << qint64(-1) << Since + 2000
                                          << "listening on port 10110, but no sentence for 2 s";
        QTest::newRow("udp port in use at the first attempt")
                << S::UdpInput << S::GivenUp << S::AddressInUse << QString() << 10110 << 0
                << QStringLiteral("The bound address is already in use") << qint64(-1) << Since
                << "cannot listen on port 10110: port already in use, not retried; leave this page to try again";
        QTest::newRow("udp rebind fails") << S::UdpInput << S::Retrying << S::AddressInUse << QString() << 10110 << 10000
                                << QString() << qint64(-1) << Since
                                << "cannot listen on port 10110: port already in use; retrying every 10 s";
        QTest::newRow("udp lost") << S::UdpInput << S::Retrying << S::Lost << QString() << 10110 << 10000 << QString()
                        << qint64(-1) << Since << "listening on port 10110 stopped, retrying every 10 s";
        QTest::newRow("output starting") << S::UdpOutput << S::Opening << S::NoReason << QString() << 0 << 0 << QString()
                               << qint64(-1) << Since << "starting";
        QTest::newRow("output to no address") << S::UdpOutput << S::Open << S::NoReason << QString() << 0 << 0 << QString()
                                    << qint64(-1) << Since
                                    << "no broadcast address found: no network that can broadcast is up";
        QTest::newRow("output to one address") << S::UdpOutput << S::Open << S::NoReason << QString() << 1 << 0 << QString()
                                     << qint64(-1) << Since << "sending to 1 broadcast address";
        QTest::newRow("output to three addresses") << S::UdpOutput << S::Open << S::NoReason << QString() << 3 << 0
                                         << QString() << qint64(-1) << Since << "sending to 3 broadcast addresses";
    }

    void english()
    {
        QFETCH(QString, expected);
        QCOMPARE(describeRow(), expected);
    }

    // The ports and rates are numbers, not quantities: no group separator in any language.
    void french_data()
    {
        columns();
        using S = ConnectionStatus;
        const QString tty = QStringLiteral("/dev/ttyUSB0");
        QTest::newRow("off") << S::TcpInput << S::Off << S::NoReason << QString() << 0 << 0 << QString() << qint64(-1)
                             << Since << "désactivée";
        QTest::newRow("serial reading")
                << S::SerialInput << S::Open << S::NoReason << tty << 115200 << 0 << QString() << Since
                << Since + 2000 << "lecture de /dev/ttyUSB0 à 115200 bauds, dernière phrase il y a 2 s";
        QTest::newRow("serial permission denied")
                << S::SerialInput << S::Retrying << S::PermissionDenied << tty << 9600 << 10000 << QString()
                << qint64(-1) << Since
                << "impossible d'ouvrir /dev/ttyUSB0 : permission refusée (ajoutez votre utilisateur au groupe "
                   "dialout, puis reconnectez-vous) ; nouvel essai toutes les 10 s";
        QTest::newRow("tcp refused") << S::TcpInput << S::GivenUp << S::Refused << QStringLiteral("127.0.0.1")
                                     << 10110 << 0 << QString() << qint64(-1) << Since
                                     << "impossible de se connecter à 127.0.0.1:10110 : connexion refusée, pas de "
                                        "nouvel essai ; quittez cette page pour réessayer";
        QTest::newRow("udp listening") << S::UdpInput << S::Open << S::NoReason << QString() << 10110 << 0
                                       << QString() << qint64(-1) << Since + 30000
                                       << "à l'écoute sur le port 10110, mais aucune phrase depuis 30 s";
        QTest::newRow("output to two addresses") << S::UdpOutput << S::Open << S::NoReason << QString() << 2 << 0
                                                 << QString() << qint64(-1) << Since
                                                 << "envoi vers 2 adresses de diffusion";
    }

    void french()
    {
        QFETCH(QString, expected);
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&translator);
        const QString text = describeRow();
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(text, expected);
    }

    void serialErrorsMapToReasons_data()
    {
        Columns::add<int, ConnectionStatus::Reason>("error", "reason");
        QTest::newRow("permission") << int(QSerialPort::PermissionError) << ConnectionStatus::PermissionDenied;
        QTest::newRow("not found") << int(QSerialPort::DeviceNotFoundError) << ConnectionStatus::NoSuchDevice;
        QTest::newRow("open error") << int(QSerialPort::OpenError) << ConnectionStatus::Other;
        QTest::newRow("resource") << int(QSerialPort::ResourceError) << ConnectionStatus::Other;
    }

    void serialErrorsMapToReasons()
    {
        QFETCH(int, error);
        QFETCH(ConnectionStatus::Reason, reason);
        QCOMPARE(ConnectionStatus::reasonFor(static_cast<QSerialPort::SerialPortError>(error)), reason);
    }

    void socketErrorsMapToReasons_data()
    {
        Columns::add<int, ConnectionStatus::Reason>("error", "reason");
        QTest::newRow("refused") << int(QAbstractSocket::ConnectionRefusedError) << ConnectionStatus::Refused;
        QTest::newRow("host") << int(QAbstractSocket::HostNotFoundError) << ConnectionStatus::HostNotFound;
        QTest::newRow("timeout") << int(QAbstractSocket::SocketTimeoutError) << ConnectionStatus::TimedOut;
        QTest::newRow("in use") << int(QAbstractSocket::AddressInUseError) << ConnectionStatus::AddressInUse;
        QTest::newRow("access") << int(QAbstractSocket::SocketAccessError) << ConnectionStatus::PermissionDenied;
        QTest::newRow("network") << int(QAbstractSocket::NetworkError) << ConnectionStatus::Other;
    }

    void socketErrorsMapToReasons()
    {
        QFETCH(int, error);
        QFETCH(ConnectionStatus::Reason, reason);
        QCOMPARE(ConnectionStatus::reasonFor(static_cast<QAbstractSocket::SocketError>(error)), reason);
    }
};

QTEST_GUILESS_MAIN(TestConnectionStatusText)
#include "tst_connectionstatustext.moc"
