// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/BackEnd.h"
#include "nmea/NmeaMessageType.h"
#include "nmea/NmeaSourceType.h"
#include "tests/support/BackEndFixture.h"
#include "tests/support/NmeaTestKit.h"

#include <QtTest/QtTest>

// A BackEnd in its own data folder with no receiver, for item tests that read back what
// an item handed over.
struct ItemFixture : BackEndFixture
{
    using BackEndFixture::BackEndFixture;

    // The row of a pressure item's decoding table, columns "sentence" and "pressure": a
    // new Item decodes the sentence from `source` and holds the pressure, and so does the
    // BackEnd, or the no-reading mark for a pressure that is not above zero.
    template <typename Item>
    static void checkPressureRow(NmeaMessageType type, NmeaSourceType source)
    {
        QFETCH(QByteArray, sentence);
        QFETCH(double, pressure);
        ItemFixture fixture;
        Item item(type);
        item.decode(sentence, source);
        QVERIFY(item.valid);
        QVERIFY(item.hasPressure);
        QVERIFY(qAbs(item.pressure - pressure) < 1e-9);
        QVERIFY(qAbs(fixture.b->getCurrentPressure() - (pressure > 0.0 ? pressure : -2000.0)) < 1e-9);
    }
};
