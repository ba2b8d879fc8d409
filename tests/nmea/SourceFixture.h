#pragma once

#include "NmeaTestKit.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaItem.h"
#include "support/TestDataFolder.h"

// A BackEnd with no receiver of its own, and a receiver that stays on the test's thread
// with its codec made, so that a source under test runs in the test's event loop.
struct SourceFixture
{
    SourceFixture()
    {
        NmeaTestKit::writeIni(NmeaTestKit::quietSettings());
        b.reset(new BackEnd);
        receiver.reset(new NmeaReceiver);
        receiver->slot_startReceiving();
    }
    ~SourceFixture()
    {
        // Sources are the receiver's children and withdraw their pressure as they go.
        receiver.reset();
        b.reset();
    }
    NmeaItem* item(NmeaMessageType type) const { return receiver->getNmea()->item(type); }

    TestDataFolder folder;
    std::unique_ptr<BackEnd> b;
    std::unique_ptr<NmeaReceiver> receiver;
};
