// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <mutex>

class QSettings;

// The settings as the receiver's thread sees them. QSettings is reentrant, not
// thread-safe, and the pages write BackEnd's object on the main thread at any time, so the
// worker reads this copy instead; BackEnd writes every change to both, on the main thread.
// The lock is held only to copy one value in or out, and the tick never takes it.
class SettingsMirror
{
public:
    SettingsMirror() = default;
    SettingsMirror(const SettingsMirror&) = delete;
    SettingsMirror& operator=(const SettingsMirror&) = delete;

    // Takes every key the object holds now, the file's and the ones set but not yet synced.
    void load(const QSettings& settings);
    void setValue(const QString& key, const QVariant& value);
    // As QSettings::value: the stored value, or `def` for a key never written.
    QVariant value(const QString& key, const QVariant& def) const;

private:
    // std::mutex rather than QMutex: a thread sanitizer sees this lock.
    mutable std::mutex lock;
    QHash<QString, QVariant> values;
};
