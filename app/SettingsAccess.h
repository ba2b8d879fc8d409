// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/SettingsMirror.h"

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QVariant>

class QObject;
class QSettings;
class QThread;

// The long-lived settings object and the ways into it: raw values for the application's own
// readers, values narrowed to their type for the pages and the layers below, and the copy
// the receiver's thread reads. Every write goes to the object and to the copy.
class SettingsAccess
{
public:
    SettingsAccess();
    SettingsAccess(const SettingsAccess&) = delete;
    SettingsAccess& operator=(const SettingsAccess&) = delete;

    // Makes the object on "brinholt.ini" in `appPath`, a child of `owner`, whose thread is
    // the one that may use it, and copies what it holds.
    void open(QObject* owner, const QString& appPath);
    // Writes what is pending to the file and deletes the object.
    void close();

    QSettings* object() const { return settings; }
    // As QSettings::value; main thread only.
    QVariant value(const QString& key, const QVariant& def = QVariant()) const;
    // Double for the keys of `doubleKeys`, string for those of `stringKeys`, else integer.
    // Off the owner's thread it reads the copy.
    QVariant get(const QString& key, const QVariant& def) const;
    void set(const QString& key, const QVariant& value);
    void sync();

private:
    QSettings* settings = nullptr;
    QThread* home = nullptr;
    SettingsMirror mirror;
    QSet<QString> doubleKeys;
    QSet<QString> stringKeys;
};
