// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopNotifier.h"

#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>

namespace {
const QString Service = QStringLiteral("org.freedesktop.Notifications");
const QString Path = QStringLiteral("/org/freedesktop/Notifications");
const QString Interface = QStringLiteral("org.freedesktop.Notifications");
// Long enough for a desktop that answers at all; a hung one must not hold the tick.
constexpr int CallTimeoutMs = 2000;
}

DesktopNotifier::DesktopNotifier(QObject* parent)
    : QObject(parent)
{
}

DesktopNotifier::DesktopNotifier(const QDBusConnection& bus, QObject* parent)
    : QObject(parent)
    , bus(bus)
{
}

QDBusConnection& DesktopNotifier::connection() const
{
    if (!bus)
        bus = QDBusConnection::sessionBus();
    return *bus;
}

bool DesktopNotifier::isAvailable() const
{
    QDBusConnection& c = connection();
    return c.isConnected() && c.interface() && c.interface()->isServiceRegistered(Service).value();
}

bool DesktopNotifier::notify(const QString& summary, const QString& body, bool critical)
{
    if (!isAvailable())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(Service, Path, Interface, QStringLiteral("Notify"));
    // Urgency 2 is critical, 1 normal.
    const QVariantMap hints{{QStringLiteral("urgency"), QVariant::fromValue(uchar(critical ? 2 : 1))},
                            {QStringLiteral("desktop-entry"), QStringLiteral("brinholt")}};
    call << QStringLiteral("Brinholt") << lastId << QStringLiteral("brinholt") << summary << body << QStringList()
         << hints << (critical ? 0 : -1);
    const QDBusReply<uint> reply = connection().call(call, QDBus::Block, CallTimeoutMs);
    if (!reply.isValid())
        return false;
    lastId = reply.value();
    return true;
}

void DesktopNotifier::withdraw()
{
    if (lastId == 0 || !isAvailable())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(Service, Path, Interface, QStringLiteral("CloseNotification"));
    call << lastId;
    connection().call(call, QDBus::Block, CallTimeoutMs);
    lastId = 0;
}
