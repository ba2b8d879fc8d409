// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QPointF>

class NmeaSenderUdp;
class SettingsAccess;

// The UDP output of the internal sensor and location paths, on the main thread: made when
// one of them has something to send and the output is on, deleted when it is off. The two
// paths share it and do not coordinate, so one may make anew what the other just deleted.
// It is left to the end of the process, as the receiver is.
class InternalBroadcast
{
public:
    explicit InternalBroadcast(const SettingsAccess& settings);

    // The pressure path: `reading` with the user's offset, always at sea level.
    void sendPressure(double reading);
    // The position path, when position output is wanted as well.
    void sendPosition(const QPointF& where, double speed, double course);

    NmeaSenderUdp* sender() const { return senderUdp; }

private:
    // Whether "SettingUseUdpOut" is on.
    bool outputOn() const;
    // The sender, made if there is none.
    NmeaSenderUdp& ensureSender();
    void drop();

    const SettingsAccess& settings;
    NmeaSenderUdp* senderUdp = nullptr;
};
