#include "nmea/NmeaSenderUdp.h"

NmeaSenderUdp::NmeaSenderUdp()
    : QObject(nullptr)
{
}

NmeaSenderUdp::~NmeaSenderUdp() = default;
