// SPDX-License-Identifier: GPL-3.0-or-later
// Brinholt against a real Signal K server: the output read back through the server's REST
// interface, over UDP and over TCP, with the pressure-fall warning of a real storm; the
// server's NMEA 0183 output read by the TCP input. The server runs in a private network
// namespace: it announces itself and reaches out to the internet otherwise.
#include "DeviceSim.h"
#include "log/PressureWarning.h"
#include "nmea/EchoGuard.h"
#include "nmea/NmeaReceiver.h"
#include "nmea/SignalKDelta.h"
#include "nmea/SignalKLink.h"
#include "nmea/SignalKUdpSender.h"
#include "tests/log/BuoyRecord.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/DeltaFormat.h"
#include "tests/support/NetworkNamespace.h"
#include "tests/support/SignalKServer.h"
#include "util/Pressure.h"
#include "util/StatePublisher.h"

#include "app/BackEnd.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QTcpSocket>
#include <QtNetwork/QUdpSocket>
#include <QtTest/QtTest>

#include <cmath>
#include <memory>

namespace {

constexpr int TcpPort = 8376;
constexpr int UdpPort = 8377;

// One moment of the replay as the tick would publish it, the warning included.
ShownState stateAt(const BuoyRecord& record, qint64 t, const PressureWarning& warning)
{
    auto change = [&](qint64 ago) {
        const std::optional<double> then = record.at(t - ago);
        return then ? *record.at(t) - *then : ShownState::Unknown;
    };
    ShownState s;
    s.tickTime = t * 1000;
    s.readingTime = s.tickTime;
    s.rawPressure = *record.at(t);
    s.stationPressureHpa = s.rawPressure;
    s.source = Serial;
    s.change3h = change(10800);
    s.change1h = change(3600);
    s.trend = -3;
    s.warningLevel = warning.getLevel();
    s.warningAcknowledged = warning.isAcknowledged();
    s.warningFall3h = warning.getFall3h();
    s.warningFall1h = warning.getFall1h();
    s.warningSince = warning.getSince();
    s.warningText = warning.levelText();
    s.warningDetail = warning.getLevel() ? warning.detailText() : QString();
    return s;
}

// The storm of 12 January 2012, hour by hour through the warning: the first moment of
// each level (the alarm also once acknowledged), and of the calm after.
QList<ShownState> stormMoments()
{
    BuoyRecord record;
    if (!record.load(BuoyRecord::firstHalfOf2012()))
        return {};
    PressureWarning warning;
    QList<ShownState> moments;
    int wanted = 1;
    for (qint64 t = record.onGrid(BuoyRecord::utc(1, 11, 12), 3600); t < BuoyRecord::utc(1, 14); t += 3600) {
        const std::optional<double> now = record.at(t);
        if (!now)
            continue;
        auto fall = [&](qint64 ago) {
            const std::optional<double> then = record.at(t - ago);
            return then ? std::optional<double>(*then - *now) : std::nullopt;
        };
        warning.evaluate(fall(10800), fall(3600), t);
        if (warning.getLevel() != wanted % 3)
            continue;
        moments << stateAt(record, t, warning);
        if (wanted == 2) {
            warning.acknowledge();
            moments << stateAt(record, t, warning);
        }
        if (++wanted > 3)
            break;
    }
    return moments;
}

double pascalsAt(SignalKServer& server, const QString& path)
{
    const QJsonValue value = server.self(path).toObject().value(QStringLiteral("value"));
    return value.isDouble() ? value.toDouble() : std::nan("");
}

QString notificationState(SignalKServer& server)
{
    return server.self(QStringLiteral("notifications/environment/outside/pressure"))
            .toObject()
            .value(QStringLiteral("value"))
            .toObject()
            .value(QStringLiteral("state"))
            .toString();
}

QString notificationMessage(SignalKServer& server)
{
    return server.self(QStringLiteral("notifications/environment/outside/pressure/value/message")).toString();
}

QStringList notificationMethod(SignalKServer& server)
{
    QStringList methods;
    for (const QJsonValue& m : server.self(QStringLiteral("notifications/environment/outside/pressure/value/method")).toArray())
        methods << m.toString();
    return methods;
}

// The server's words that could be about what we sent: any error but the few it says of
// itself in a namespace with no way out.
QStringList errorsOf(const QStringList& log)
{
    QStringList errors;
    for (const QString& line : log) {
        const bool suspicious = line.contains(QLatin1String("error"), Qt::CaseInsensitive)
                || line.contains(QLatin1String("invalid"), Qt::CaseInsensitive)
                || line.contains(QLatin1String("parse"), Qt::CaseInsensitive)
                || line.contains(QLatin1String("brinholt"), Qt::CaseInsensitive);
        const bool itsOwn = line.contains(QLatin1String("unable to check for new server version"))
                || line.contains(QLatin1String("security config"))
                || line.startsWith(QLatin1String("TcpProvider:"));
        if (suspicious && !itsOwn)
            errors << line;
    }
    return errors;
}

// Runs the official delta schema of the server's own package over each message.
QString schemaProblems(const QList<QByteArray>& messages)
{
    QString why;
    const QString server = SignalKServer::executable(&why);
    if (server.isEmpty())
        return why;
    const QString schema = QFileInfo(server).absolutePath()
            + QStringLiteral("/../lib/node_modules/signalk-server/node_modules/@signalk/signalk-schema");
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("messages")));
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("cannot write the messages");
    for (const QByteArray& message : messages)
        file.write(message + '\n');
    file.close();
    const QString script = QStringLiteral(
            "const s = require(process.argv[1]); let bad = 0;"
            "for (const line of require('fs').readFileSync(process.argv[2], 'utf8').split('\\n')) {"
            "  if (!line) continue; const r = s.validateDelta(JSON.parse(line));"
            "  if (!r.valid) { bad++; console.log(JSON.stringify(r.errors.map(e => e.message + ' ' + e.dataPath)), line); } }"
            "process.exit(bad ? 1 : 0);");
    QProcess node;
    node.setProcessChannelMode(QProcess::MergedChannels);
    node.start(QStringLiteral("node"), {QStringLiteral("-e"), script, schema, file.fileName()});
    if (!node.waitForFinished(30000) || node.exitCode() != 0)
        return QStringLiteral("the delta schema refuses:\n") + QString::fromUtf8(node.readAll());
    return QString();
}

} // namespace

