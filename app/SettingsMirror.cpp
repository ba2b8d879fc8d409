// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsMirror.h"

#include <QtCore/QSettings>

void SettingsMirror::load(const QSettings& settings)
{
    QHash<QString, QVariant> all;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys)
        all.insert(key, settings.value(key));
    const std::lock_guard<std::mutex> guard(lock);
    values.swap(all);
}

void SettingsMirror::setValue(const QString& key, const QVariant& value)
{
    const std::lock_guard<std::mutex> guard(lock);
    values.insert(key, value);
}

QVariant SettingsMirror::value(const QString& key, const QVariant& def) const
{
    const std::lock_guard<std::mutex> guard(lock);
    const auto found = values.constFind(key);
    return found == values.constEnd() ? def : found.value();
}
