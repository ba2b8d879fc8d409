// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/WatchDocument.h"
#include "app/WatchFeed.h"
#include "app/WatchRoutes.h"
#include "app/WatchServer.h"

#include <QtCore/QObject>
#include <QtCore/QString>

class QSettings;

// The watch page on the boat's network: a phone or tablet in a browser reads the barometer
// from it, and only reads. Off, nothing listens. This object lives on the main thread and
// owns the server, whose threads read the published state and the feed's copies only.
class DataSource;

class WatchPage : public QObject
{
    Q_OBJECT

public:
    // What BackEnd::connectionStatus takes for the watch page's line, after the four
    // connections of the receiver.
    static constexpr int StatusChannel = 7;

    // Serves the chart and the barogram from whatever log `log` points to when asked.
    explicit WatchPage(DataSource* const& log, QObject* parent = nullptr);
    WatchPage(WatchFeed::Sources sources, QObject* parent = nullptr);
    ~WatchPage() override;

    // Starts, stops or restarts the server as the three settings ask; main thread. A
    // server already serving on the same port goes on, and its phones keep their
    // connections.
    void apply(QSettings& settings);
    void apply(bool on, int port, bool withPosition);

    // The line the Connections page shows under the watch page's switch.
    QString statusText() const;

    WatchServer& server() { return http; }
    WatchFeed& feed() { return copies; }

private:
    void stop();

    WatchFeed copies;
    WatchDocument document;
    WatchRoutes routes;
    WatchServer http;
};