class TestSignalKServer : public QObject
{
    Q_OBJECT

private:
    StatePublisher publisher;

    static void sendDatagram(const QJsonObject& delta)
    {
        QUdpSocket socket;
        socket.writeDatagram(QJsonDocument(delta).toJson(QJsonDocument::Compact), QHostAddress::LocalHost, UdpPort);
    }

private slots:
    void init()
    {
        SignalKLink::setPollMs(20);
    }

    void cleanup()
    {
        StatePublisher::withdraw(&publisher);
        NmeaReceiver::setDelayBehindSerialMs(5000);
        SignalKLink::setPollMs(250);
        SignalKUdpSender::setMetaIntervalMs(60000);
    }

    void serverIsInstalled()
    {
        // Tests never fetch it: scripts/test runs scripts/install-deps first.
        QString why;
        QVERIFY2(!SignalKServer::executable(&why).isEmpty(), qPrintable(why));
    }

    void throughARealServer()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        SignalKServer server;
        server.addSignalKOverTcp(QStringLiteral("brinholt-tcp"), QStringLiteral("127.0.0.1"), TcpPort);
        server.addSignalKOverUdp(QStringLiteral("brinholt-udp"), UdpPort);
        server.convertToNmea0183({QStringLiteral("XDRBaro"), QStringLiteral("MMB")});
        QString why;
        QVERIFY2(server.start(&why), qPrintable(why));

