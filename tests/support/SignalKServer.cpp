// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/SignalKServer.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QTest>

#ifndef BRINHOLT_SOURCE_DIR
#error "BRINHOLT_SOURCE_DIR must name the checkout"
#endif

namespace {

const QString RestRoot = QStringLiteral("http://127.0.0.1:3000/signalk/v1/api/vessels/self/");

bool writeJson(const QString& path, const QJsonObject& object)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(object).toJson()) > 0;
}

QJsonObject provider(const QString& id, const QJsonObject& subOptions)
{
    const QJsonObject options{{QStringLiteral("logging"), false},
                              {QStringLiteral("type"), QStringLiteral("SignalK")},
                              {QStringLiteral("subOptions"), subOptions}};
    const QJsonObject element{{QStringLiteral("type"), QStringLiteral("providers/simple")},
                              {QStringLiteral("options"), options}};
    return QJsonObject{{QStringLiteral("id"), id},
                       {QStringLiteral("enabled"), true},
                       {QStringLiteral("pipeElements"), QJsonArray{element}}};
}

} // namespace

SignalKServer::SignalKServer()
{
    settings.insert(QStringLiteral("vessel"),
                    QJsonObject{{QStringLiteral("name"), QStringLiteral("Brinholt test")},
                                {QStringLiteral("uuid"), QStringLiteral("urn:mrn:signalk:uuid:b7a0a3c4-2f1e-4f43-9a1d-0c5d0f6b2a11")}});
    settings.insert(QStringLiteral("mdns"), false);
    settings.insert(QStringLiteral("pipedProviders"), QJsonArray());
    process.setProcessChannelMode(QProcess::MergedChannels);
}

SignalKServer::~SignalKServer()
{
    if (process.state() != QProcess::NotRunning) {
        process.terminate();
        if (!process.waitForFinished(5000)) {
            process.kill();
            process.waitForFinished(5000);
        }
    }
}

QString SignalKServer::executable(QString* why)
{
    QProcess version;
    version.start(QStringLiteral(BRINHOLT_SOURCE_DIR "/scripts/signalk-version"), QStringList());
    if (!version.waitForFinished(20000) || version.exitCode() != 0) {
        *why = QStringLiteral("cannot tell which signalk-server to use: is Node.js installed? Run scripts/install-deps");
        return QString();
    }
    const QString pinned = QString::fromLatin1(version.readAllStandardOutput()).trimmed();
    const QString path = QStringLiteral(BRINHOLT_SOURCE_DIR "/.cache/signalk-server-%1/bin/signalk-server")
                                 .arg(pinned);
    if (!QFileInfo(path).isExecutable()) {
        *why = QStringLiteral("signalk-server %1 is not installed at %2: run scripts/install-deps, which installs it "
                              "(tests never fetch it)")
                       .arg(pinned, path);
        return QString();
    }
    return path;
}

void SignalKServer::addSignalKOverTcp(const QString& id, const QString& host, int port)
{
    QJsonArray providers = settings.value(QStringLiteral("pipedProviders")).toArray();
    providers.append(provider(id, QJsonObject{{QStringLiteral("type"), QStringLiteral("tcp")},
                                              {QStringLiteral("host"), host},
                                              {QStringLiteral("port"), port}}));
    settings.insert(QStringLiteral("pipedProviders"), providers);
}

void SignalKServer::addSignalKOverUdp(const QString& id, int port)
{
    QJsonArray providers = settings.value(QStringLiteral("pipedProviders")).toArray();
    providers.append(provider(id, QJsonObject{{QStringLiteral("type"), QStringLiteral("udp")},
                                              {QStringLiteral("port"), port}}));
    settings.insert(QStringLiteral("pipedProviders"), providers);
}

void SignalKServer::convertToNmea0183(const QStringList& sentences)
{
    QJsonArray conversions;
    for (const QString& sentence : sentences)
        conversions.append(QJsonObject{{QStringLiteral("sentence"), sentence}});
    nmeaPlugin = QJsonObject{{QStringLiteral("enabled"), true},
                             {QStringLiteral("configuration"), QJsonObject{{QStringLiteral("conversions"), conversions}}}};
}

bool SignalKServer::start(QString* why, int timeoutMs)
{
    const QString program = executable(why);
    if (program.isEmpty())
        return false;
    const QDir config(folder.path());
    config.mkpath(QStringLiteral("plugin-config-data"));
    if (!writeJson(config.filePath(QStringLiteral("settings.json")), settings)
        || (!nmeaPlugin.isEmpty()
            && !writeJson(config.filePath(QStringLiteral("plugin-config-data/sk-to-nmea0183.json")), nmeaPlugin))) {
        *why = QStringLiteral("cannot write the server's settings");
        return false;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), folder.path());
    process.setProcessEnvironment(environment);
    process.start(program, {QStringLiteral("-c"), folder.path()});
    if (!process.waitForStarted(10000)) {
        *why = QStringLiteral("signalk-server did not start: ") + process.errorString();
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        if (process.state() == QProcess::NotRunning) {
            *why = QStringLiteral("signalk-server ended:\n") + log().join(QLatin1Char('\n'));
            return false;
        }
        if (self(QStringLiteral("uuid")).isString())
            return true;
        QTest::qWait(250);
    }
    *why = QStringLiteral("signalk-server did not answer in time:\n") + log().join(QLatin1Char('\n'));
    return false;
}

QJsonValue SignalKServer::self(const QString& path)
{
    QNetworkAccessManager network;
    network.setProxy(QNetworkProxy::NoProxy);
    QNetworkRequest request(QUrl(RestRoot + path));
    QNetworkReply* reply = network.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);
    loop.exec();
    QJsonValue value(QJsonValue::Undefined);
    if (reply->isFinished() && reply->error() == QNetworkReply::NoError) {
        // A leaf comes as a bare number, string or null: wrapped, any of them parses.
        const QJsonArray wrapped = QJsonDocument::fromJson("[" + reply->readAll() + "]").array();
        if (wrapped.size() == 1)
            value = wrapped.at(0);
    }
    reply->abort();
    reply->deleteLater();
    return value;
}

QStringList SignalKServer::log()
{
    partial += process.readAll();
    int end;
    while ((end = partial.indexOf('\n')) >= 0) {
        const QByteArray line = partial.left(end).trimmed();
        if (!line.isEmpty())
            lines << QString::fromUtf8(line);
        partial.remove(0, end + 1);
    }
    return lines;
}
