// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/NetworkNamespace.h"
#include "tests/support/NamespaceChild.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtNetwork/QNetworkInterface>

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
    script += QStringLiteral(" || { echo 'private network setup failed'; false; }");
    const QStringList environment = {QLatin1String(InsideVariable) + QStringLiteral("=1"),
                                     QLatin1String(ParentVariable) + QLatin1Char('=') + ownNetworkNamespace()};
    return NamespaceChild::run('n', QStringLiteral("network namespace"), script, environment, testFunction, timeoutMs,
                               report);
}
