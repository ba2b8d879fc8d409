#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>

// Desktop notifications through the freedesktop notification service, when one runs on
// the session bus; without one, nothing happens and nothing is logged.
class DesktopNotifier : public QObject
{
    Q_OBJECT

public:
    explicit DesktopNotifier(const QDBusConnection& bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    bool isAvailable() const;
    // Shows the text, replacing this program's last notification; `critical` asks the
    // desktop to keep it until the user dismisses it. False when no service took it.
    bool notify(const QString& summary, const QString& body, bool critical);
    // Takes the last notification away, if one is showing.
    void withdraw();

private:
    QDBusConnection bus;
    uint lastId = 0;
};
