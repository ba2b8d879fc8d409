// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QObject>

class QSocketNotifier;

// Turns SIGINT and SIGTERM into a Qt signal on the main thread, so that a host shutting
// down ends the event loop exactly as closing the window does: geometry and settings
// saved, log closed.
class SignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;

signals:
    void terminationRequested(int signalNumber);

private:
    void readSignal();

    QSocketNotifier* notifier = nullptr;
};
