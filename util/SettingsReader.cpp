// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/SettingsReader.h"

#include <atomic>

namespace {

// Installed on the main thread; the receiver's thread formats through it too.
std::atomic<const SettingsReader*> installed{nullptr};

} // namespace

void SettingsReader::install(const SettingsReader* reader)
{
    installed.store(reader);
}

QVariant SettingsReader::read(const QString& key, const QVariant& def)
{
    const SettingsReader* reader = installed.load();
    return reader ? reader->value(key, def) : def;
}
