// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

// Where Util reads its settings: the application installs one, and Util asks it at every
// call, so that a change on the settings page shows at the next call. With none installed
// every caller's default stands.
class SettingsReader
{
public:
    virtual ~SettingsReader() = default;

    // The stored value of `key`, or `def` when there is none to read from.
    virtual QVariant value(const QString& key, const QVariant& def) const = 0;

    static void install(const SettingsReader* reader);
    // The installed reader's answer, or `def` without one.
    static QVariant read(const QString& key, const QVariant& def);
};
