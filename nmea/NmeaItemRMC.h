// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaItem.h"

#include <QtCore/QPointF>
#include <QtCore/QString>

// RMC, recommended minimum: position, speed and course. Time and date are not read: the
// time of a fix is the host's.
class NmeaItemRMC : public NmeaItem
{
public:
    using NmeaItem::NmeaItem;

    void decode(const QByteArray& sentence, const NmeaSourceType& source) override;
    bool updateData(const NmeaSourceType& source) override;

    QString status;
    QPointF position;
    double speed = 0.0;
    double course = 0.0;
    QString mode;
};
