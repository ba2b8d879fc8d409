// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/InternalBroadcast.h"

#include "app/SettingsAccess.h"
#include "nmea/NmeaSenderUdp.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"

#include <cmath>

InternalBroadcast::InternalBroadcast(const SettingsAccess& settings)
    : settings(settings)
{
}

bool InternalBroadcast::outputOn() const
{
    return settings.value(SettingKey::UseUdpOut, SettingDefault::UseUdpOut).toInt() == 1;
}

NmeaSenderUdp& InternalBroadcast::ensureSender()
{
    if (!senderUdp)
        senderUdp = new NmeaSenderUdp();
    return *senderUdp;
}

void InternalBroadcast::drop()
{
    delete senderUdp;
    senderUdp = nullptr;
}

void InternalBroadcast::sendPressure(double reading)
{
    if (!outputOn()) {
        drop();
        return;
    }
    NmeaSenderUdp& sender = ensureSender();
    double value = reading + settings.value(SettingKey::Offset, SettingDefault::Offset).toDouble();
    const double elevation = settings.value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();
    if (std::fabs(elevation) > 1e-12)
        value /= Pressure::seaLevelFactor(elevation);
    // 5999 here and 10110 at every other reader of the key: kept as it is on purpose.
    const int port = settings.value(SettingKey::UpdPort, SettingDefault::UpdPortAtSensor).toInt();
    sender.sendPressure(value, port);
}

void InternalBroadcast::sendPosition(const QPointF& where, double speed, double course)
{
    if (!outputOn() || settings.value(SettingKey::SendUdpPos, SettingDefault::SendUdpPos).toInt() != 1) {
        drop();
        return;
    }
    NmeaSenderUdp& sender = ensureSender();
    const int port = settings.value(SettingKey::UpdPort, SettingDefault::UpdPort).toInt();
    sender.sendPosition(where, speed, course, port);
}
