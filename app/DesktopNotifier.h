// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>

#include <optional>

// Desktop notifications through the freedesktop notification service, when one runs on
// the session bus; without one, nothing happens and nothing is logged.
class DesktopNotifier : public QObject
{
    Q_OBJECT

public:
    // On the session bus, reached only at the first notice, so that a run that never
    // warns never touches it.
    explicit DesktopNotifier(QObject* parent = nullptr);
    explicit DesktopNotifier(const QDBusConnection& bus, QObject* parent = nullptr);

    bool isAvailable() const;
    // Shows the text, replacing this program's last notification; `critical` asks the
    // desktop to keep it until the user dismisses it. False when no service took it.
    bool notify(const QString& summary, const QString& body, bool critical);
    // Takes the last notification away, if one is showing.
    void withdraw();

private:
    QDBusConnection& connection() const;

    mutable std::optional<QDBusConnection> bus;
    uint lastId = 0;
};
