// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsAccess.h"

#include "util/SettingKeys.h"

#include <QtCore/QSettings>
#include <QtCore/QThread>

SettingsAccess::SettingsAccess()
    // The last three are the pressure-fall warning's bounds.
    : doubleKeys{SettingKey::Elevation, SettingKey::Offset, SettingKey::WarningFall3h, SettingKey::AlarmFall3h,
                 SettingKey::AlarmFall1h}
    , stringKeys{SettingKey::SerialPort, SettingKey::SerialSpeed, SettingKey::TcpIpAddress, SettingKey::SignalKUdpHost}
{
}

void SettingsAccess::open(QObject* owner, const QString& appPath)
{
    home = owner->thread();
    settings = new QSettings(appPath + QStringLiteral("brinholt.ini"), QSettings::IniFormat, owner);
    mirror.load(*settings);
}

void SettingsAccess::close()
{
    settings->sync();
    delete settings;
    settings = nullptr;
}

QVariant SettingsAccess::value(const QString& key, const QVariant& def) const
{
    return settings->value(key, def);
}

QVariant SettingsAccess::get(const QString& key, const QVariant& def) const
{
    // The receiver's thread reads the copy; the QSettings object is the main thread's.
    const QVariant value = QThread::currentThread() == home ? settings->value(key, def) : mirror.value(key, def);
    if (doubleKeys.contains(key))
        return QVariant(value.toDouble());
    if (stringKeys.contains(key))
        return QVariant(value.toString());
    return QVariant(value.toInt());
}

void SettingsAccess::set(const QString& key, const QVariant& value)
{
    settings->setValue(key, value);
    mirror.setValue(key, value);
}

void SettingsAccess::sync()
{
    settings->sync();
}
