// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "log/ChartSpan.h"
#include "util/ShownState.h"

#include <QtCore/QByteArray>

// The watch page's data as programs read it: numbers in hPa and SI units (seconds or
// milliseconds since the epoch, metres per second, degrees true), unknown numbers as null,
// and beside them the texts exactly as the window shows them.
class WatchJson
{
public:
    WatchJson() = delete;

    // `/api/now`. Without `withPosition` nothing tells where the boat is: no position,
    // course or speed, in numbers or in words.
    static QByteArray state(const ShownState& state, bool withPosition);
    // `/api/table/<n>`: the stretches of the curve, newest point first, as [x, y] pairs in
    // the table's axis units and the chosen pressure unit, with the axis bounds.
    static QByteArray span(const ChartSpan& span);
    // For a document's <script> element: "</" can never close it early.
    static QByteArray forScript(const QByteArray& json);
};