        // Over UDP first. The meta goes again every second here, so that the server has it
        // whenever it started listening.
        SignalKUdpSender::setMetaIntervalMs(1000);
        BackEndFixture fixture({{QStringLiteral("signalkUdpOn"), 1},
                                {QStringLiteral("signalkUdpPort"), UdpPort}});
        // In place of the back end's own, which its tick feeds.
        StatePublisher::install(&publisher);
        BackEnd& b = *fixture.b;
        ShownState calm;
        calm.tickTime = QDateTime::currentMSecsSinceEpoch();
        calm.readingTime = calm.tickTime;
        calm.rawPressure = 1012.34;
        calm.stationPressureHpa = 1012.34;
        calm.source = Serial;
        calm.change3h = -0.8;
        calm.change1h = -0.3;
        calm.trend = -1;
        publisher.publish(calm);
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(pascalsAt(server, QStringLiteral("environment/outside/pressure")) - 101234.0) <= 1.0,
                                 15000);
        QCOMPARE(server.self(QStringLiteral("environment/outside/pressure/$source")).toString(), QStringLiteral("brinholt"));
        QTRY_COMPARE(server.self(QStringLiteral("environment/outside/pressure/meta/units")).toString(), QStringLiteral("Pa"));
        QTRY_COMPARE(server.self(QStringLiteral("environment/outside/pressure/threeHoursDelta/meta/units")).toString(),
                     QStringLiteral("Pa"));
        QCOMPARE(pascalsAt(server, QStringLiteral("environment/outside/pressure/threeHoursDelta")), -80.0);
        QCOMPARE(pascalsAt(server, QStringLiteral("environment/outside/pressure/oneHourDelta")), -30.0);
        QCOMPARE(server.self(QStringLiteral("environment/outside/pressure/trend/tendency/value")).toString(),
                 QStringLiteral("FALLING"));
        QCOMPARE(server.self(QStringLiteral("environment/outside/pressure/trend/oneHourClass/value")).toInt(), -1);

        // Then over TCP, through the storm. A client of our own beside the server keeps
        // every message for the schema.
        b.setSetting(QStringLiteral("signalkUdpOn"), 0);
        b.setSetting(QStringLiteral("signalkTcpOn"), 1);
        b.startNmea();
        QTRY_VERIFY(b.connectionStatus(SignalKStatus::TcpServer).startsWith(QStringLiteral("listening")));
        QTcpSocket witness;
        witness.connectToHost(QHostAddress::LocalHost, TcpPort);
        QVERIFY(witness.waitForConnected(5000));
        // The server tries again every five seconds at most.
        QTRY_COMPARE_WITH_TIMEOUT(b.connectionStatus(SignalKStatus::TcpServer),
                                  QStringLiteral("listening on port 8376, 2 clients connected"), 10000);
        const QList<ShownState> storm = stormMoments();
        QCOMPARE(storm.size(), 4);
        const QStringList states = {QStringLiteral("warn"), QStringLiteral("alarm"), QStringLiteral("alarm"),
                                    QStringLiteral("normal")};
        const QList<QStringList> methods = {{QStringLiteral("visual")},
                                            {QStringLiteral("visual"), QStringLiteral("sound")},
                                            {QStringLiteral("visual")},
                                            {}};
        const QStringList messages = {QStringLiteral("Pressure falling quickly. Fall of "),
                                      QStringLiteral("Pressure falling very rapidly. Fall of "),
                                      QStringLiteral("Pressure falling very rapidly. Fall of "),
                                      QStringLiteral("The pressure-fall warning has ended")};
        for (int i = 0; i < storm.size(); ++i) {
            publisher.publish(storm.at(i));
            QTRY_VERIFY(std::abs(pascalsAt(server, QStringLiteral("environment/outside/pressure"))
                                 - storm.at(i).rawPressure * 100.0)
                        <= 1.0);
            QTRY_COMPARE(notificationState(server), states.at(i));
            QTRY_COMPARE(notificationMethod(server), methods.at(i));
            QVERIFY2(notificationMessage(server).startsWith(messages.at(i)), qPrintable(notificationMessage(server)));
            QCOMPARE(pascalsAt(server, QStringLiteral("environment/outside/pressure/threeHoursDelta")),
                     std::round(storm.at(i).change3h * 1000.0) / 10.0);
        }

        QList<QByteArray> seen;
        while (witness.canReadLine() || witness.waitForReadyRead(200)) {
            while (witness.canReadLine())
                seen << witness.readLine().trimmed();
        }
        QVERIFY(seen.size() >= 5);
        for (const QByteArray& message : seen)
            QVERIFY2(DeltaFormat::problems(message).isEmpty(), qPrintable(DeltaFormat::problems(message) + message));
        const QString refused = schemaProblems(seen);
        QVERIFY2(refused.isEmpty(), qPrintable(refused));

        // The server's NMEA 0183 output read by the TCP input: another barometer on the
        // server's network, as one on NMEA 2000 would be.
        publisher.publish(ShownState());
        b.setSetting(QStringLiteral("SettingUseTcp"), 1);
        b.setSetting(QStringLiteral("SettingTcpIpPort"), 10110);
        b.startNmea();
        const QJsonObject other{{QStringLiteral("updates"),
                                 QJsonArray{QJsonObject{{QStringLiteral("$source"), QStringLiteral("n2k-barometer")},
                                                        {QStringLiteral("values"),
                                                         QJsonArray{QJsonObject{{QStringLiteral("path"), SignalKDelta::PressurePath},
                                                                                {QStringLiteral("value"), 100810.0}}}}}}}};
        QElapsedTimer timer;
        timer.start();
        while (std::abs(b.getCurrentPressure() - 1008.1) > 0.05 && timer.elapsed() < 15000) {
            sendDatagram(other);
            QTest::qWait(300);
        }
        QVERIFY2(std::abs(b.getCurrentPressure() - 1008.1) <= 0.05,
                 qPrintable(QString::number(b.getCurrentPressure()) + QLatin1Char(' ') + b.connectionStatus(2)));
        QCOMPARE(b.getPressureSource(), QStringLiteral("From TCP connection"));

        // Both ways at once, from a real device through the back end's own tick: our
        // pressure goes to the server and comes back as sentences, which never count as a
        // reading; when the device stops, the pressure ends in Brinholt and in the server.
        StatePublisher::withdraw(&publisher);
        StatePublisher::install(&b.getStatePublisher());
        DeviceSim device;
        QTemporaryDir deviceFolder;
        const QString port = device.start({QStringLiteral("--interval"), QStringLiteral("200"),
                                           QStringLiteral("--link"), deviceFolder.filePath(QStringLiteral("skerry"))});
        QVERIFY(!port.isEmpty());
        NmeaReceiver::setDelayBehindSerialMs(0);
        b.setSetting(QStringLiteral("SettingSerialPort"), port);
        b.setSetting(QStringLiteral("SettingUseSerial"), 1);
        b.startNmea();
        QTRY_COMPARE_WITH_TIMEOUT(b.connectionStatus(SignalKStatus::TcpServer),
                                  QStringLiteral("listening on port 8376, 1 client connected"), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(b.getStatePublisher().current()->source, int(Serial), 10000);
        auto sameAsOurs = [&] {
            const double ours = b.getStatePublisher().current()->stationPressureHpa * 100.0;
            return std::abs(pascalsAt(server, QStringLiteral("environment/outside/pressure")) - ours) <= 1.0;
        };
        QTRY_VERIFY_WITH_TIMEOUT(sameAsOurs(), 10000);
        // The echo arrives, and is no reading: the source stays the device.
        QTRY_VERIFY_WITH_TIMEOUT(b.connectionStatus(2).contains(QLatin1String(", last sentence ")), 10000);
        QCOMPARE(EchoGuard::filter(1012.0, Tcp), Pressure::None);
        QCOMPARE(b.getPressureSource(), QStringLiteral("From serial connection"));

        // From the moment the device goes, no tick may show a pressure again.
        QStringList shownAfter;
        QMetaObject::Connection watch = connect(&b.getStatePublisher(), &StatePublisher::published, this, [&] {
            const auto state = b.getStatePublisher().current();
            if (!std::isnan(state->rawPressure))
                shownAfter << QStringLiteral("%1 hPa from %2").arg(state->rawPressure).arg(state->sourceText);
        });
        device.command(QStringLiteral("vanish"));
        QTRY_COMPARE_WITH_TIMEOUT(b.getSerialPressure(), Pressure::None, 5000);
        shownAfter.clear();
        QTRY_COMPARE_WITH_TIMEOUT(b.getStatePublisher().current()->pressureText, QStringLiteral("NONE"), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(server.self(QStringLiteral("environment/outside/pressure/value")).isNull(), 10000);
        // Past the guard and a few ticks: nothing has come back to stand in for the device.
        QTest::qWait(int(EchoGuard::HoldMs) + 3000);
        QVERIFY(!b.hasUsablePressure());
        QCOMPARE(b.getStatePublisher().current()->pressureText, QStringLiteral("NONE"));
        QVERIFY(server.self(QStringLiteral("environment/outside/pressure/value")).isNull());
        disconnect(watch);
        QVERIFY2(shownAfter.isEmpty(), qPrintable(shownAfter.join(QLatin1String(", "))));
        StatePublisher::withdraw(&b.getStatePublisher());

        const QStringList errors = errorsOf(server.log());
        QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));
    }
};

QTEST_MAIN(TestSignalKServer)
#include "tst_signalkserver.moc"
