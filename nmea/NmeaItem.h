// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaMessageType.h"
#include "nmea/NmeaSourceType.h"

#include <QtCore/QByteArray>
#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringRef>
#include <QtCore/QVarLengthArray>

// Decodes one kind of sentence into a value and hands the value to the installed
// ReadingSink. One object per kind lives as long as the codec, so fields carry over from
// sentence to sentence.
class NmeaItem
{
public:
    explicit NmeaItem(const NmeaMessageType& messageType);
    virtual ~NmeaItem();

    virtual void decode(const QByteArray& sentence, const NmeaSourceType& source);
    virtual bool updateData(const NmeaSourceType& source);

    static bool decode_Int(const QString& text, int* value);
    static bool decode_Double(const QString& text, double* value);
    static bool decode_Position(const QString& lat, const QString& latHemisphere, const QString& lon,
                                const QString& lonHemisphere, QPointF* position);
    // The same on fields that are views into the sentence, so that decoding a sentence
    // does not allocate a string per field.
    static bool decode_Double(const QStringRef& text, double* value);
    static bool decode_Position(const QStringRef& lat, const QStringRef& latHemisphere, const QStringRef& lon,
                                const QStringRef& lonHemisphere, QPointF* position);

    // The fields of a sentence, head included, as every item starts: text up to any NUL,
    // cut at the first "*", split at "," with empty fields kept. The views point into
    // `text`, which must outlive them.
    using Fields = QVarLengthArray<QStringRef, 32>;
    static void splitFields(const QByteArray& sentence, QString* text, Fields* fields);
    static QStringList splitFields(const QByteArray& sentence);
    // Values between 0 and 3, both exclusive, are bars; anything else is hectopascals.
    static double applyBarRule(double value);

    // Plain state, read by the codec's owner and by tests.
    NmeaMessageType messageType;
    bool valid = false;
    bool hasNewData = false;

protected:
    // The update of an item that needs a new sentence for each reading: without one the
    // item is no longer valid; with one, `pressure` goes to the sink if it is `usable`.
    bool passOnNewPressure(double pressure, bool usable, const NmeaSourceType& source);
    // The end of every pressure item's update once a new sentence is there: it is used up,
    // and `pressure` goes to the sink if it is `usable`.
    bool takeNewPressure(double pressure, bool usable, const NmeaSourceType& source);
};
