// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/NamespaceChild.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>

#include <unistd.h>

bool NamespaceChild::run(char kind, const QString& what, const QString& setup, const QStringList& environment,
                         const QString& testFunction, int timeoutMs, QString* report)
{
    const QString script = setup + QStringLiteral(" || exit 97; exec \"$0\" \"$1\"");
    QProcess child;
    QProcessEnvironment childEnvironment = QProcessEnvironment::systemEnvironment();
    for (const QString& pair : environment)
        childEnvironment.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    child.setProcessEnvironment(childEnvironment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    // Without root a user namespace comes first, so that the others may be made.
    const QString flags = (geteuid() == 0 ? QStringLiteral("-") : QStringLiteral("-r")) + QLatin1Char(kind);
    child.start(QStringLiteral("unshare"), {flags, QStringLiteral("sh"), QStringLiteral("-c"), script,
                                            QCoreApplication::applicationFilePath(), testFunction});
    if (!child.waitForStarted(10000)) {
        *report = QStringLiteral("could not make a private %1: unshare did not start (%2)").arg(what, child.errorString());
        return false;
    }
    if (!child.waitForFinished(timeoutMs)) {
        child.kill();
        child.waitForFinished(5000);
        *report = QStringLiteral("the test in the private %1 did not end within %2 ms:\n%3")
                          .arg(what)
                          .arg(timeoutMs)
                          .arg(QString::fromLocal8Bit(child.readAll()));
        return false;
    }
    const QString output = QString::fromLocal8Bit(child.readAll());
    if (child.exitStatus() != QProcess::NormalExit || child.exitCode() == 97
        || output.contains(QLatin1String("unshare:"))) {
        *report = QStringLiteral("could not make a private %1:\n%2").arg(what, output);
        return false;
    }
    *report = output;
    return child.exitCode() == 0 && output.contains(QLatin1String("PASS   : "))
            && output.contains(QLatin1String(" 0 failed, 0 skipped"));
}
