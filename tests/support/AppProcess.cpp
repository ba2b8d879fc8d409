// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/AppProcess.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <csignal>

#ifndef BRINHOLT_BINARY_DIR
#error "BRINHOLT_BINARY_DIR must name the build folder"
#endif

AppProcess::AppProcess(const QString& dataFolder)
    : folder(dataFolder)
    , env(QProcessEnvironment::systemEnvironment())
{
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    proc.setProcessChannelMode(QProcess::MergedChannels);
}

AppProcess::~AppProcess()
{
    if (proc.state() != QProcess::NotRunning) {
        proc.kill();
        proc.waitForFinished(5000);
    }
}

bool AppProcess::start(const QStringList& arguments)
{
    const QDir build(QStringLiteral(BRINHOLT_BINARY_DIR));
    const QStringList files = {QStringLiteral("brinholt"), QStringLiteral("Brinholt_en_US.qm"),
                               QStringLiteral("Brinholt_fr_FR.qm"), QStringLiteral("qt_fr.qm"),
                               QStringLiteral("qtbase_fr.qm"), QStringLiteral("qtscript_fr.qm"),
                               QStringLiteral("qtmultimedia_fr.qm"), QStringLiteral("qtxmlpatterns_fr.qm")};
    for (const QString& name : files) {
        const QString target = QDir(folder).filePath(name);
        QFile::remove(target);
        if (QFileInfo::exists(build.filePath(name)) && !QFile::copy(build.filePath(name), target))
            return false;
    }
    proc.setProcessEnvironment(env);
    // Started from elsewhere on purpose: the data folder must follow the executable.
    proc.setWorkingDirectory(QDir::tempPath());
    proc.start(QDir(folder).filePath(QStringLiteral("brinholt")), arguments);
    return proc.waitForStarted(10000);
}

void AppProcess::collect()
{
    partial += proc.readAll();
    int end;
    while ((end = partial.indexOf('\n')) >= 0) {
        lines << QString::fromLocal8Bit(partial.left(end));
        partial.remove(0, end + 1);
    }
}

bool AppProcess::waitForLog(const QString& text, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        collect();
        for (const QString& line : qAsConst(lines)) {
            if (line.contains(text))
                return true;
        }
        const qint64 left = timeoutMs - timer.elapsed();
        if (left <= 0 || proc.state() == QProcess::NotRunning)
            return false;
        proc.waitForReadyRead(int(qMin<qint64>(left, 200)));
    }
}

QStringList AppProcess::log()
{
    collect();
    return lines;
}

bool AppProcess::stop(int signalNumber, int timeoutMs)
{
    ::kill(pid_t(proc.processId()), signalNumber);
    const bool ended = proc.waitForFinished(timeoutMs);
    collect();
    if (!partial.isEmpty())
        lines << QString::fromLocal8Bit(partial);
    partial.clear();
    return ended;
}
