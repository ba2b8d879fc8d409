#pragma once

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
        QElapsedTimer timer;
        timer.start();
        while (!process.canReadLine() && timer.elapsed() < 5000)
            process.waitForReadyRead(50);
        return QString::fromUtf8(process.readLine()).trimmed();
    }

    void command(const QString& line)
    {
        process.write(line.toUtf8() + '\n');
        process.waitForBytesWritten(1000);
    }

    QProcess process;
};
