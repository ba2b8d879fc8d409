// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaMessageType.h"
#include "nmea/NmeaSourceType.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>

class NmeaItem;

// The sentence level of NMEA input: which sentences are implemented, whether a checksum
// holds, which item decodes a sentence, and the text of the device commands.
class Nmea0183 : public QObject
{
    Q_OBJECT

public:
    explicit Nmea0183(QObject* parent);
    ~Nmea0183() override;

    bool isMessageImplemented(const QByteArray& sentence, NmeaMessageType* type);
    static bool validateChecksum(const QByteArray& sentence);
    static QString computeChecksum(const QByteArray& sentence);
    void decode(const QByteArray& sentence, const NmeaMessageType& type, const NmeaSourceType& source);
    void clearItems();

    static QString createMessageCalibration(const double& offset, const double& slope, const double& pressure);
    static QString createMessageGetCalibration();
    static QString createMessageResetBarometer();

    // The item that decodes sentences of `type`, or null while none has arrived.
    NmeaItem* item(NmeaMessageType type) const { return items.value(type, nullptr); }

private:
    static QString withChecksum(const QString& text);

    QList<QByteArray> implementedMessages;
    QMap<NmeaMessageType, NmeaItem*> items;
};
