// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtTest/QTest>

// The device simulator from tools/, run as its own process and steered through stdin.
class DeviceSim
{
public:
    ~DeviceSim()
    {
        if (process.state() != QProcess::NotRunning) {
            command(QStringLiteral("quit"));
            if (!process.waitForFinished(3000))
                process.kill();
            process.waitForFinished(3000);
        }
    }

    // Starts it and returns the path to give the serial port; empty on failure.
    QString start(const QStringList& arguments)
    {
        process.setProcessChannelMode(QProcess::SeparateChannels);
        process.start(QStringLiteral(BRINHOLT_BINARY_DIR "/brinholt-devicesim"), arguments);
        if (!process.waitForStarted(5000))
            return QString();
        return nextPath();
    }

    // The next path the simulator prints (at the start and after it comes back).
    QString nextPath()
    {
        if (!paths.isEmpty())
            return paths.takeFirst();
        return nextLine();
    }

    // Sends a command; with `wait`, returns once the simulator has it in effect, which a
    // test needs when the device's next answer depends on it.
    bool command(const QString& line, bool wait = false)
    {
        process.write(line.toUtf8() + '\n');
        process.waitForBytesWritten(1000);
        if (!wait)
            return true;
        const QString token = QStringLiteral("sync %1").arg(++syncs);
        process.write(token.toUtf8() + '\n');
        process.waitForBytesWritten(1000);
        for (QString got = nextLine(); !got.isEmpty(); got = nextLine()) {
            if (got == token)
                return true;
            paths << got;
        }
        return false;
    }

    QProcess process;

private:
    QString nextLine()
    {
        QElapsedTimer timer;
        timer.start();
        while (!process.canReadLine() && timer.elapsed() < 5000)
            process.waitForReadyRead(50);
        return QString::fromUtf8(process.readLine()).trimmed();
    }

    // Paths printed while a command waited for its answer, kept for nextPath.
    QStringList paths;
    int syncs = 0;
};
