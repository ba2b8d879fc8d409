// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>

// The log's nine tables as the pages know them, shortest first, with the seconds between
// two rows of each.
namespace LogTables {

const QStringList Names = {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D",
                           "BARO2D",  "BARO4D", "BARO8D", "BAR16D"};
const QList<int> Intervals = {2, 6, 12, 24, 48, 96, 192, 384, 768};

// Seconds a full table reaches back: thirty minutes for the first, 1800 rows for the rest.
inline qint64 reach(int table)
{
    return Intervals.at(table) == 2 ? 1800 : qint64(Intervals.at(table)) * 1800;
}

} // namespace LogTables
