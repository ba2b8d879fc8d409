// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/NotificationService.h"

#include <QtDBus/QDBusConnectionInterface>

PrivateSessionBus::PrivateSessionBus()
{
    daemon.start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
    if (!daemon.waitForStarted(5000))
        return;
    while (!daemon.canReadLine() && daemon.waitForReadyRead(5000)) {
    }
    address = QString::fromLatin1(daemon.readLine()).trimmed();
}

PrivateSessionBus::~PrivateSessionBus()
{
    for (const QString& name : qAsConst(names))
        QDBusConnection::disconnectFromBus(name);
    daemon.terminate();
    if (!daemon.waitForFinished(5000))
        daemon.kill();
    daemon.waitForFinished(5000);
}

QDBusConnection PrivateSessionBus::connect(const QString& name) const
{
    const_cast<QStringList&>(names).append(name);
    return QDBusConnection::connectToBus(address, name);
}

NotificationService::NotificationService()
    : thread(new QThread)
{
    moveToThread(thread);
    thread->start();
}

NotificationService::~NotificationService()
{
    thread->quit();
    thread->wait();
    delete thread;
}

QList<NotificationService::Shown> NotificationService::shown() const
{
    std::lock_guard<std::mutex> lock(mutex);
    return shownList;
}

QList<uint> NotificationService::closed() const
{
    std::lock_guard<std::mutex> lock(mutex);
    return closedList;
}

bool NotificationService::registerOn(QDBusConnection bus)
{
    return bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this, QDBusConnection::ExportAllSlots)
           && bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
}

uint NotificationService::Notify(const QString& appName, uint replacesId, const QString&, const QString& summary,
                                 const QString& body, const QStringList&, const QVariantMap& hints, int timeout)
{
    std::lock_guard<std::mutex> lock(mutex);
    shownList.append(Shown{appName, replacesId, summary, body, hints, timeout});
    return replacesId ? replacesId : nextId++;
}

void NotificationService::CloseNotification(uint id)
{
    std::lock_guard<std::mutex> lock(mutex);
    closedList.append(id);
}
