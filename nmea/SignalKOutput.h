// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/SignalKStatus.h"

#include <QtCore/QObject>

class QThread;
class SignalKLink;

// The Signal K output as the application holds it, on the main thread: it makes the link
// and its thread from the settings, ends them, and keeps what each way of the link last
// said of itself for the Connections page. The link reads the installed StatePublisher:
// stop the output before that publisher goes.
class SignalKOutput : public QObject
{
    Q_OBJECT

public:
    explicit SignalKOutput(QObject* parent = nullptr);
    ~SignalKOutput() override;

    // Ends the link that runs, and starts one from the settings if they switch a way on.
    // Waits for the old link to let go of its port, so that the new one can take it.
    void restart();
    void stop();

    SignalKStatus status(SignalKStatus::Channel channel) const;
    // The link now running, or null; it lives on its own thread.
    SignalKLink* getLink() const { return link; }

signals:
    void statusChanged(int channel);

private:
    void take(int fromGeneration, const SignalKStatus& status);

    QThread* thread = nullptr;
    SignalKLink* link = nullptr;
    SignalKStatus tcpStatus;
    SignalKStatus udpStatus;
    // Counts the links made, so that a late word of an ended one is known.
    int generation = 0;
};
