// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SignalKStatusText.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

Q_DECLARE_METATYPE(SignalKStatus::Channel)
Q_DECLARE_METATYPE(SignalKStatus::Phase)

// The lines under the two ways of the Signal K output, in both languages.
class TestSignalKStatusText : public QObject
{
    Q_OBJECT

private:
    static void rows(bool french)
    {
        QTest::addColumn<SignalKStatus::Channel>("channel");
        QTest::addColumn<SignalKStatus::Phase>("phase");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::addColumn<int>("clients");
        QTest::addColumn<bool>("inUse");
        QTest::addColumn<QString>("errorText");
        QTest::addColumn<QString>("expected");
        const auto tcp = SignalKStatus::TcpServer;
        const auto udp = SignalKStatus::UdpDatagrams;
        auto row = [french](const char* name, SignalKStatus::Channel channel, SignalKStatus::Phase phase,
                            const QString& host, int port, int clients, bool inUse, const QString& error,
                            const QString& english, const QString& inFrench) {
            QTest::newRow(name) << channel << phase << host << port << clients << inUse << error
                                << (french ? inFrench : english);
        };
        row("off", tcp, SignalKStatus::Off, QString(), 0, 0, false, QString(), "off", "désactivée");
        row("no client yet", tcp, SignalKStatus::Listening, QString(), 8376, 0, false, QString(),
            "listening on port 8376, no client connected", "à l'écoute sur le port 8376, aucun client connecté");
        row("one client", tcp, SignalKStatus::Listening, QString(), 8376, 1, false, QString(),
            "listening on port 8376, 1 client connected", "à l'écoute sur le port 8376, 1 client connecté");
        row("two clients", tcp, SignalKStatus::Listening, QString(), 8376, 2, false, QString(),
            "listening on port 8376, 2 clients connected", "à l'écoute sur le port 8376, 2 clients connectés");
        row("port in use", tcp, SignalKStatus::Retrying, QString(), 8376, 0, true, QString("in use"),
            "port 8376 is in use; retrying every 10 s", "le port 8376 est déjà utilisé ; nouvel essai toutes les 10 s");
        row("port refused", tcp, SignalKStatus::Retrying, QString(), 80, 0, false, QString("The address is protected"),
            "cannot listen on port 80: The address is protected; retrying every 10 s",
            "impossible d'écouter sur le port 80 : The address is protected ; nouvel essai toutes les 10 s");
        row("sending", udp, SignalKStatus::Sending, QString("192.168.1.20"), 8376, 0, false, QString(),
            "sending to 192.168.1.20:8376", "envoi vers 192.168.1.20:8376");
        row("a name", udp, SignalKStatus::BadAddress, QString("boat.local"), 8376, 0, false, QString(),
            "boat.local is not an IP address; nothing is sent",
            "boat.local n'est pas une adresse IP ; rien n'est envoyé");
        row("send failed", udp, SignalKStatus::SendFailed, QString("10.0.0.9"), 8376, 0, false,
            QString("Network unreachable"), "cannot send to 10.0.0.9:8376: Network unreachable",
            "impossible d'envoyer vers 10.0.0.9:8376 : Network unreachable");
    }

    static QString describeRow()
    {
        QFETCH(SignalKStatus::Channel, channel);
        QFETCH(SignalKStatus::Phase, phase);
        QFETCH(QString, host);
        QFETCH(int, port);
        QFETCH(int, clients);
        QFETCH(bool, inUse);
        QFETCH(QString, errorText);
        SignalKStatus status;
        status.channel = channel;
        status.phase = phase;
        status.host = host;
        status.port = port;
        status.clients = clients;
        status.retryMs = 10000;
        status.addressInUse = inUse;
        status.errorText = errorText;
        return SignalKStatusText::describe(status);
    }

private slots:
    void english_data() { rows(false); }
    void english()
    {
        QFETCH(QString, expected);
        QCOMPARE(describeRow(), expected);
    }

    void french_data() { rows(true); }
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
};

QTEST_GUILESS_MAIN(TestSignalKStatusText)
#include "tst_signalkstatustext.moc"
