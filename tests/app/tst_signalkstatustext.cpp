// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SignalKStatusText.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

// The lines under the two ways of the Signal K output, in both languages.
class TestSignalKStatusText : public QObject
{
    Q_OBJECT

private:
    static SignalKStatus status(SignalKStatus::Channel channel, SignalKStatus::Phase phase, const QString& host = {},
                                int port = 8376, int clients = 0)
    {
        return SignalKStatus{channel, phase, host, QString(), port, clients, 10000};
    }

    static void rows(bool french)
    {
        QTest::addColumn<SignalKStatus>("status");
        QTest::addColumn<QString>("expected");
        const auto tcp = SignalKStatus::TcpServer;
        const auto udp = SignalKStatus::UdpDatagrams;
        auto row = [french](const char* name, const SignalKStatus& s, const QString& english, const QString& inFrench) {
            QTest::newRow(name) << s << (french ? inFrench : english);
        };
        SignalKStatus inUse = status(tcp, SignalKStatus::Retrying);
        inUse.addressInUse = true;
        SignalKStatus refused = status(tcp, SignalKStatus::Retrying, {}, 80);
        refused.errorText = QStringLiteral("The address is protected");
        SignalKStatus failed = status(udp, SignalKStatus::SendFailed, QStringLiteral("10.0.0.9"));
        failed.errorText = QStringLiteral("Network unreachable");

        row("off", status(tcp, SignalKStatus::Off), "off", "désactivée");
        row("no client yet", status(tcp, SignalKStatus::Listening), "listening on port 8376, no client connected",
            "à l'écoute sur le port 8376, aucun client connecté");
        row("one client", status(tcp, SignalKStatus::Listening, {}, 8376, 1), "listening on port 8376, 1 client connected",
            "à l'écoute sur le port 8376, 1 client connecté");
        row("two clients", status(tcp, SignalKStatus::Listening, {}, 8376, 2),
            "listening on port 8376, 2 clients connected", "à l'écoute sur le port 8376, 2 clients connectés");
        row("port in use", inUse, "port 8376 is in use; retrying every 10 s",
            "le port 8376 est déjà utilisé ; nouvel essai toutes les 10 s");
        row("port refused", refused, "cannot listen on port 80: The address is protected; retrying every 10 s",
            "impossible d'écouter sur le port 80 : The address is protected ; nouvel essai toutes les 10 s");
        row("sending", status(udp, SignalKStatus::Sending, QStringLiteral("192.168.1.20")), "sending to 192.168.1.20:8376",
            "envoi vers 192.168.1.20:8376");
        row("a name", status(udp, SignalKStatus::BadAddress, QStringLiteral("boat.local")),
            "boat.local is not an IP address; nothing is sent", "boat.local n'est pas une adresse IP ; rien n'est envoyé");
        row("send failed", failed, "cannot send to 10.0.0.9:8376: Network unreachable",
            "impossible d'envoyer vers 10.0.0.9:8376 : Network unreachable");
    }

private slots:
    void english_data() { rows(false); }
    void english()
    {
        QFETCH(SignalKStatus, status);
        QFETCH(QString, expected);
        QCOMPARE(SignalKStatusText::describe(status), expected);
    }

    void french_data() { rows(true); }
    void french()
    {
        QFETCH(SignalKStatus, status);
        QFETCH(QString, expected);
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&translator);
        const QString text = SignalKStatusText::describe(status);
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(text, expected);
    }
};

QTEST_GUILESS_MAIN(TestSignalKStatusText)
#include "tst_signalkstatustext.moc"
