// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

// A real Signal K server, the pinned signalk-server that scripts/install-deps puts in
// .cache beside the build, run with a settings file of the test's: no security, no
// announcement, the providers the test gives. It reaches out to the internet and announces
// itself by itself: run it only inside a private network namespace.
class SignalKServer
{
public:
    SignalKServer();
    ~SignalKServer();
    SignalKServer(const SignalKServer&) = delete;
    SignalKServer& operator=(const SignalKServer&) = delete;

    // Where the server should be; empty, with `why` set, when it is not installed.
    static QString executable(QString* why);

    // A "Signal K over TCP" connection that reads host:port, and a "Signal K over UDP" one
    // that listens on a port.
    void addSignalKOverTcp(const QString& id, const QString& host, int port);
    void addSignalKOverUdp(const QString& id, int port);
    // Has the "Convert Signal K to NMEA0183" plug-in send these sentences on the server's
    // NMEA 0183 output.
    void convertToNmea0183(const QStringList& sentences);

    // Starts it and waits for its REST interface; false, with `why` set, if it did not come.
    bool start(QString* why, int timeoutMs = 60000);
    // The JSON of a GET below /signalk/v1/api/vessels/self/, for example
    // "environment/outside/pressure"; undefined when there is none.
    QJsonValue self(const QString& path);
    // What the server wrote so far, line by line.
    QStringList log();

private:
    QTemporaryDir folder;
    QJsonObject settings;
    QJsonObject nmeaPlugin;
    QProcess process;
    QStringList lines;
    QByteArray partial;
};
