#include "tests/support/NetworkNamespace.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QThread>
#include <QtNetwork/QNetworkInterface>

#include <unistd.h>

namespace {

const char InsideVariable[] = "BRINHOLT_NETWORK_NAMESPACE";
const char ParentVariable[] = "BRINHOLT_PARENT_NETWORK";

QString ownNetworkNamespace()
{
    return QFileInfo(QStringLiteral("/proc/self/ns/net")).symLinkTarget();
}

// Carrier, and an IPv6 link-local address where IPv6 is on, come a moment after a link
// goes up.
bool linksReady()
{
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        if (interface.flags().testFlag(QNetworkInterface::IsLoopBack))
            continue;
        if (!interface.flags().testFlag(QNetworkInterface::IsUp))
            continue;
        if (!interface.flags().testFlag(QNetworkInterface::IsRunning))
            return false;
        QFile disabled(QStringLiteral("/proc/sys/net/ipv6/conf/%1/disable_ipv6").arg(interface.name()));
        const bool ipv6 = disabled.open(QIODevice::ReadOnly) && disabled.readAll().trimmed() == "0";
        bool hasIpv6 = false;
        for (const QNetworkAddressEntry& entry : interface.addressEntries())
            hasIpv6 = hasIpv6 || entry.ip().protocol() == QAbstractSocket::IPv6Protocol;
        if (ipv6 && !hasIpv6)
            return false;
    }
    return true;
}

} // namespace

bool NetworkNamespace::inside()
{
    if (qEnvironmentVariable(InsideVariable) != QLatin1String("1"))
        return false;
    // Never send a broadcast from the machine's own network, whatever the environment says.
    const QString parent = qEnvironmentVariable(ParentVariable);
    const QString own = ownNetworkNamespace();
    if (parent.isEmpty() || own.isEmpty() || own == parent)
        qFatal("%s is set, but this process is not in a network namespace of its own", InsideVariable);
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry& entry : interface.addressEntries()) {
            const QHostAddress ip = entry.ip();
            const bool ours = ip.isLoopback() || ip.isLinkLocal()
                    || ip.isInSubnet(QHostAddress(QStringLiteral("198.18.0.0")), 15);
            if (!ours)
                qFatal("unexpected address %s in the private network namespace", qPrintable(ip.toString()));
        }
    }
    QElapsedTimer timer;
    timer.start();
    while (!linksReady() && timer.elapsed() < 10000)
        QThread::msleep(20);
    return true;
}

bool NetworkNamespace::run(const QString& testFunction, QString* report, const QString& extraSetup, int timeoutMs)
{
    const QString setup = QStringLiteral(
            "ip link set lo up"
            " && ip link add v0 type veth peer name v1"
            " && ip addr add 198.18.0.1/24 dev v0"
            " && ip addr add 198.18.0.2/24 dev v1"
            " && ip link set v0 up"
            " && ip link set v1 up");
    QString script = setup;
    if (!extraSetup.isEmpty())
        script += QStringLiteral(" && ") + extraSetup;
    script += QStringLiteral(" || { echo 'private network setup failed'; exit 97; }; exec \"$0\" \"$1\"");

    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(InsideVariable), QStringLiteral("1"));
    environment.insert(QString::fromLatin1(ParentVariable), ownNetworkNamespace());
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    // Without root a user namespace comes first, so that the network one may be made.
    const QString unshareFlags = geteuid() == 0 ? QStringLiteral("-n") : QStringLiteral("-rn");
    child.start(QStringLiteral("unshare"),
                {unshareFlags, QStringLiteral("sh"), QStringLiteral("-c"), script,
                 QCoreApplication::applicationFilePath(), testFunction});
    if (!child.waitForStarted(10000)) {
        *report = QStringLiteral("could not make a private network namespace: unshare did not start (%1)")
                          .arg(child.errorString());
        return false;
    }
    if (!child.waitForFinished(timeoutMs)) {
        child.kill();
        child.waitForFinished(5000);
        *report = QStringLiteral("the test in the private network namespace did not end within %1 ms:\n%2")
                          .arg(timeoutMs)
                          .arg(QString::fromLocal8Bit(child.readAll()));
        return false;
    }
    const QString output = QString::fromLocal8Bit(child.readAll());
    if (child.exitStatus() != QProcess::NormalExit || child.exitCode() == 97
        || output.contains(QLatin1String("unshare:"))) {
        *report = QStringLiteral("could not make a private network namespace:\n%1").arg(output);
        return false;
    }
    *report = output;
    // One function ran, it passed, and nothing was skipped.
    return child.exitCode() == 0 && output.contains(QLatin1String("PASS   : "))
            && output.contains(QLatin1String(" 0 failed, 0 skipped"));
}
