// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QString>
#include <QtCore/QStringList>

// The real executable, copied with its catalogues into a data folder of the test's and
// started headless there, as a user would start an installed copy.
class AppProcess
{
public:
    explicit AppProcess(const QString& dataFolder);
    ~AppProcess();
    Q_DISABLE_COPY(AppProcess)

    QProcessEnvironment& environment() { return env; }
    bool start(const QStringList& arguments = QStringList());
    // Waits until a line of the application's log contains `text`.
    bool waitForLog(const QString& text, int timeoutMs);
    QStringList log();
    // Sends `signalNumber` and waits for the process to end.
    bool stop(int signalNumber, int timeoutMs);
    QProcess& process() { return proc; }

private:
    void collect();

    QString folder;
    QProcessEnvironment env;
    QProcess proc;
    QStringList lines;
    QByteArray partial;
};
