// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/WatchResponse.h"

#include <QtCore/QByteArray>

#include <atomic>
#include <memory>

class WatchDocument;
class WatchFeed;
struct ShownState;

// What the watch page's server answers, by path: a fixed list, each made from the
// published state or from the feed's copies. No path names a file, and nothing here can
// change a setting, the log or the warning. Runs on the server's threads.
//
//   /                          the page
//   /api/now                   the published state as JSON
//   /api/table/<0..8>          a span's chart as JSON
//   /barogram/<TABLE>.png      the barogram of a table, as PNG or as PDF
//   /barogram/<TABLE>.pdf
class WatchRoutes
{
public:
    // How long a request waits for the main thread before it gets 503.
    static constexpr int SpanWaitMs = 1500;
    static constexpr int BarogramWaitMs = 5000;

    WatchRoutes(WatchFeed& feed, const WatchDocument& document);

    // The method is GET or HEAD; the server answers any other itself.
    WatchResponse answer(const QByteArray& path) const;

    // Whether the boat's position is served at all; any thread.
    void setPositionServed(bool served) { withPosition.store(served); }
    bool positionServed() const { return withPosition.load(); }

    // The log's table names, in the order of their numbers.
    static const char* const TableNames[9];

private:
    std::shared_ptr<const ShownState> state() const;
    WatchResponse page() const;
    WatchResponse now() const;
    WatchResponse table(int chartNb) const;
    WatchResponse barogram(int table, bool pdf) const;

    WatchFeed& feed;
    const WatchDocument& document;
    std::atomic<bool> withPosition{false};
};
