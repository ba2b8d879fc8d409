// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtCore/QThread>
#include <QtDBus/QDBusConnection>

#include <mutex>

// A session bus of the test's own: a dbus-daemon started for it and stopped with it, so
// that nothing reaches the desktop the tests run on.
class PrivateSessionBus
{
public:
    PrivateSessionBus();
    ~PrivateSessionBus();
    Q_DISABLE_COPY(PrivateSessionBus)

    bool isRunning() const { return !address.isEmpty(); }
    // A new connection to the bus under the given name.
    QDBusConnection connect(const QString& name) const;

private:
    QProcess daemon;
    QString address;
    QStringList names;
};

// Stands in for the desktop's notification service on a bus: records what it is asked.
// It answers from a thread of its own, as a service in another process would, so that the
// caller's blocking call is answered.
class NotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown
    {
        QString appName;
        uint replacesId = 0;
        QString summary;
        QString body;
        QVariantMap hints;
        int timeout = 0;
    };

    NotificationService();
    ~NotificationService() override;

    // Registers itself on `bus` as the notification service.
    bool registerOn(QDBusConnection bus);

    QList<Shown> shown() const;
    QList<uint> closed() const;

public slots:
    uint Notify(const QString& appName, uint replacesId, const QString& appIcon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int timeout);
    void CloseNotification(uint id);

private:
    mutable std::mutex mutex;
    QList<Shown> shownList;
    QList<uint> closedList;
    uint nextId = 1;
    QThread* thread = nullptr;
};
