// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QtGlobal>

// The pressure-fall warning as other software on the network is told of it: the level
// (0 none, 1 warning, 2 alarm), whether the navigator acknowledged it, and when it last
// changed, in seconds since the epoch.
struct WarningState
{
    int level = 0;
    bool acknowledged = false;
    qint64 changedAt = 0;

    bool operator==(const WarningState& other) const
    {
        return level == other.level && acknowledged == other.acknowledged && changedAt == other.changedAt;
    }
    bool operator!=(const WarningState& other) const { return !(*this == other); }
};
